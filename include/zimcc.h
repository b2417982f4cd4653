/* zimcc: colour conversion of two-dimensional images.
 *
 * Every operation converts one region and returns a ZimResult. A region is given by pointers to its first pixel, row
 * steps in bytes and a ZimiSize. No buffer has to be aligned, and no operation keeps a pointer after it returns.
 * Operations may be called from any number of threads at once on disjoint destinations.
 *
 * Names read: zimi + operation [+ variant] _ sample types _ layout [+ R].
 *   Sample types: one word where source and destination agree (8u), else source first (8u16s).
 *   Layouts:      C1, C3, C4  interleaved samples, in the order that the colour words spell
 *                 AC4         four interleaved samples; the fourth is not read, and is left as it was when written to
 *                 P3, P4      planes: the address of an array of plane pointers, one step for all planes, or, where
 *                             pixels share chroma, the address of an array with a step for each
 *                 C2          a stream of 4:2:2, four samples a pair of pixels
 *                 P2          a plane of luma and one of chroma pairs, each with its own pointer and step
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

/* ---- Chroma shared by pixels: encoders -----------------------------------------------------------------------------
 */

/** \name RGB and BGR to YCbCr with chroma shared by pixels, BT.601 in studio range: streams of 4:2:2
 *
 * A pair of pixels takes four bytes, in the order that the destination's colour word spells: YCbCr422 is Y, Cb, Y, Cr,
 * CbYCr422 is Cb, Y, Cr, Y. Chroma is that of the pair's average, rounded in the RGB forms and in
 * zimiBGRToCbYCr422_8u_AC4C2R, and by an eighth of a level in zimiBGRToYCbCr422_*. zimiRGBToYCbCr422_* and
 * zimiRGBToYCrCb422_* truncate the luma of every second pixel. The last pixel of an odd width writes two bytes, its
 * luma and the chroma that comes first in a pair, which is its own. Any size from 1 x 1, zimiBGRToYCbCr422_* from 2
 * x 1. Null planes of a source are found after the size is tested.
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
 * Chroma rows of half the width, rounded by an eighth of a level. dstStep has a step for each plane. Sizes from 2 x 1.
 * Of an odd width the BGR forms write the last pixel's luma and no chroma; zimiRGBToYCbCr422_8u_C3P3R leaves it alone
 * and returns zimWarnOddSize. Null planes are found before the size is tested.
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
 * Chroma rows of a quarter of the width, rounded by an eighth of a level. dstStep has a step for each plane. Sizes from
 * 4 x 1; of a width that is no multiple of 4 the last pixels are left alone, and the result is zimWarnOddSize. Null
 * planes are found before the size is tested.
 * @{ */
ZimResult zimiBGRToYCbCr411_8u_C3P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                     ZimiSize roiSize);
ZimResult zimiBGRToYCbCr411_8u_AC4P3R(const Zim8u* pSrc, Zim32s srcStep, Zim8u* const pDst[3], const Zim32s dstStep[3],
                                      ZimiSize roiSize);
/** @} */

/** \name RGB and BGR to planes of 4:2:0, studio range
 *
 * Chroma of half the width and half the height, rounded by an eighth of a level; BT.601, with 709CSC BT.709. In
 * YCrCb420 plane 1 is Cr. dstStep has a step for each plane; in zimiRGBToYCrCb420_8u_AC4P3R alone plane 1 advances by
 * dstStep[2] and plane 2 by dstStep[1]. P2 has pairs of Cb and Cr in its second plane. Sizes from 2 x 2,
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
 * All samples are kept within 1 to 254. Sizes from 2 x 2; an odd last column or row is left alone, and the result is
 * zimWarnOddSize. Null planes are found before the size is tested.
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
 * words need not be aligned. Chroma is rounded by an eighth of a level. 422 from 2 x 1: the last pixel of an odd width
 * writes its luma and, in C2, its own Cb. 411 from 4 x 1: the last pixels of a width that is no multiple of 4 are left
 * alone, and the result is zimWarnOddSize. 420 from 2 x 2: an odd last column or row has its luma and no chroma. Null
 * planes are found before the size is tested.
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
