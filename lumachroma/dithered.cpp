// YCbCr and YUV to packed 16-bit pixels with ordered dither.

#include "lumachroma/dither.h"
#include "lumachroma/transforms.h"

using namespace zim;

namespace {

using FromYCbCr = DecodeScaled<S601>;
using FromYuv = DecodeScaled<SYUV>;

using Planes = EveryPixel<N_S_Q, WithOwnChroma>;
using Packed = EveryPixel<N_S, OneSampleForBoth>;
using Triple = EveryPixel<N_S, WithOwnChroma>;

}  // namespace

// clang-format off
//                     export                                  rules   source          sink                   kernel
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR444Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<BGR444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR555Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<BGR555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR565Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<BGR565>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB444Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<RGB444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB555Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<RGB555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB565Dither_8u16u_P3C3R, Planes, P420,           DitheredWords<RGB565>, FromYCbCr, ())

ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR444Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<BGR444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR555Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<BGR555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR565Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<BGR565>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB444Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<RGB444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB555Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<RGB555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB565Dither_8u16u_P3C3R, Planes, P422,           DitheredWords<RGB565>, FromYCbCr, ())

ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToBGR444Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<BGR444>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToBGR555Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<BGR555>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToBGR565Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<BGR565>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToRGB444Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<RGB444>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToRGB555Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<RGB555>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToRGB565Dither_8u16u_C2C3R, Packed, YCbCr422,       DitheredWords<RGB565>, FromYCbCr, ())

ZIM_DECODE_PLANES(     zimiYCbCrToBGR444Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<BGR444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCrToBGR555Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<BGR555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCrToBGR565Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<BGR565>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB444Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<RGB444>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB555Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<RGB555>, FromYCbCr, ())
ZIM_DECODE_PLANES(     zimiYCbCrToRGB565Dither_8u16u_P3C3R,    Planes, P444,           DitheredWords<RGB565>, FromYCbCr, ())

ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR444Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<BGR444>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR555Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<BGR555>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToBGR565Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<BGR565>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB444Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<RGB444>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB555Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<RGB555>, FromYCbCr, ())
ZIM_DECODE_INTERLEAVED(zimiYCbCrToRGB565Dither_8u16u_C3R,      Triple, Interleaved444, DitheredWords<RGB565>, FromYCbCr, ())

ZIM_DECODE_PLANES(     zimiYUV420ToBGR444Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<BGR444>, FromYuv,   ())
ZIM_DECODE_PLANES(     zimiYUV420ToBGR555Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<BGR555>, FromYuv,   ())
ZIM_DECODE_PLANES(     zimiYUV420ToBGR565Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<BGR565>, FromYuv,   ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB444Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<RGB444>, FromYuv,   ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB555Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<RGB555>, FromYuv,   ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB565Dither_8u16u_P3C3R,   Planes, P420,           DitheredWords<RGB565>, FromYuv,   ())
