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
 *                 P3, P4      planes: the address of an array of plane pointers, one step for all planes
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

/* ---- Bit depth ------------------------------------------------------------------------------------------------------
 */

/** \name Fewer levels, with or without dither
 *
 * Snaps every sample to one of `levels` equally spaced values of the source's range, black and white among them, and
 * stores it in the destination's type. 32f sources range from 0 to 1. 16-bit sources give 8-bit destinations the high
 * byte of their level; 8u stores level n as n times a step of 1/256 units, which may end at 254.
 *
 * dither chooses between the two levels beside a sample:
 *   zimDitherKindNone             the nearer one.
 *   zimDitherKindBayer            the upper one where the sample is above the lower by more than a threshold of its
 *                                 column and row. Float results outside the destination's range keep their low bits.
 *   zimDitherKindFloydSteinberg,  by half a level, after the errors of neighbours to the left and above have been
 *   ...JarvisJudiceNinke,         added. Samples that errors take to white or black pass nothing on.
 *   ...Stucki
 *   any other value               nothing is done, and the result is zimResultOk.
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

#ifdef __cplusplus
}
#endif

#endif
