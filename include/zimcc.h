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

/* ---- Chroma layouts -------------------------------------------------------------------------------------------------
 *
 * Luma-chroma images of 8-bit samples between layouts and sub-samplings, without a change of colour model.
 *
 * Grids: 422 has a chroma sample for 2 pixels across; 420 for 2 across and 2 down; 411 for 4 across; 1620 for 4 across
 * and 4 down. Layouts: C2, packed, four bytes for two pixels in the order that the colour words spell (YCbCr422: Y0,
 * Cb, Y1, Cr; CbYCr422: Cb, Y0, Cr, Y1; YCrCb422: Y0, Cr, Y1, Cb); P2, a plane of luma and one of Cb, Cr pairs; P3,
 * three planes, as an array of pointers and an array of steps, in the order that the colour words spell.
 *
 * Null pointers, planes and arrays of steps give zimResultNullPointer; pointers are tested before the size unless a
 * declaration says otherwise. Steps are not tested. Luma is copied as it stands where nothing is said of it.
 */

/** \name Layout and order alone
 *
 * Nothing is lost or added. 422 takes widths from 2, 420 sizes from 2 x 2, 411 widths from 4; pixels beyond the last
 * whole chroma sample are left out, and the result is zimResultOk all the same. A height below 1 converts nothing and
 * gives zimResultOk in zimiCbYCr422ToYCbCr422_8u_C2P3R, zimiYCbCr422ToYCrCb422_*, zimiYCrCb422ToYCbCr422_8u_C2P3R and
 * zimiYCbCr411_*; it is zimResultBadSize in the others. zimiYCbCr420ToYCrCb420_8u_P2P3R keeps the order of pairs: the
 * first byte goes to plane 1, as in zimiYCbCr420_8u_P2P3R; it finds null planes after a size below 1 x 1 and before one
 * below 2 x 2.
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
 * whole image; other values write nothing and give zimResultOk. The output of a slice stops two rows short of its end;
 * center and bottom slices begin two rows above their own, so that three luma rows, one chroma row and two destination
 * rows (one of destination chroma) above the pointers have to be there.
 *
 * How the sums round is particular to each row. With Y1 = min(((Y[r-1] + 2 Y[r] + Y[r+1]) >> 2) + 1, 255), Y0 without
 * the 1, edges with the row itself in place of the one beyond; C1 = min(((C[m] + C[m+1]) >> 1) + 1, 255), C0 without
 * the 1, m = r / 2:
 *   - zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R: Y1 and C1, but Y0 in row 1 of a top slice and in the last two rows of a
 *     bottom slice, and C0 in the inner rows of a whole image and in the last two rows of a bottom slice; the last two
 *     rows have the chroma of the last pair of rows. A whole image of two rows has the chroma of its one row.
 *   - zimiYCbCr420ToYCrCb420_Filter_8u_P2P3R: Y1 and C1 in a whole image, Y0 and C0 in slices; the last row has the
 * chroma of the one above it. A whole image of two rows keeps its chroma. The first byte of each pair goes to plane 1.
 * In center, bottom and whole, plane 1 advances by the step of plane 2 and plane 2 by that of plane 1. Null planes are
 *     found after a size below 1 x 1 and before one below 2 x 2. A top slice of height 2 writes nothing.
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

#ifdef __cplusplus
}
#endif

#endif
