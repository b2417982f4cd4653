/** \file
 * \mainpage zimcc: colour conversion of two-dimensional images
 *
 * Every operation converts one region and returns a ZimResult. A region is given by pointers to its first pixel, row
 * steps in bytes and a ZimiSize. No buffer has to be aligned, and no operation keeps a pointer after it returns.
 * Operations may be called from any number of threads at once on disjoint destinations. Source and destination must not
 * overlap, other than by the operations in place.
 *
 * Names read: zimi + operation [+ variant] _ sample types _ layout [+ R].
 *
 * Sample types: one word where source and destination agree (8u), else source first (8u16s). Layouts, likewise:
 *
 * - C1, C3, C4: interleaved samples, in the order that the colour words spell
 * - C2: packed 4:2:2, two samples a pixel, in the order that the colour word spells
 * - AC4: four interleaved samples; the fourth is not read, and is left as it was when written to
 * - P2: a plane of luma and one of chroma pairs, each with its own pointer and step
 * - P3, P4, AP4: planes; the address of an array of plane pointers, one step for all planes or, where pixels of that
 *   side share chroma and where planes become packed 16-bit pixels, the address of an array with a step for each
 * - R: with steps; names without it are of images without gaps
 * - IR: in place, one pointer, one step
 *
 * Steps are distances in bytes between the starts of successive rows. Where an operation does not say that it tests
 * them, zero re-reads (or re-writes) one row and a negative step walks upward in memory. In gray, XYZ, LUV, PhotoYCC,
 * HSV and the RGB forms of HLS rows have to lie within 2^31 - 1 samples of the first, or bytes where an operation says
 * that no bits of a step are dropped. aval is stored as the fourth sample of each pixel.
 *
 * Common results, unless an operation says more: zimResultNullPointer for a null pointer, then zimResultBadSize for a
 * width or height below 1; nothing is written in either case.
 */
#ifndef ZIMCC_H
#define ZIMCC_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** \defgroup types Types and version
 * @{ */

typedef uint8_t Zim8u;
typedef int8_t Zim8s;
typedef uint16_t Zim16u;
typedef int16_t Zim16s;
typedef uint32_t Zim32u;
typedef int32_t Zim32s;
typedef float Zim32f;
typedef double Zim64f;

/** Result of every image operation: zero is success, negative an error, positive a warning. */
typedef int32_t ZimResult;

enum {
  zimResultOk = 0,
  zimWarnNoOperation = 1,    /**< nothing was done: the source's maximum or mean is negative */
  zimWarnOddSize = 35,       /**< the size is no multiple of the sub-sampling: a rest may be left unconverted */
  zimResultBadArgument = -5, /**< an enumerated argument lies outside its set */
  zimResultBadSize = -6,     /**< width or height is below the operation's minimum */
  zimResultNullPointer = -8, /**< a required pointer is null */
  zimResultNoMemory = -9,    /**< a scratch allocation failed */
  zimResultBadStep = -14,    /**< a row step is below 1 */
  zimResultBadRange = -49,   /**< vMax minus vMin, in single precision, is zero or below */
  zimResultBadLevels = -54,  /**< the level count lies outside its range */
  zimResultBadNoise = -55,   /**< the noise percentage lies outside 0 to 100 */
  zimResultBadDither = -224  /**< the operation does not support this kind of dither */
};

/** How zimiReduceBits_* chooses between two levels. */
typedef int32_t ZimDitherKind;

enum {
  zimDitherKindNone = 0,              /**< the nearest level */
  zimDitherKindFloydSteinberg = 1,    /**< error diffusion to four pixels: 7, 3, 5, 1 over 16 */
  zimDitherKindJarvisJudiceNinke = 2, /**< error diffusion to twelve pixels: 7, 5, 3, 1 over 48 */
  zimDitherKindStucki = 3,            /**< error diffusion to twelve pixels: 8, 4, 2, 1 over 42 */
  zimDitherKindBayer = 4              /**< a pattern of 4 x 4 thresholds */
};

/** Extent of a region, passed by value. */
typedef struct ZimiSize {
  Zim32s width;  /**< pixels in a row */
  Zim32s height; /**< rows */
} ZimiSize;

/** Part of a whole source image, in the image's coordinates, passed by value. */
typedef struct ZimiRegion {
  Zim32s x;      /**< first column */
  Zim32s y;      /**< first row */
  Zim32s width;  /**< columns */
  Zim32s height; /**< rows */
} ZimiRegion;

/** Colours of a Bayer mosaic: the 2 x 2 sites at the origin of the image, upper row first. They repeat over the whole
 * image, whatever region of it is asked for. */
typedef Zim32s ZimBayerGrid;

enum { zimBayerGridBGGR = 0, zimBayerGridRGGB = 1, zimBayerGridGBRG = 2, zimBayerGridGRBG = 3 };

/** What zimccGetLibVersion reports. */
typedef struct ZimLibraryVersion {
  Zim32s versionMajor;
  Zim32s versionMinor;
  Zim32s buildMajor;
  Zim32s buildMinor;
  char targetTag[4]; /**< processor target of the build: "mx", "v3" or "v4", padded with zero bytes */
  const char* libraryFileName;
  const char* versionText;
  const char* buildDateText;
} ZimLibraryVersion;

/** The version record of the loaded build: constant, the same pointer at every call, never to be freed. */
const ZimLibraryVersion* zimccGetLibVersion(void);

/** @} */

/** \defgroup gray Gray
 * @{ */

/** \name Luma of three samples with fixed weights
 *
 * One sample a pixel: 0.299 times the first sample in memory, 0.587 times the second, 0.114 times the third.
 * 8u uses weights in units of 1/4096 (1225, 2404, 467) and rounds; 16u and 16s compute in single precision and round;
 * 32f neither rounds nor clamps. For 16-bit and float samples the low bits of a step that is no multiple of the sample
 * size are dropped. Any size from 1 x 1.
 * @{ */
ZimResult zimiRGBToGray_8u_C3C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_8u_AC4C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_16u_C3C1R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_16u_AC4C1R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_16s_C3C1R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_16s_AC4C1R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_32f_C3C1R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToGray_32f_AC4C1R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Weighted sum of three samples with the caller's weights
 *
 * As zimiRGBToGray_*, with coeffs[k] as the weight of the k-th sample in memory. A null coeffs selects the fixed
 * weights. Weights are used as they are: neither their sign nor their sum is tested, and of integer results outside
 * the sample's range only the low bits are stored. 64f runs on a team of threads from 32 x 32 pixels, with exact byte
 * steps; the team has to be as large as ownGetNumThreads says, or bands of rows stay as they were.
 * @{ */
ZimResult zimiColorToGray_8u_C3C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   const Zim32f coeffs[3]);
ZimResult zimiColorToGray_8u_AC4C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f coeffs[3]);
ZimResult zimiColorToGray_16u_C3C1R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f coeffs[3]);
ZimResult zimiColorToGray_16u_AC4C1R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim32f coeffs[3]);
ZimResult zimiColorToGray_16s_C3C1R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f coeffs[3]);
ZimResult zimiColorToGray_16s_AC4C1R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim32f coeffs[3]);
ZimResult zimiColorToGray_32f_C3C1R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f coeffs[3]);
ZimResult zimiColorToGray_32f_AC4C1R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim32f coeffs[3]);
ZimResult zimiColorToGray_64f_C3C1R(const Zim64f* pSrc, Zim32s srcStep, Zim64f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim64f coeffs[3]);
ZimResult zimiColorToGray_64f_AC4C1R(const Zim64f* pSrc, Zim32s srcStep, Zim64f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim64f coeffs[3]);
/** @} */

/** @} */

/** \defgroup xyz CIE XYZ
 * @{ */

/** \name RGB to XYZ, BT.709 primaries and white D65
 *
 * RGB is taken as linear. 8u truncates; 16u and 16s round; 32f does neither. Z is limited to the range of its type
 * (0..1 in 32f), since white has 1.09 of it; X and Y need no limit, and in 32f have none. 16s samples count from
 * -32768. AC4R leaves the destination's fourth sample as it was. For 16-bit and float samples the low bits of a step
 * that is no multiple of the sample size are dropped. Any size from 1 x 1; a team of threads from 4097 pixels on.
 * @{ */
ZimResult zimiRGBToXYZ_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToXYZ_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name XYZ to RGB, the inverse
 *
 * 8u rounds down; 16u and 16s round; all results are limited to the range of their type (0..1 in 32f). Otherwise as
 * zimiRGBToXYZ_*.
 * @{ */
ZimResult zimiXYZToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiXYZToRGB_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup luv_lab CIE LUV and Lab
 * @{ */

/** \name Linear RGB to CIE 1976 L*u*v*
 *
 * For the primaries of BT.709 and white D65; no transfer curve is applied. L, U and V are samples 0, 1 and 2. As
 * integers the ranges 0..100, -134..220 and -140..122 fill that of the sample (16s: from -32768 on), with results cut
 * to their low bits; 32f stores L, U and V as they are, of RGB that is nominally 0..1. L of 8u comes from a table, by
 * luminance in quarters below 31.5 and in whole steps above; the other types call cbrtf. Black has U = V = 0. In a team
 * of threads from 4097 pixels on. Any size from 1 x 1. The low bit of a step is dropped for 16-bit samples, but no bits
 * for 32f. AC4R leaves the destination's fourth sample as it was.
 * @{ */
ZimResult zimiRGBToLUV_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToLUV_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name CIE 1976 L*u*v* to linear RGB
 *
 * The inverse, clamped to the range of the sample or, of 32f, to 0..1. L below 9e-5 gives black whatever U and V are;
 * in a row of 32f such a pixel is the last one converted: the destination beyond it stays as it was. Low bits of a step
 * that is no multiple of the sample size are dropped. Otherwise as zimiRGBToLUV_*.
 * @{ */
ZimResult zimiLUVToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLUVToRGB_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Linear BGR to CIE 1976 L*a*b*
 *
 * For the primaries of BT.709 and white D65. L, a and b are samples 0, 1 and 2: L of 0..100 fills the range of the
 * sample, a and b are moved up by 128 and, in 16 bits, scaled by 255. 8u results are rounded, 16u results truncated;
 * both are cut to the low bits. Roots come from cbrtf, lightness of 16u from pow. Always in a team of threads. Any size
 * from 1 x 1; steps are exact bytes.
 * @{ */
ZimResult zimiBGRToLab_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiBGRToLab_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name CIE 1976 L*a*b* to linear BGR
 *
 * The inverse by cubes alone, without the linear part near black: (0, 128, 128) gives 1, 1, 1. Results of 8u are
 * rounded, those of 16u8u truncated; both are clamped. Otherwise as zimiBGRToLab_*.
 * @{ */
ZimResult zimiLabToBGR_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiLabToBGR_16u8u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup photoycc PhotoYCC
 * @{ */

/** \name RGB to PhotoYCC
 *
 * Luma times 0.713, and the scaled differences C1 of blue and C2 of red, around 156 and 137 in 8u, 156 * 257 and 137 *
 * 257 in 16u and in 16s (counted from -32768), 0.612 and 0.537 in 32f. 8u rounds down, 16u and 16s round. Nothing is
 * clamped, and integer results need not be. AC4R leaves the destination's fourth sample as it was. For 16-bit and
 * float samples the low bits of a step that is no multiple of the sample size are dropped. Any size from 1 x 1; a team
 * of threads from 4097 pixels on.
 * @{ */
ZimResult zimiRGBToYCC_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCC_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name PhotoYCC to RGB
 *
 * 8u shifts right, in two stages for G; 16u and 16s round; all are limited to their range (0..1 in 32f). Otherwise as
 * zimiRGBToYCC_*.
 * @{ */
ZimResult zimiYCCToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCCToRGB_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup hls HLS
 * @{ */

/** \name RGB to hue, lightness, saturation
 *
 * The double cone. A full turn of hue is 255 in 8u, 65535 in 16u and in 16s (counted from -32768), 1 in 32f; lightness
 * is the middle of the largest and the smallest sample; saturation is what there is of the most at that lightness.
 * Integer results are rounded; float samples are neither scaled nor clamped. Gray has hue and saturation 0; in 32f that
 * is a difference of at most 2^-23. AC4R leaves the destination's fourth sample as it was. For 16-bit and float samples
 * the low bits of a step that is no multiple of the sample size are dropped. Any size from 1 x 1; a team of threads
 * from 4097 pixels on.
 * @{ */
ZimResult zimiRGBToHLS_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHLS_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Hue, lightness, saturation to RGB
 *
 * Integer results are rounded; float samples outside 0..1 are computed on as they are. Otherwise as zimiRGBToHLS_*.
 * @{ */
ZimResult zimiHLSToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHLSToRGB_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name BGR to hue, lightness, saturation
 *
 * As zimiRGBToHLS_8u_*, from samples in the order B, G, R and with another rounding: AC4R rounds halves down, all
 * others round down, so that pure red has lightness 127. AC4R leaves the destination's fourth sample as it was; the
 * other forms of four channels copy it. A step below 1 gives zimResultBadStep: in AC4R after the size is tested, in all
 * others before it and after all pointers. Any size from 1 x 1, always on a team of threads.
 * @{ */
ZimResult zimiBGRToHLS_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_AC4P4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[4], Zim32s dstStep,
                                 ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_AP4C4R(const Zim8u* const pSrc[4], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                 ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_AP4R(const Zim8u* const pSrc[4], Zim32s srcStep, Zim8u* const pDst[4], Zim32s dstStep,
                               ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiBGRToHLS_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
/** @} */

/** \name Hue, lightness, saturation to BGR
 *
 * As zimiHLSToRGB_8u_*, to samples in the order B, G, R and rounded down. Otherwise as the planar forms of
 * zimiBGRToHLS_8u_*.
 * @{ */
ZimResult zimiHLSToBGR_8u_AC4P4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[4], Zim32s dstStep,
                                 ZimiSize roiSize);
ZimResult zimiHLSToBGR_8u_AP4C4R(const Zim8u* const pSrc[4], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                 ZimiSize roiSize);
ZimResult zimiHLSToBGR_8u_AP4R(const Zim8u* const pSrc[4], Zim32s srcStep, Zim8u* const pDst[4], Zim32s dstStep,
                               ZimiSize roiSize);
ZimResult zimiHLSToBGR_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiHLSToBGR_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiHLSToBGR_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup hsv HSV
 * @{ */

/** \name RGB to hue, saturation, value
 *
 * A full turn of hue and full saturation are 255 in 8u and 65535 in 16u, both rounded; value is the largest of the
 * three samples. Gray has hue and saturation 0. The depths differ in their rounding. AC4R leaves the destination's
 * fourth sample as it was. In 16u an odd step loses its low bit. Any size from 1 x 1; a team of threads from 4097
 * pixels on.
 * @{ */
ZimResult zimiRGBToHSV_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHSV_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHSV_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToHSV_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Hue, saturation, value to RGB
 *
 * Rounded. The largest hue is a full turn, the same as 0. Otherwise as zimiRGBToHSV_*.
 * @{ */
ZimResult zimiHSVToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHSVToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHSVToRGB_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiHSVToRGB_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup ycbcr YCbCr and YUV at full resolution
 * @{ */

/** \name RGB to YCbCr, BT.601 in studio range
 *
 * Y in 16..235, Cb and Cr in 16..240, rounded. Any size from 1 x 1. AC4R leaves the destination's fourth sample as it
 * was. A null plane pointer gives zimResultNullPointer: in C3P3R and AC4P3R before the size is tested, in P3R after.
 * @{ */
ZimResult zimiRGBToYCbCr_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCbCr_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCbCr_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                  ZimiSize roiSize);
ZimResult zimiRGBToYCbCr_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                   ZimiSize roiSize);
ZimResult zimiRGBToYCbCr_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                ZimiSize roiSize);
/** @} */

/** \name RGB to YUV, analogue weights
 *
 * Y in 0..255, truncated; U in 16..239; V saturates, since pure red and cyan lie outside its range. Any size from 1
 * x 1. AC4R leaves the destination's fourth sample as it was; AC4P4R copies the source's to the fourth plane, whose
 * pointer is used without a test. Null plane pointers are found after the size is tested.
 * @{ */
ZimResult zimiRGBToYUV_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYUV_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYUV_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiRGBToYUV_8u_AC4P4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[4], Zim32s dstStep,
                                 ZimiSize roiSize);
ZimResult zimiRGBToYUV_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
/** @} */

/** \name YCbCr to RGB and BGR, BT.601 in studio range
 *
 * Saturated to 0..255. C3R and AC4R truncate, so that white (235, 128, 128) becomes 254; all others round. The C4
 * forms store aval as the fourth sample; AC4R leaves it as it was. Any size from 1 x 1. Null plane pointers are found
 * after the size is tested in the RGB forms, before it in the BGR forms.
 * @{ */
ZimResult zimiYCbCrToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiYCbCrToRGB_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                  ZimiSize roiSize);
ZimResult zimiYCbCrToRGB_8u_P3C4R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                  ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCbCrToBGR_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                  ZimiSize roiSize);
ZimResult zimiYCbCrToBGR_8u_P3C4R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                  ZimiSize roiSize, Zim8u aval);
/** @} */

/** \name YCbCr to BGR, BT.709 in studio range
 *
 * As zimiYCbCrToBGR_*, with the coefficients of BT.709.
 * @{ */
ZimResult zimiYCbCrToBGR_709CSC_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                         ZimiSize roiSize);
ZimResult zimiYCbCrToBGR_709CSC_8u_P3C4R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                         ZimiSize roiSize, Zim8u aval);
/** @} */

/** \name YUV to RGB, analogue weights
 *
 * Saturated to 0..255. All truncate but C3C4R, which rounds and stores aval as the fourth sample. AC4R leaves the
 * fourth sample as it was. Any size from 1 x 1. Null plane pointers are found after the size is tested.
 * @{ */
ZimResult zimiYUVToRGB_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUVToRGB_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUVToRGB_8u_C3C4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim8u aval);
ZimResult zimiYUVToRGB_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiYUVToRGB_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup encoders Encoders of shared chroma
 * @{ */

/** \name RGB and BGR to YCbCr with chroma shared by pixels, BT.601 in studio range: streams of 4:2:2
 *
 * A pair of pixels takes four bytes, in the order that the destination's colour word spells: YCbCr422 is Y, Cb, Y, Cr,
 * CbYCr422 is Cb, Y, Cr, Y. Chroma is that of the pair's average, rounded in the RGB forms and in
 * zimiBGRToCbYCr422_8u_AC4C2R; in zimiBGRToYCbCr422_* an eighth of a level is added in place of a half.
 * zimiRGBToYCbCr422_8u_*C2R and zimiRGBToYCrCb422_8u_*C2R truncate the luma of every second pixel. The last pixel of an
 * odd width writes two bytes, its luma and the chroma that comes first in a pair, which is its own. Any size from 1 x
 * 1, zimiBGRToYCbCr422_* from 2 x 1. Null planes of a source are found after the size is tested.
 * @{ */
ZimResult zimiRGBToYCbCr422_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCbCr422_8u_P3C2R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiRGBToYCrCb422_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYCrCb422_8u_P3C2R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiBGRToCbYCr422_8u_AC4C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiBGRToYCbCr422_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiBGRToYCbCr422_8u_AC4C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name RGB to a stream of 4:2:2 with filtered chroma, BT.601 in studio range
 *
 * Bytes in the order Cb, Y, Cr, Y. The chroma of a pair is half that of its first pixel and a quarter each of its
 * second pixel and of the pixel before. Before the first pair of a row there is nothing: its chroma lies a quarter
 * closer to 128. The Gamma form maps every sample by the curve of zimiGammaFwd_8u_* first. The last pixel of an odd
 * width writes its own Cb and luma. Any size from 1 x 1. The Gamma form returns zimResultBadStep for a step below 1.
 * @{ */
ZimResult zimiRGBToCbYCr422_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToCbYCr422Gamma_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                          ZimiSize roiSize);
/** @} */

/** \name BGR to a stream of 4:2:2, BT.709 in full range
 *
 * Bytes in the order Cb, Y, Cr, Y, all of them kept within 1 to 254. The last pixel of an odd width writes its own Cb
 * and luma. Any size from 1 x 1.
 * @{ */
ZimResult zimiBGRToCbYCr422_709HDTV_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                             ZimiSize roiSize);
ZimResult zimiBGRToCbYCr422_709HDTV_8u_AC4C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                              ZimiSize roiSize);
/** @} */

/** \name RGB and BGR to planes of 4:2:2, BT.601 in studio range
 *
 * Chroma rows of half the width, with an eighth of a level added in place of a half. dstStep has a step for each plane.
 * Sizes from 2 x 1. Of an odd width the BGR forms write the last pixel's luma and no chroma; zimiRGBToYCbCr422_8u_C3P3R
 * leaves it alone and returns zimWarnOddSize. Null planes are found before the size is tested.
 * @{ */
ZimResult zimiRGBToYCbCr422_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr422_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr422_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
/** @} */

/** \name BGR to planes of 4:1:1, BT.601 in studio range
 *
 * Chroma rows of a quarter of the width, with an eighth of a level added in place of a half. dstStep has a step for
 * each plane. Sizes from 4 x 1; of a width that is no multiple of 4 the last pixels are left alone, and the result is
 * zimWarnOddSize. Null planes are found before the size is tested.
 * @{ */
ZimResult zimiBGRToYCbCr411_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr411_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
/** @} */

/** \name RGB and BGR to planes of 4:2:0, studio range
 *
 * Chroma of half the width and half the height, with an eighth of a level added in place of a half; BT.601, with 709CSC
 * BT.709. In YCrCb420 plane 1 is Cr. dstStep has a step for each plane; in zimiRGBToYCrCb420_8u_AC4P3R alone plane 1
 * advances by dstStep[2] and plane 2 by dstStep[1]. P2 has pairs of Cb and Cr in its second plane. Sizes from 2 x 2,
 * zimiRGBToYCbCr420_8u_C3P3R from 1 x 1. An odd last column or row is left alone, and the result is zimWarnOddSize.
 * Null planes are found before the size is tested, in zimiRGBToYCbCr420_8u_C3P3R after.
 * @{ */
ZimResult zimiRGBToYCbCr420_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr420_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr420_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
ZimResult zimiBGRToYCrCb420_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCrCb420_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
ZimResult zimiRGBToYCrCb420_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
ZimResult zimiBGRToYCbCr420_709CSC_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                            const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGRToYCbCr420_709CSC_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                             const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGRToYCbCr420_709CSC_8u_C3P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep,
                                            Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiBGRToYCrCb420_709CSC_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                            const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGRToYCrCb420_709CSC_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                             const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name BGR to planes of 4:2:0, BT.709 in full range
 *
 * All samples are kept within 1 to 254. In chroma an eighth of a level is added in place of a half. dstStep has a step
 * for each plane. Sizes from 2 x 2; an odd last column or row is left alone, and the result is zimWarnOddSize. Null
 * planes are found before the size is tested.
 * @{ */
ZimResult zimiBGRToYCbCr420_709HDTV_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                              const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name RGB to a plane of luma and one of Cb and Cr, 4:2:0, BT.601 in single precision
 *
 * Computed in floats, of three decimals a coefficient, and rounded. The fourth sample of a C4 pixel is not read. Any
 * size from 1 x 1; an odd last column or row is left alone, and the result is zimWarnOddSize. The size is tested before
 * the pointers.
 * @{ */
ZimResult zimiRGBToYCbCr420_8u_C3P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep, Zim8u* pDstCbCr,
                                     Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiRGBToYCbCr420_8u_C4P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep, Zim8u* pDstCbCr,
                                     Zim32s dstCbCrStep, ZimiSize roiSize);
/** @} */

/** \name RGB and BGR to YUV with chroma shared by pixels, analogue weights
 *
 * Y truncated, V saturated, as in zimiRGBToYUV_*. YUV422 C2 is a stream of Y, U, Y, V, of whose odd last pixel Y and U
 * are written; in planes of 4:2:2 it has a Y, U and V of its own, in chroma rows of (width + 1) / 2. Of 4:2:0 an odd
 * last column or row is left alone, and the result is zimWarnOddSize. Forms without R have no steps: each row of a
 * plane begins where the one before ends, chroma rows of 4:2:0 being width / 2 bytes long. Any size from 1 x 1. Null
 * planes are found after the size is tested.
 * @{ */
ZimResult zimiRGBToYUV422_8u_C3C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToYUV422_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                   ZimiSize roiSize);
ZimResult zimiRGBToYUV422_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3],
                                 const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiRGBToYUV422_8u_C3P3(const Zim8u* pSrc, Zim8u* const pDst[3], ZimiSize roiSize);
ZimResult zimiRGBToYUV422_8u_P3(const Zim8u* const pSrc[3], Zim8u* const pDst[3], ZimiSize roiSize);
ZimResult zimiRGBToYUV420_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                   ZimiSize roiSize);
ZimResult zimiRGBToYUV420_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3],
                                 const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGRToYUV420_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                    ZimiSize roiSize);
ZimResult zimiRGBToYUV420_8u_C3P3(const Zim8u* pSrc, Zim8u* const pDst[3], ZimiSize roiSize);
ZimResult zimiRGBToYUV420_8u_P3(const Zim8u* const pSrc[3], Zim8u* const pDst[3], ZimiSize roiSize);
/** @} */

/** \name Pixels packed in 16-bit words to YCbCr with chroma shared by pixels, BT.601 in studio range
 *
 * A word holds B in its low bits, then G, then R: 5 bits each (555; the highest bit is not used) or 5, 6 and 5 (565).
 * They expand to 8 bits by zeros below, so that white is (248, 248, 248) or (248, 252, 248). Steps are exact bytes;
 * words need not be aligned. In chroma an eighth of a level is added in place of a half. 422 from 2 x 1: the last pixel
 * of an odd width writes its luma and, in C2, its own Cb. 411 from 4 x 1: the last pixels of a width that is no
 * multiple of 4 are left alone, and the result is zimWarnOddSize. 420 from 2 x 2: an odd last column or row has its
 * luma and no chroma. Null planes are found before the size is tested.
 * @{ */
ZimResult zimiBGR555ToYCbCr422_16u8u_C3C2R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiBGR565ToYCbCr422_16u8u_C3C2R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiBGR555ToYCbCr422_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR565ToYCbCr422_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR555ToYCbCr411_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR565ToYCbCr411_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR555ToYCbCr420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR565ToYCbCr420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR555ToYCrCb420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR565ToYCrCb420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                           const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name Pixels packed in 16-bit words to planes of YUV, analogue weights
 *
 * RGB565 has R in the low bits. The BGR forms round luma, take sizes from 2 x 2 and find null planes before the size is
 * tested; the RGB forms truncate luma, take any size from 1 x 1 and find null planes after. An odd last column, in
 * 4:2:0 an odd last row too, is left alone, and the result is zimWarnOddSize.
 * @{ */
ZimResult zimiBGR555ToYUV420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                         const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiBGR565ToYUV420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                         const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiRGB565ToYUV420_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                         const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiRGB565ToYUV422_16u8u_C3P3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                         const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name Pixels packed in 16-bit words to 8-bit samples
 *
 * Bytes in the order of the fields from the low bits up, expanded by zeros below. Any size from 1 x 1. The low bit of
 * srcStep is dropped. zimResultBadStep for a step below 1, after the size is tested.
 * @{ */
ZimResult zimiBGR565ToBGR_16u8u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGB565ToRGB_16u8u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup decoders Decoders of shared chroma
 * @{ */

/** \name Packed 4:2:2 to RGB and BGR
 *
 * Chroma applies as it is to both pixels of a pair. A pair is Y0 Cb Y1 Cr in YCbCr422, Y0 Cr Y1 Cb in YCrCb422,
 * Cb Y0 Cr Y1 in CbYCr422, Y0 U Y1 V in YUV422. A lone last pixel of an odd width has its luma and the pair's first
 * chroma sample, and takes the other from the pair before; in an image of one column its one sample serves as both.
 * YCbCr is BT.601 in studio range, rounded (CbYCr422) or truncated; 709HDTV is BT.709 in full range, rounded; YUV is in
 * full range, truncated. C4 stores aval as the fourth sample. Any size from 1 x 1; YCbCr422ToBGR from 2 x 1. Null
 * planes are found after the size is tested.
 * @{ */
ZimResult zimiCbYCr422ToRGB_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiCbYCr422ToBGR_8u_C2C4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     Zim8u aval);
ZimResult zimiCbYCr422ToBGR_709HDTV_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                             ZimiSize roiSize);
ZimResult zimiCbYCr422ToBGR_709HDTV_8u_C2C4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                             ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCbCr422ToRGB_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCrCb422ToRGB_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCrCb422ToRGB_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR_8u_C2C4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     Zim8u aval);
ZimResult zimiYUV422ToRGB_8u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Planar 4:2:2 to RGB and BGR
 *
 * One chroma sample for two pixels of a row, planes with a step each. The chroma planes have (width + 1) / 2 columns,
 * the last of which serves a lone last pixel; zimiYCbCr422ToBGR_8u_P3C3R leaves that pixel alone instead. YCbCr is
 * BT.601 in studio range, rounded in RGB order and truncated in BGR order; YUV is in full range, truncated. AC4 stores
 * 0 as the fourth sample. Names without R are of images without gaps: rows of width samples of luma and of (width + 1)
 * / 2 of chroma. Any size from 1 x 1; zimiYCbCr422ToBGR_8u_P3C3R from 2 x 1. Null planes are found after the size is
 * tested, by zimiYCbCr422ToBGR_8u_P3C3R before.
 * @{ */
ZimResult zimiYCbCr422ToBGR_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYUV422ToRGB_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV422ToRGB_8u_P3(const Zim8u* const pSrc[3], Zim8u* const pDst[3], ZimiSize roiSize);
ZimResult zimiYUV422ToRGB_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                   ZimiSize roiSize);
ZimResult zimiYUV422ToRGB_8u_P3C3(const Zim8u* const pSrc[3], Zim8u* pDst, ZimiSize roiSize);
ZimResult zimiYUV422ToRGB_8u_P3AC4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                    ZimiSize roiSize);
/** @} */

/** \name 4:2:0 to RGB and BGR
 *
 * One pair of chroma for 2 x 2 pixels, planes with a step each; plane 1 of YCrCb420 is Cr; P2 has one plane of
 * interleaved Cb and Cr. Whole blocks are converted: a lone last column or row is left alone, with zimWarnOddSize.
 * YCbCr is BT.601 in studio range, rounded; zimiYCbCr420ToRGB_8u_P2C4R computes in single precision. 709CSC is BT.709
 * in studio range, 709HDTV in full range. YUV is in full range, truncated; P3AC4R is rounded and stores 0 as the fourth
 * sample. C4 stores aval. Names without R are of images without gaps: rows of width samples of luma and of width / 2 of
 * chroma. Any size from 1 x 1; zimiYUV420ToBGR_8u_P3C3R from 2 x 2. Null planes are found after the size is tested; the
 * P2 forms test the size ahead of all pointers.
 * @{ */
ZimResult zimiYCbCr420ToRGB_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR_8u_P3C4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCrCb420ToRGB_8u_P3C4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCbCr420ToRGB_8u_P2C3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr, Zim32s srcCbCrStep,
                                     Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB_8u_P2C4R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr, Zim32s srcCbCrStep,
                                     Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCbCr420ToBGR_709CSC_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                            Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR_709HDTV_8u_P3C4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                             Zim32s dstStep, ZimiSize roiSize, Zim8u aval);
ZimResult zimiYUV420ToBGR_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                   ZimiSize roiSize);
ZimResult zimiYUV420ToRGB_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB_8u_P3(const Zim8u* const pSrc[3], Zim8u* const pDst[3], ZimiSize roiSize);
ZimResult zimiYUV420ToRGB_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                   ZimiSize roiSize);
ZimResult zimiYUV420ToRGB_8u_P3C3(const Zim8u* const pSrc[3], Zim8u* pDst, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB_8u_P3AC4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                    ZimiSize roiSize);
/** @} */

/** \name Planar 4:1:1 to BGR
 *
 * One chroma sample for four pixels of a row, planes with a step each. BT.601 in studio range, truncated. The last one
 * to three pixels of a width that is no multiple of 4 take the chroma of the group before. C4 stores aval as the fourth
 * sample. From 4 x 1. Null planes are found before the size is tested.
 * @{ */
ZimResult zimiYCbCr411ToBGR_8u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCbCr411ToBGR_8u_P3C4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize, Zim8u aval);
/** @} */

/** @} */

/** \defgroup packed Packed 16-bit pixels
 * @{ */

/** \name RGB and BGR to packed 16-bit pixels
 *
 * One word a pixel: 5 bits of the first sample from bit 0, 6 bits of green from bit 5, 5 bits of the third from bit 11.
 * Samples lose their low bits. Any size from 1 x 1; a step below 1 gives zimResultBadStep after the size is tested. The
 * low bit of dstStep is dropped.
 * @{ */
ZimResult zimiBGRToBGR565_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiRGBToRGB565_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Planar YCbCr to packed 16-bit pixels
 *
 * One word a pixel: BGR565 has blue in bits 0 to 4, green in 5 to 10, red in 11 to 15; BGR555 has green in 5 to 9, red
 * in 10 to 14; BGR444 has four bits each from bit 0; RGB words have red and blue exchanged. Unused bits are 0. Samples
 * are cut to their high bits. BT.601 in studio range, with terms cut to 1/16. Planes have a step each; one chroma
 * sample serves one, two (422) or 2 x 2 pixels (420). All pixels are converted: the chroma planes have a column (and
 * row) for a lone last column (and row) as well. Any size from 1 x 1. Null planes are found after the size is tested.
 * The low bit of dstStep is dropped.
 * @{ */
ZimResult zimiYCbCr420ToBGR444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                        Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Packed 4:2:2 YCbCr to packed 16-bit pixels
 *
 * As above from pairs Y0 Cb Y1 Cr, with BT.601 in studio range, truncated. A lone last pixel takes its Cr from the pair
 * before. An image of one column is an exception: each of its rows becomes three bytes R, G, B, whatever the order of
 * the name, at distances of dstStep / 2 bytes; the last of them lies beyond the word of the pixel.
 * @{ */
ZimResult zimiYCbCr422ToBGR444_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR555_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR565_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB444_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB555_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB565_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
/** @} */

/** \name Interleaved YCbCr to packed 16-bit pixels
 *
 * As above from three samples a pixel, with BT.601 in studio range, truncated.
 * @{ */
ZimResult zimiYCbCrToBGR444_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiYCbCrToBGR555_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiYCbCrToBGR565_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiYCbCrToRGB444_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiYCbCrToRGB555_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiYCbCrToRGB565_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
/** @} */

/** \name Planar 4:2:0 YUV to packed 16-bit pixels
 *
 * As above in full range, truncated. All pixels are converted, except that nothing is written where the width or the
 * height is 1.
 * @{ */
ZimResult zimiYUV420ToBGR444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToBGR555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToBGR565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB444_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                         Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name Planar 4:1:1 YCbCr to packed 16-bit pixels
 *
 * As above with BT.601 in studio range, rounded. The last one to three pixels of a width that is no multiple of 4 take
 * the chroma of the group before, and zimWarnOddSize is returned. From 4 x 1. Null planes are found before the size is
 * tested. dstStep is exact.
 * @{ */
ZimResult zimiYCbCr411ToBGR555_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr411ToBGR565_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                           Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** \name YCbCr to packed 16-bit pixels with ordered dither
 *
 * Words as above. The 8-bit value of a channel becomes the level below or above it, by a threshold out of a pattern of
 * 4 x 4 that starts at the region's first pixel; zero stays zero. BT.601 in studio range, with terms cut to 1/16. All
 * pixels are converted: the chroma planes have a column (and row) for a lone last column (and row) as well; a lone last
 * pixel of a packed row uses its one chroma sample as Cb and as Cr. Any size from 1 x 1. Null planes are found after
 * the size is tested. The low bit of dstStep is dropped.
 * @{ */
ZimResult zimiYCbCr420ToBGR444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToBGR565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToRGB565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                                 Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR444Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR555Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr422ToBGR565Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB444Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB555Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr422ToRGB565Dither_8u16u_C2C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                                 ZimiSize roiSize);
ZimResult zimiYCbCrToBGR444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToRGB565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                              Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCrToBGR444Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
ZimResult zimiYCbCrToBGR555Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
ZimResult zimiYCbCrToBGR565Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
ZimResult zimiYCbCrToRGB444Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
ZimResult zimiYCbCrToRGB555Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
ZimResult zimiYCbCrToRGB565Dither_8u16u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep,
                                            ZimiSize roiSize);
/** @} */

/** \name YUV to packed 16-bit pixels with ordered dither
 *
 * As above in full range. Every size is converted.
 * @{ */
ZimResult zimiYUV420ToBGR444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToBGR555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToBGR565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB444Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB555Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYUV420ToRGB565Dither_8u16u_P3C3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim16u* pDst,
                                               Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup ycocg YCoCg
 * @{ */

/** \name RGB and BGR to YCoCg
 *
 * Planes Y, Co, Cg. Plain forms: Y = (R + 2G + B + 2) >> 2, Co = (R - B + 1) >> 1, Cg = (2G - R - B + 2) >> 2. The 8u
 * form adds 128 to Co and Cg, limited to 255. C4 sources ignore their fourth sample. 16s planes keep the low bits: Co
 * and Cg of 16s sources can reach 32768, which wraps. SBGR is BGR in signed samples. The size is not tested: a width or
 * height below 1 converts nothing and gives zimResultOk. Steps are exact bytes.
 * @{ */
ZimResult zimiRGBToYCoCg_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                  ZimiSize roiSize);
ZimResult zimiBGRToYCoCg_8u16s_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCoCg_8u16s_C4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_16s_C3P3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                    ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_16s_C4P3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                    ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_16s32s_C3P3R(const Zim16s* pSrc, Zim32s srcStep, Zim32s* const pDst[3], Zim32s dstStep,
                                       ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_16s32s_C4P3R(const Zim16s* pSrc, Zim32s srcStep, Zim32s* const pDst[3], Zim32s dstStep,
                                       ZimiSize roiSize);
/** @} */

/** \name BGR to YCoCg, reversible
 *
 * The lifting form Co = R - B, t = B + (Co >> 1), Cg = G - t, Y = t + (Cg >> 1), which its inverse undoes exactly. 16s
 * planes of 16s sources wrap at every step, and still invert. Otherwise as the plain forms.
 * @{ */
ZimResult zimiBGRToYCoCg_Rev_8u16s_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                         ZimiSize roiSize);
ZimResult zimiBGRToYCoCg_Rev_8u16s_C4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                         ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_Rev_16s_C3P3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_Rev_16s_C4P3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_Rev_16s32s_C3P3R(const Zim16s* pSrc, Zim32s srcStep, Zim32s* const pDst[3], Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiSBGRToYCoCg_Rev_16s32s_C4P3R(const Zim16s* pSrc, Zim32s srcStep, Zim32s* const pDst[3], Zim32s dstStep,
                                           ZimiSize roiSize);
/** @} */

/** \name YCoCg to RGB and BGR
 *
 * R = Y + Co - Cg, G = Y + Cg, B = Y - Co - Cg. 8u and 16s8u saturate to 0..255, 16s8u after a cut to 16 bits; 16s and
 * 32s16s keep the low 16 bits. C4 forms store aval as the fourth sample. The size is not tested: a width or height
 * below 1 converts nothing and gives zimResultOk. Steps are exact bytes.
 * @{ */
ZimResult zimiYCoCgToRGB_8u_P3C3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                  ZimiSize roiSize);
ZimResult zimiYCoCgToBGR_16s8u_P3C3R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize);
ZimResult zimiYCoCgToBGR_16s8u_P3C4R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                     ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCoCgToSBGR_16s_P3C3R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                    ZimiSize roiSize);
ZimResult zimiYCoCgToSBGR_16s_P3C4R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                    ZimiSize roiSize, Zim16s aval);
ZimResult zimiYCoCgToSBGR_32s16s_P3C3R(const Zim32s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                       ZimiSize roiSize);
ZimResult zimiYCoCgToSBGR_32s16s_P3C4R(const Zim32s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                       ZimiSize roiSize, Zim16s aval);
/** @} */

/** \name YCoCg to BGR, reversible
 *
 * The inverse of the lifting form: t = Y - (Cg >> 1), G = Cg + t, B = t - (Co >> 1), R = B + Co. Otherwise as the plain
 * forms.
 * @{ */
ZimResult zimiYCoCgToBGR_Rev_16s8u_P3C3R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                         ZimiSize roiSize);
ZimResult zimiYCoCgToBGR_Rev_16s8u_P3C4R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                         ZimiSize roiSize, Zim8u aval);
ZimResult zimiYCoCgToSBGR_Rev_16s_P3C3R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiYCoCgToSBGR_Rev_16s_P3C4R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                        ZimiSize roiSize, Zim16s aval);
ZimResult zimiYCoCgToSBGR_Rev_32s16s_P3C3R(const Zim32s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                           ZimiSize roiSize);
ZimResult zimiYCoCgToSBGR_Rev_32s16s_P3C4R(const Zim32s* const pSrc[3], Zim32s srcStep, Zim16s* pDst, Zim32s dstStep,
                                           ZimiSize roiSize, Zim16s aval);
/** @} */

/** @} */

/** \defgroup layouts Chroma layouts
 *
 * Luma-chroma images of 8-bit samples between layouts and sub-samplings, without a change of colour model.
 *
 * Grids: 422 has a chroma sample for 2 pixels across; 420 for 2 across and 2 down; 411 for 4 across; 1620 for 4 across
 * and 4 down. Layouts: C2, packed, four bytes for two pixels in the order that the colour words spell (YCbCr422: Y0,
 * Cb, Y1, Cr; CbYCr422: Cb, Y0, Cr, Y1; YCrCb422: Y0, Cr, Y1, Cb); P2, a plane of luma and one of Cb, Cr pairs; P3,
 * three planes, as an array of pointers and an array of steps, in the order that the colour words spell.
 *
 * Null pointers, planes and arrays of steps give zimResultNullPointer; pointers and planes are tested before the size,
 * arrays of steps after it, unless a declaration says otherwise. Steps are not tested. Luma is copied as it stands
 * where nothing is said of it.
 * @{ */

/** \name Layout and order alone
 *
 * Nothing is lost or added. 422 takes widths from 2, 420 sizes from 2 x 2, 411 widths from 4; pixels beyond the last
 * whole chroma sample are left out, and the result is zimResultOk all the same. A height below 1 converts nothing and
 * gives zimResultOk in zimiCbYCr422ToYCbCr422_8u_C2P3R, zimiYCbCr422ToYCrCb422_*, zimiYCrCb422ToYCbCr422_8u_C2P3R and
 * zimiYCbCr411_*; it is zimResultBadSize in the others. zimiYCbCr420ToYCrCb420_8u_P2P3R keeps the order of pairs: the
 * first byte goes to plane 1, as in zimiYCbCr420_8u_P2P3R; it finds null planes after a size below 1 x 1 and before one
 * below 2 x 2. zimiYCbCr422_8u_C2P3R finds a null array of steps before the size is tested.
 * @{ */
ZimResult zimiCbYCr422ToYCbCr422_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiCbYCr422ToYCbCr422_8u_C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiYCbCr411_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr, Zim32s srcCbCrStep,
                                Zim8u* const pDst[3], const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr411_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY, Zim32s dstYStep,
                                Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCrCb420_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr420_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr, Zim32s srcCbCrStep,
                                Zim8u* const pDst[3], const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr420_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY, Zim32s dstYStep,
                                Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToCbYCr422_8u_C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiYCbCr422ToCbYCr422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCrCb422_8u_C2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                        ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCrCb422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr422_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                ZimiSize roiSize);
ZimResult zimiYCbCr422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst, Zim32s dstStep,
                                ZimiSize roiSize);
ZimResult zimiYCrCb420ToYCbCr420_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCrCb422ToYCbCr422_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:2:2 to 4:2:0: even rows
 *
 * Of each two rows of chroma the even one is taken and the odd one dropped, without an average. Sizes from 2 x 2; an
 * odd last column or row is left out, luma as well.
 * @{ */
ZimResult zimiCbYCr422ToYCbCr420_8u_C2P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep,
                                          Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiCbYCr422ToYCbCr420_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiCbYCr422ToYCrCb420_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr420_8u_C2P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep,
                                          Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr420_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr420_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr420_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCrCb420_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCrCb422ToYCbCr420_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:2:0 to 4:2:2: rows twice
 *
 * Each row of chroma is written to two rows. Sizes from 2 x 2; an odd last column or row is left out, luma as well.
 * @{ */
ZimResult zimiYCbCr420ToCbYCr422_8u_P2C2R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr422_8u_P2C2R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr422_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr422_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCrCb420ToCbYCr422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCrCb420ToYCbCr422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCrCb420ToYCbCr422_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:2:2 to 4:1:1: even columns
 *
 * Of each two columns of chroma the even one is taken and the odd one dropped, without an average. Widths from 4, of
 * which whole multiples of 4 are converted; a height below 1 converts nothing and gives zimResultOk.
 * @{ */
ZimResult zimiCbYCr422ToYCbCr411_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr411_8u_C2P2R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDstY, Zim32s dstYStep,
                                          Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr411_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr411_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr422ToYCbCr411_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCrCb422ToYCbCr411_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                          const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:1:1 to 4:2:2: columns twice
 *
 * Each sample of chroma is written to two columns. Widths from 4, of which whole multiples of 4 are converted; a height
 * below 1 converts nothing and gives zimResultOk.
 * @{ */
ZimResult zimiYCbCr411ToYCbCr422_8u_P2C2R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCbCr422_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCbCr422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCbCr422_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCrCb422_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                          Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCrCb422_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:1:1 to 4:2:0 and back, folded
 *
 * Lossless: a row of 4:2:0 chroma has in its even columns a row of 4:1:1 chroma, and in its odd columns the row below
 * that. Sizes from 4 x 2, of which whole multiples of 4 x 2 are converted.
 * @{ */
ZimResult zimiYCbCr411ToYCbCr420_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCbCr420_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCbCr420_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                        const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr411ToYCrCb420_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr411_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                          Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                          ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr411_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
ZimResult zimiYCrCb420ToYCbCr411_8u_P3P2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDstY,
                                          Zim32s dstYStep, Zim8u* pDstCbCr, Zim32s dstCbCrStep, ZimiSize roiSize);
/** @} */

/** \name Chroma from its neighbours
 *
 * zimiYCbCr420To1620_8u_P3R takes even rows and even columns. zimiYCbCr420To411_8u_P3R takes even columns, and between
 * two rows their average, rounded down; below the last row that row again. zimiYCbCr411To420_8u_P3R takes even rows,
 * and between two columns their average, rounded down; beyond the last column that column again.
 * zimiYCbCr1620To420_8u_P3R puts averages between rows, between columns and between both: of Cb rounded half up, of Cr
 * rounded down, and along the right and the lower edge rounded down for both. Below the last row that row is repeated
 * without averages. Width and height have to be multiples of 4, in zimiYCbCr420To411_8u_P3R the width of 4 and the
 * height of 2; others give zimResultBadSize.
 * @{ */
ZimResult zimiYCbCr1620To420_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                    const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr411To420_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                   const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr420To1620_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                    const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr420To411_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                   const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name 4:2:0 in slices, luma filtered down its columns
 *
 * Luma is weighted 1:2:1 over three rows (3:1 at the upper and lower edge), chroma the average of two rows. An image
 * may be converted slice by slice: layout is zimSliceTop, zimSliceCenter, zimSliceBottom, or zimSliceWhole for the
 * whole image; other values write nothing and give zimResultOk. The output of top and center slices stops two rows
 * short of their end; center and bottom ones begin two rows above their own, so that three luma rows, one chroma row
 * and two destination rows (one of destination chroma) above the pointers have to be there.
 *
 * How the sums round is particular to each row. With Y1 = min(((Y[r-1] + 2 Y[r] + Y[r+1]) >> 2) + 1, 255), Y0 without
 * the 1, edges with the row itself in place of the one beyond; C1 = min(((C[m] + C[m+1]) >> 1) + 1, 255), C0 without
 * the 1, m = r / 2:
 *
 * - zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R: Y1 and C1, but Y0 in row 1 of a top slice and in the last two rows of a
 *   bottom slice, and C0 in the last two rows of a bottom slice and in a whole image but its first and last two rows;
 *   the last two rows have the chroma of the last pair of rows. A whole image of two rows has its one row of
 *   chroma in both.
 * - zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R: Y1 and C1 in a whole image, Y0 and C0 in slices; the last row has the
 *   chroma of the one above it. A whole image of two rows keeps its chroma. The first byte of each pair goes to
 * plane 1. In center, bottom and whole, plane 1 advances by the step of plane 2 and plane 2 by that of plane 1. Null
 * planes are found after a size below 1 x 1 and before one below 2 x 2. A top slice of height 2 writes nothing.
 *
 * Sizes from 2 x 2; an odd last column or row is left out.
 * @{ */
enum {
  zimSliceTop = 1,     /**< the first slice */
  zimSliceCenter = 4,  /**< a slice between two others */
  zimSliceBottom = 16, /**< the last slice */
  zimSliceWhole = 21   /**< the whole image; so is any value with the bits of the three others */
};
ZimResult zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                                 Zim32s srcCbCrStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                                 Zim32s layout);
ZimResult zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                                 Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                                 ZimiSize roiSize, Zim32s layout);
/** @} */

/** \name 4:2:0 to 4:2:2, chroma rows interpolated
 *
 * Even rows are those of the source; odd rows are (9 (a + b) - p - n + 8) >> 4, limited to 0..255, of the rows a and b
 * next to them and p and n beyond those, with the first and the last even row in place of rows outside. Sizes from 2 x
 * 8; the width is rounded down to even, the height to a multiple of 8.
 * @{ */
ZimResult zimiYCbCr420ToYCbCr422_Filter_8u_P2P3R(const Zim8u* pSrcY, Zim32s srcYStep, const Zim8u* pSrcCbCr,
                                                 Zim32s srcCbCrStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                                 ZimiSize roiSize);
ZimResult zimiYCbCr420ToYCbCr422_Filter_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3],
                                               Zim8u* const pDst[3], const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCrCb420ToYCbCr422_Filter_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3],
                                               Zim8u* const pDst[3], const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** YCrCb 4:2:0 to BGR with chroma averaged between columns.
 *
 * BT.601 in studio range, truncated and limited to 0..255. Even pixels have their own chroma sample, odd ones the
 * average, rounded half up, with the next; in the last pair both have their own. aval is stored as the fourth sample.
 * Sizes from 1 x 1; an odd width or height gives zimWarnOddSize, and the last column or row is left out. A width of 1
 * writes two pixels a row. Null planes are found after the size is tested.
 */
ZimResult zimiYCrCb420ToBGR_Filter_8u_P3C4R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                            Zim32s dstStep, ZimiSize roiSize, Zim8u aval);

/** \name Interlaced 4:2:2 to 4:2:0
 *
 * The fields, even and odd rows, do not mix. Of each four rows s0 to s3 of chroma come two: (3 s0 + s2 + 2) >> 2 and
 * (s1 + 3 s3 + 2) >> 2. Sizes from 2 x 4; the width is rounded down to even, the height to a multiple of 4, with
 * zimWarnOddSize if that leaves pixels out. Runs on a team of threads from 128 x 132 pixels.
 * @{ */
ZimResult zimiCbYCr422ToYCbCr420_Interlace_8u_C2P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3],
                                                    const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr422To420_Interlace_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                             const Zim32s dstStep[3], ZimiSize roiSize);
/** @} */

/** \name Interlaced 4:2:0 to 4:2:2
 *
 * Within a field, between two rows s and t of chroma come two: in the even field (5 s + 3 t + 4) >> 3 and
 * (s + 7 t + 4) >> 3, in the odd field (7 s + t + 4) >> 3 and (3 s + 5 t + 4) >> 3. The first two rows and the last two
 * are copies. Sizes, result and threads as in the opposite direction.
 * @{ */
ZimResult zimiYCbCr420To422_Interlace_8u_P3R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* const pDst[3],
                                             const Zim32s dstStep[3], ZimiSize roiSize);
ZimResult zimiYCbCr420ToCbYCr422_Interlace_8u_P3C2R(const Zim8u* const pSrc[3], const Zim32s srcStep[3], Zim8u* pDst,
                                                    Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup twist Colour twist
 * @{ */

/** \name Affine map of the three samples of a pixel
 *
 * Sample k becomes twist[k][0] x + twist[k][1] y + twist[k][2] z + twist[k][3], in the image's own units and in single
 * precision. Integer results round to the nearest value, halves to even, and saturate; NaN becomes 0. AC4 forms leave
 * the fourth sample as it was. A null twist gives zimResultNullPointer; a step below 1 gives zimResultBadStep, tested
 * after the size. Any size from 1 x 1.
 * @{ */
ZimResult zimiColorTwist32f_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8u_C3IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8u_AC4IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                                   ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8u_IP3R(Zim8u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_C3R(const Zim8s* pSrc, Zim32s srcStep, Zim8s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_AC4R(const Zim8s* pSrc, Zim32s srcStep, Zim8s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_C3IR(Zim8s* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_AC4IR(Zim8s* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_P3R(const Zim8s* const pSrc[3], Zim32s srcStep, Zim8s* const pDst[3], Zim32s dstStep,
                                   ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_8s_IP3R(Zim8s* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_C3IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_AC4IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_P3R(const Zim16u* const pSrc[3], Zim32s srcStep, Zim16u* const pDst[3], Zim32s dstStep,
                                    ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16u_IP3R(Zim16u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize,
                                     const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_C3IR(Zim16s* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_AC4IR(Zim16s* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_P3R(const Zim16s* const pSrc[3], Zim32s srcStep, Zim16s* const pDst[3], Zim32s dstStep,
                                    ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist32f_16s_IP3R(Zim16s* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize,
                                     const Zim32f twist[3][4]);
/** @} */

/** \name The same on float images: neither rounded nor saturated
 * @{ */
ZimResult zimiColorTwist_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 const Zim32f twist[3][4]);
ZimResult zimiColorTwist_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                  const Zim32f twist[3][4]);
ZimResult zimiColorTwist_32f_C3IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist_32f_AC4IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist_32f_P3R(const Zim32f* const pSrc[3], Zim32s srcStep, Zim32f* const pDst[3], Zim32s dstStep,
                                 ZimiSize roiSize, const Zim32f twist[3][4]);
ZimResult zimiColorTwist_32f_IP3R(Zim32f* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize,
                                  const Zim32f twist[3][4]);
/** @} */

/** Linear map of four samples, with no offset: sample k becomes the sum of twist[k][i] times sample i, left to right.
 * Steps that both equal width * 4 make the image one run of width * height successive pixels. */
ZimResult zimiColorTwist_32f_C4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 const Zim32f twist[4][4]);

/** @} */

/** \defgroup gamma Gamma
 * @{ */

/** \name BT.709 transfer curve of integer samples
 *
 * Maps 0..255 or 0..65535 onto itself by the curve (Fwd: linear light to coded values) or its inverse (Inv), rounded to
 * nearest. AC4 forms leave the fourth sample as it was. A step below 1 gives zimResultBadStep, tested after the size.
 * 16u forms of more than 65536 samples (three a pixel) take 128 KiB of scratch from zimMalloc for the call;
 * zimResultNoMemory if there is none. Any size from 1 x 1.
 * @{ */
ZimResult zimiGammaFwd_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_8u_C3IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_8u_AC4IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
ZimResult zimiGammaFwd_8u_IP3R(Zim8u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_C3IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_AC4IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_P3R(const Zim16u* const pSrc[3], Zim32s srcStep, Zim16u* const pDst[3], Zim32s dstStep,
                               ZimiSize roiSize);
ZimResult zimiGammaFwd_16u_IP3R(Zim16u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_8u_C3IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_8u_AC4IR(Zim8u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_8u_P3R(const Zim8u* const pSrc[3], Zim32s srcStep, Zim8u* const pDst[3], Zim32s dstStep,
                              ZimiSize roiSize);
ZimResult zimiGammaInv_8u_IP3R(Zim8u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_16u_C3IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_16u_AC4IR(Zim16u* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize);
ZimResult zimiGammaInv_16u_P3R(const Zim16u* const pSrc[3], Zim32s srcStep, Zim16u* const pDst[3], Zim32s dstStep,
                               ZimiSize roiSize);
ZimResult zimiGammaInv_16u_IP3R(Zim16u* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize);
/** @} */

/** \name BT.709 transfer curve of float samples
 *
 * The curve over the range vMin to vMax. Samples outside the range are not clipped: they follow the linear part below
 * it and the power part above. Before all other tests, vMax - vMin of zero or below gives zimResultBadRange.
 * Otherwise as the integer forms; nothing is allocated.
 * @{ */
ZimResult zimiGammaFwd_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                               Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaFwd_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaFwd_32f_C3IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaFwd_32f_AC4IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaFwd_32f_P3R(const Zim32f* const pSrc[3], Zim32s srcStep, Zim32f* const pDst[3], Zim32s dstStep,
                               ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaFwd_32f_IP3R(Zim32f* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin,
                                Zim32f vMax);
ZimResult zimiGammaInv_32f_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                               Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaInv_32f_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaInv_32f_C3IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaInv_32f_AC4IR(Zim32f* pSrcDst, Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaInv_32f_P3R(const Zim32f* const pSrc[3], Zim32s srcStep, Zim32f* const pDst[3], Zim32s dstStep,
                               ZimiSize roiSize, Zim32f vMin, Zim32f vMax);
ZimResult zimiGammaInv_32f_IP3R(Zim32f* const pSrcDst[3], Zim32s srcDstStep, ZimiSize roiSize, Zim32f vMin,
                                Zim32f vMax);
/** @} */

/** @} */

/** \defgroup tone_mapping Tone mapping
 * @{ */

/** \name High-range gray to 8 bits by one scale for the whole image
 *
 * Linear: 255 stands for the image's maximum; results are truncated and cut to their low 8 bits. Mean: 255 stands for
 * twice the mean; results are truncated and saturated. A maximum or mean below zero gives zimWarnNoOperation and writes
 * nothing; one not above the least normal float, or NaN, fills the destination with 0. The destination pointer is
 * tested only when it is filled. Any size from 1 x 1; steps are not tested.
 * @{ */
ZimResult zimiToneMapLinear_32f8u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiToneMapMean_32f8u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

/** @} */

/** \defgroup bit_depth Bit depth
 * @{ */

/** \name Fewer levels, with or without dither
 *
 * Snaps every sample to one of `levels` equally spaced values of the source's range, black and white among them, and
 * stores it in the destination's type. 32f sources range from 0 to 1. With dither, 16-bit sources give 8-bit
 * destinations the high byte of their level, and 8u stores level n as n times a step of 1/256 units, which may end at
 * 254 by zimDitherKindBayer. dither chooses between the two levels beside a sample:
 *
 * - zimDitherKindNone: the nearer one.
 * - zimDitherKindBayer: the upper one where the sample is above the lower by more than a threshold of its column and
 *   row. Float results outside the destination's range keep their low bits, as do bytes of bytes that noise lifts above
 *   white.
 * - zimDitherKindFloydSteinberg, zimDitherKindJarvisJudiceNinke, zimDitherKindStucki: by half a level, after the errors
 *   of neighbours to the left and above have been added. Samples that errors take to white or black pass nothing on.
 * - any other value: nothing is done, and the result is zimResultOk.
 *
 * noise, in percent, adds up to so much of a level to the thresholds, at random but in every call alike;
 * zimDitherKindNone ignores it.
 *
 * Error diffusion takes each channel from top to bottom. Channels of a pixel that one thread takes one after another
 * share their errors: those of a channel's last rows reach the first rows of the next. So images of several channels
 * depend on the size of the team, that is on ownGetNumThreads: up to 4 threads share the channels in order, and three
 * channels count one thread less from 4 on.
 *
 * AC4 forms leave the fourth sample as it was; C4 forms treat it as the others. The low bits of a step that is no
 * multiple of the sample size are dropped, except without dither and by zimDitherKindBayer on C4.
 *
 * After null pointers and size: zimResultBadNoise unless noise is 0..100; zimResultBadLevels unless levels is 2..256
 * for 8-bit destinations, 2..65536 for 16-bit ones. Noise and error diffusion take scratch from zimMalloc;
 * zimResultNoMemory, with the destination untouched, if there is none. Where it is the rows of errors that cannot be
 * had, the tables of noise stay allocated. Any size from 1 x 1; steps are not tested.
 * @{ */
ZimResult zimiReduceBits_8u_C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_8u_C3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_8u_AC4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_8u_C4R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u_C1R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                  Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u_C4R(const Zim16u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s_C1R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                  Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s_C4R(const Zim16s* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                 Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u8u_C1R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u8u_C3R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u8u_AC4R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16u8u_C4R(const Zim16u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s8u_C1R(const Zim16s* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s8u_C3R(const Zim16s* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s8u_AC4R(const Zim16s* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_16s8u_C4R(const Zim16s* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f8u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f8u_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f8u_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f8u_C4R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                   Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16u_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16u_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16u_C4R(const Zim32f* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16s_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16s_C3R(const Zim32f* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16s_AC4R(const Zim32f* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                     Zim32s noise, ZimDitherKind dither, Zim32s levels);
ZimResult zimiReduceBits_32f16s_C4R(const Zim32f* pSrc, Zim32s srcStep, Zim16s* pDst, Zim32s dstStep, ZimiSize roiSize,
                                    Zim32s noise, ZimDitherKind dither, Zim32s levels);
/** @} */

/** Bitmap of a gray image: bit 7 of a byte is the leftmost pixel, 1 is white.
 *
 * dither is zimDitherKindNone, white being any sample above threshold, or zimDitherKindStucki, error diffusion in
 * integers. The two arguments before it are not read.
 *
 * A row starts at bit dstBitOffset & 7 of its first byte, counted from bit 7, and leaves the bits ahead as they were,
 * as it does those behind its end. Only where it both starts inside its first byte and ends there, the bits behind
 * become 0.
 *
 * After null pointers: zimResultBadSize for a width or height below 1 or an offset below 0, then zimResultBadDither.
 * Error diffusion takes scratch from zimMalloc; zimResultNoMemory, with the destination untouched, if there is none. */
ZimResult zimiReduceBits_8u1u_C1R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, Zim32s dstBitOffset,
                                  ZimiSize roiSize, Zim32s unread1, Zim32s unread2, ZimDitherKind dither,
                                  Zim8u threshold);

/** @} */

/** \defgroup demosaicing Demosaicing
 *
 * RGB from the raw image of a sensor behind a Bayer colour filter array, one sample a pixel. These operations see the
 * whole source image, so that a region of it has its neighbours: pSrc is the image's pixel (0, 0), srcSize its size,
 * and srcRoi the region to be converted, whose first pixel goes to pDst. A region that reaches beyond the right or the
 * lower edge ends there; one with nothing left writes nothing, which is a success.
 * @{ */

/** \name By averages of neighbours
 *
 * Quick, and without further memory. Missing colours are rounded averages of the two or four nearest samples of that
 * colour; green at red and blue sites takes those two neighbours, across or down, along which the samples of the site's
 * own colour differ less. At the edges neighbours are reflected, and in the two outermost rows and columns green is the
 * average of all four. Any region gives the same pixels as the whole image. Not tested: a negative x or y, which reads
 * as reflected. 16u drops the low bit of an odd step.
 * Image from 2 x 2, else zimResultBadSize; then zimResultBadArgument for a grid that is none.
 * @{ */
ZimResult zimiCFAToRGB_8u_C1C3R(const Zim8u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep, Zim8u* pDst,
                                Zim32s dstStep, ZimBayerGrid grid);
ZimResult zimiCFAToRGB_16u_C1C3R(const Zim16u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep, Zim16u* pDst,
                                 Zim32s dstStep, ZimBayerGrid grid);
/** @} */

/** \name By the more homogeneous of two candidates
 *
 * Slower and better at edges: green is interpolated once along rows and once along columns, red and blue follow from
 * it, and each pixel comes from the candidate in which luma and chroma about it vary less; where neither wins, from the
 * one that its neighbour on the left came from, and at the left edge of the region from the one along rows. At the
 * edges of the image the mosaic is reflected. pBuf: 30 rows, bufStep bytes apart, of at least region width + 6 samples;
 * their contents do not matter before and mean nothing afterwards. Neither pBuf nor bufStep is tested. A negative x or
 * y becomes 0, while width and height stay. Exact byte steps. Image from 5 x 5, else zimResultBadSize; then
 * zimResultBadArgument for a grid that is none.
 * @{ */
ZimResult zimiDemosaicAHD_8u_C1C3R(const Zim8u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep, Zim8u* pDst,
                                   Zim32s dstStep, ZimBayerGrid grid, Zim8u* pBuf, Zim32s bufStep);
ZimResult zimiDemosaicAHD_16u_C1C3R(const Zim16u* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep,
                                    Zim16u* pDst, Zim32s dstStep, ZimBayerGrid grid, Zim16u* pBuf, Zim32s bufStep);
/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
