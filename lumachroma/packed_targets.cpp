// To packed 16-bit pixels: RGB and BGR as they are, YCbCr and YUV by way of RGB.

#include "frame/pixelwise.h"
#include "lumachroma/packed_pixels.h"
#include "lumachroma/transforms.h"

using namespace zim;

namespace {

using FromScaled = DecodeScaled<S601>;
using FromK601 = DecodeShared<K601>;
using From601 = DecodeShared<Decoder{D601, Rounding::truncating}>;
using From601Rounded = DecodeShared<Decoder{D601, Rounding::rounding}>;
using FromYuv = DecodeShared<Decoder{DYUV, Rounding::truncating}>;

using Planes = EveryPixel<N_S_Q, WithOwnChroma>;
using Packed = EveryPixel<N_S, HalfFromPairBefore>;
using Triple = EveryPixel<N_S, WithOwnChroma>;
// Rows are exact bytes apart.
using Planes411 = SharedRules<N_Q_S, AsGroupBefore, OddSize::warned, 4>;

// Images of one column or one row stay unwritten.
struct NotThin : Planes {
  static constexpr bool skipsThin = true;
};

using PlainPacking = Rules<N_S_T, Offsets::elements>;

// The one column of packed 4:2:2 becomes bytes, not words: R, G, B at half the distance of rows.
ZimResult decodeColumn(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize) {
  using Column = SharedRules<N_S, HalfFromPairBefore>;
  return decode<Column, YCbCr422, FromK601>(std::array{pSrc}, std::array{srcStep}, reinterpret_cast<Zim8u*>(pDst),
                                            dstStep >> 1, roiSize, Rgb<C3<Zim8u>>{});
}

}  // namespace

// As ZIM_DECODE_INTERLEAVED, but for images of one column.
#define ZIM_DECODE_PACKED(name, rules, Source, Sink, Kernel)                                                     \
  ZimResult ZIM_BODY(name)(const Zim8u* pSrc, Zim32s srcStep, Zim16u* pDst, Zim32s dstStep, ZimiSize roiSize) {  \
    if (roiSize.width == 1) return decodeColumn(pSrc, srcStep, pDst, dstStep, roiSize);                          \
    return decode<rules, Source, Kernel>(std::array{pSrc}, std::array{srcStep}, pDst, dstStep, roiSize, Sink{}); \
  }

// clang-format off
//            export                        rules         source      destination  further  kernel
ZIM_PIXELWISE(zimiBGRToBGR565_8u16u_C3R,    PlainPacking, C3<Zim8u>,  C1<Zim16u>,  (),      Truncated<BGR565>{})
ZIM_PIXELWISE(zimiRGBToRGB565_8u16u_C3R,    PlainPacking, C3<Zim8u>,  C1<Zim16u>,  (),      Truncated<RGB565>{})

//                     export                            rules      source          sink           kernel
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR444_8u16u_P3C3R, Planes,    P420,           Words<BGR444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR555_8u16u_P3C3R, Planes,    P420,           Words<BGR555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR565_8u16u_P3C3R, Planes,    P420,           Words<BGR565>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB444_8u16u_P3C3R, Planes,    P420,           Words<RGB444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB555_8u16u_P3C3R, Planes,    P420,           Words<RGB555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB565_8u16u_P3C3R, Planes,    P420,           Words<RGB565>, FromScaled,     ())

ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR444_8u16u_P3C3R, Planes,    P422,           Words<BGR444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR555_8u16u_P3C3R, Planes,    P422,           Words<BGR555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR565_8u16u_P3C3R, Planes,    P422,           Words<BGR565>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB444_8u16u_P3C3R, Planes,    P422,           Words<RGB444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB555_8u16u_P3C3R, Planes,    P422,           Words<RGB555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB565_8u16u_P3C3R, Planes,    P422,           Words<RGB565>, FromScaled,     ())

ZIM_DECODE_PLANES(     zimiYCbCrToBGR444_8u16u_P3C3R,    Planes,    P444,           Words<BGR444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCrToBGR555_8u16u_P3C3R,    Planes,    P444,           Words<BGR555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCrToBGR565_8u16u_P3C3R,    Planes,    P444,           Words<BGR565>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB444_8u16u_P3C3R,    Planes,    P444,           Words<RGB444>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB555_8u16u_P3C3R,    Planes,    P444,           Words<RGB555>, FromScaled,     ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB565_8u16u_P3C3R,    Planes,    P444,           Words<RGB565>, FromScaled,     ())

ZIM_DECODE_PACKED(     zimiYCbCr422ToBGR444_8u16u_C2C3R, Packed,    YCbCr422,       Words<BGR444>, FromK601)
ZIM_DECODE_PACKED(     zimiYCbCr422ToBGR555_8u16u_C2C3R, Packed,    YCbCr422,       Words<BGR555>, FromK601)
ZIM_DECODE_PACKED(     zimiYCbCr422ToBGR565_8u16u_C2C3R, Packed,    YCbCr422,       Words<BGR565>, FromK601)
ZIM_DECODE_PACKED(     zimiYCbCr422ToRGB444_8u16u_C2C3R, Packed,    YCbCr422,       Words<RGB444>, FromK601)
ZIM_DECODE_PACKED(     zimiYCbCr422ToRGB555_8u16u_C2C3R, Packed,    YCbCr422,       Words<RGB555>, FromK601)
ZIM_DECODE_PACKED(     zimiYCbCr422ToRGB565_8u16u_C2C3R, Packed,    YCbCr422,       Words<RGB565>, FromK601)

ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR444_8u16u_C3R,      Triple,    Interleaved444, Words<BGR444>, From601,        ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR555_8u16u_C3R,      Triple,    Interleaved444, Words<BGR555>, From601,        ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR565_8u16u_C3R,      Triple,    Interleaved444, Words<BGR565>, From601,        ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB444_8u16u_C3R,      Triple,    Interleaved444, Words<RGB444>, From601,        ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB555_8u16u_C3R,      Triple,    Interleaved444, Words<RGB555>, From601,        ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB565_8u16u_C3R,      Triple,    Interleaved444, Words<RGB565>, From601,        ())

ZIM_DECODE_PLANES(     zimiYUV420ToBGR444_8u16u_P3C3R,   NotThin,   P420,           Words<BGR444>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToBGR555_8u16u_P3C3R,   NotThin,   P420,           Words<BGR555>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToBGR565_8u16u_P3C3R,   NotThin,   P420,           Words<BGR565>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB444_8u16u_P3C3R,   NotThin,   P420,           Words<RGB444>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB555_8u16u_P3C3R,   NotThin,   P420,           Words<RGB555>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB565_8u16u_P3C3R,   NotThin,   P420,           Words<RGB565>, FromYuv,        ())

ZIM_DECODE_PLANES(     zimiYCbCr411ToBGR555_8u16u_P3C3R, Planes411, P411,           Words<BGR555>, From601Rounded, ())
ZIM_DECODE_PLANES(     zimiYCbCr411ToBGR565_8u16u_P3C3R, Planes411, P411,           Words<BGR565>, From601Rounded, ())
