/* zimcc: colour conversion of two-dimensional images.
 *
 * Every operation converts one region and returns a ZimResult. A region is given by pointers to its first pixel, row
 * steps in bytes and a ZimiSize. No buffer has to be aligned, and no operation keeps a pointer after it returns.
 * Operations may be called from any number of threads at once on disjoint destinations.
 *
 * Names read: zimi + operation [+ variant] _ sample types _ layout [+ R].
 *   Sample types: one word where source and destination agree (8u), else source first (8u16s).
 *   Layouts:      C1, C3, C4  interleaved samples, in the order that the colour words spell
 *                 C2          packed 4:2:2: two samples a pixel, in the order that the colour word spells
 *                 AC4         four interleaved samples; the fourth is not read, and is left as it was when written to
 *                 P3, P4      planes: the address of an array of plane pointers, one step for all planes
 *                 P2          luma, then interleaved chroma: a pointer and a step for each of the two planes
 *   Where chroma is shared (the digits 422, 420, 411 of a colour word), P3 has an array of three steps.
 *   IR            in place: one pointer, one step.
 *
 * Steps are distances in bytes between the starts of successive rows. Where an operation does not say that it tests
 * them, zero re-reads (or re-writes) one row and a negative step walks upward in memory.
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

/* ---- Types ------------------------------------------------------------------------------------------------------ */

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
  zimWarnOddSize = 35,       /**< the size is no multiple of the sub-sampling; the whole multiples were processed */
  zimResultBadArgument = -5, /**< an enumerated argument lies outside its set */
  zimResultBadSize = -6,     /**< width or height is below the operation's minimum */
  zimResultNullPointer = -8, /**< a required pointer is null */
  zimResultNoMemory = -9,    /**< a scratch allocation failed */
  zimResultBadStep = -14,    /**< a row step is below 1 */
  zimResultBadRange = -49,   /**< vMax minus vMin, in single precision, is not above zero */
  zimResultBadLevels = -54,  /**< the level count lies outside its range */
  zimResultBadNoise = -55,   /**< the noise percentage lies outside 0 to 100 */
  zimResultBadDither = -224  /**< the operation does not support this kind of dither */
};

/** Extent of a region, passed by value. */
typedef struct ZimiSize {
  Zim32s width;  /**< pixels in a row */
  Zim32s height; /**< rows */
} ZimiSize;

/** What zimccGetLibVersion reports. */
typedef struct ZimLibraryVersion {
  Zim32s versionMajor;
  Zim32s versionMinor;
  Zim32s buildMajor;
  Zim32s buildMinor;
  char targetTag[4]; /**< processor target of the build: "mx" or "v3", padded with zero bytes */
  const char* libraryFileName;
  const char* versionText;
  const char* buildDateText;
} ZimLibraryVersion;

/** The version record of the loaded build: constant, the same pointer at every call, never to be freed. */
const ZimLibraryVersion* zimccGetLibVersion(void);

/* ---- Gray ---------------------------------------------------------------------------------------------------------
 */

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
 * weights. Weights are used as they are: neither their sign nor their sum is tested, and integer results outside the
 * sample's range keep their low bits. 64f runs on a team of threads from 32 x 32 pixels, with exact byte steps.
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

/* ---- YCbCr and YUV at full resolution -----------------------------------------------------------------------------
 */

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

/* ---- Decoders of shared chroma ----------------------------------------------------------------------------------
 */

/** \name Packed 4:2:2 to RGB and BGR
 *
 * Chroma applies as it is to both pixels of a pair. A pair is Y0 Cb Y1 Cr in YCbCr422, Y0 Cr Y1 Cb in YCrCb422,
 * Cb Y0 Cr Y1 in CbYCr422, Y0 U Y1 V in YUV422. A lone last pixel of an odd width has its luma and the pair's first
 * chroma sample, and takes the other from the pair before; in an image of one column its one sample serves as both.
 * YCbCr is BT.601 in studio range, rounded (CbYCr422) or truncated; 709HDTV is BT.709 in full range, rounded; YUV is in
 * full range, truncated. C4 stores aval as the fourth sample. Any size from 1 x 1; YCbCr422ToBGR from 2 x 1.
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
 * / 2 of chroma. Any size from 1 x 1; zimiYCbCr422ToBGR_8u_P3C3R from 2 x 1, with its planes tested before the size.
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
 * YCbCr is BT.601 in studio range, rounded; zimiYCbCr420ToRGB_8u_P2C4R computes in single precision and truncates.
 * 709CSC is BT.709 in studio range, 709HDTV in full range. YUV is in full range, truncated; P3AC4R is rounded and
 * stores 0 as the fourth sample. C4 stores aval. Names without R are of images without gaps: rows of width samples of
 * luma and of width / 2 of chroma. Any size from 1 x 1; zimiYUV420ToBGR_8u_P3C3R from 2 x 2. The P2 forms test the size
 * first.
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

/* ---- Packed 16-bit pixels ---------------------------------------------------------------------------------------
 */

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
 * row) for a lone last column (and row) as well. Any size from 1 x 1. The low bit of dstStep is dropped.
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
 * pixel of a packed row uses its one chroma sample as Cb and as Cr. Any size from 1 x 1. The low bit of dstStep is
 * dropped.
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

/* ---- YCoCg ----------------------------------------------------------------------------------------------------------
 */

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

/* ---- Colour twist --------------------------------------------------------------------------------------------------
 */

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

/* ---- Gamma ---------------------------------------------------------------------------------------------------------
 */

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
 * it and the power part above. Before all other tests, vMax - vMin that is not above zero gives zimResultBadRange.
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

/* ---- Tone mapping --------------------------------------------------------------------------------------------------
 */

/** \name High-range gray to 8 bits by one scale for the whole image
 *
 * Linear: 255 stands for the image's maximum; results are truncated and keep their low 8 bits. Mean: 255 stands for
 * twice the mean; results are truncated and saturated. A maximum or mean below zero gives zimWarnNoOperation and writes
 * nothing; one that is zero, denormal or NaN fills the destination with 0. The destination pointer is tested only when
 * it is filled. Any size from 1 x 1; steps are not tested.
 * @{ */
ZimResult zimiToneMapLinear_32f8u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                      ZimiSize roiSize);
ZimResult zimiToneMapMean_32f8u_C1R(const Zim32f* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep, ZimiSize roiSize);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
