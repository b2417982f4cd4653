// YCbCr and YUV of shared chroma to RGB and BGR: every pixel takes the chroma of its group as it is.

#include "lumachroma/shared_chroma.h"
#include "lumachroma/transforms.h"

using namespace zim;

namespace {

using From601 = DecodeShared<Decoder{D601, Rounding::rounding}>;
using From601b = DecodeShared<Decoder{D601b, Rounding::rounding}>;
using FromK601 = DecodeShared<K601>;
using From411 = DecodeShared<Decoder{D411, Rounding::truncating}>;
using From709 = DecodeShared<Decoder{D709CSC, Rounding::rounding}>;
using FromHdtv = DecodeShared<Decoder{D709HDTV, Rounding::rounding}>;
using FromYuv = DecodeShared<Decoder{DYUV, Rounding::truncating}>;
using FromYuvRounded = DecodeShared<Decoder{DYUV, Rounding::rounding}>;
using FromFloat = DecodeFloat;

using P420CrCb = ThreePlanes<2, 2, ChromaOrder::crCb>;

using C3u = C3<Zim8u>;
using C4u = C4<Zim8u>;
using P3u = P3<Zim8u>;

using enum OddSize;
using Packed = SharedRules<N_S, HalfFromPairBefore>;
using PackedFrom2 = SharedRules<N_S, HalfFromPairBefore, silent, 2>;
using PackedToPlanes = SharedRules<N_S_Q, HalfFromPairBefore>;
using Planes422 = SharedRules<N_S_Q, WithOwnChroma>;
using Planes422From2 = SharedRules<N_Q_S, LeftAlone, silent, 2>;
using Planes420 = SharedRules<N_S_Q, LeftAlone, warned>;
using Planes420From2 = SharedRules<N_S_Q, LeftAlone, warned, 2, 2>;
using TwoPlanes = SharedRules<S_N, LeftAlone, warned>;
using Planes411 = SharedRules<N_Q_S, AsGroupBefore, silent, 4>;

}  // namespace

#define AVAL (Zim8u aval)

// clang-format off
//                     export                              rules           source        sink      kernel          further, fourth sample
ZIM_DECODE_INTERLEAVED(zimiCbYCr422ToRGB_8u_C2C3R,         Packed,         CbYCr422,     Rgb<C3u>, From601b,       ())
ZIM_DECODE_INTERLEAVED(zimiCbYCr422ToBGR_8u_C2C4R,         Packed,         CbYCr422,     Bgr<C4u>, From601b,       AVAL, aval)
ZIM_DECODE_INTERLEAVED(zimiCbYCr422ToBGR_709HDTV_8u_C2C3R, Packed,         CbYCr422,     Bgr<C3u>, FromHdtv,       ())
ZIM_DECODE_INTERLEAVED(zimiCbYCr422ToBGR_709HDTV_8u_C2C4R, Packed,         CbYCr422,     Bgr<C4u>, FromHdtv,       AVAL, aval)
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToRGB_8u_C2C3R,         Packed,         YCbCr422,     Rgb<C3u>, FromK601,       ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToRGB_8u_C2P3R,         PackedToPlanes, YCbCr422,     Rgb<P3u>, FromK601,       ())
ZIM_DECODE_INTERLEAVED(zimiYCrCb422ToRGB_8u_C2C3R,         Packed,         YCrCb422,     Rgb<C3u>, FromK601,       ())
ZIM_DECODE_INTERLEAVED(zimiYCrCb422ToRGB_8u_C2P3R,         PackedToPlanes, YCrCb422,     Rgb<P3u>, FromK601,       ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToBGR_8u_C2C3R,         PackedFrom2,    YCbCr422,     Bgr<C3u>, FromK601,       ())
ZIM_DECODE_INTERLEAVED(zimiYCbCr422ToBGR_8u_C2C4R,         PackedFrom2,    YCbCr422,     Bgr<C4u>, FromK601,       AVAL, aval)
ZIM_DECODE_PLANES(     zimiYCbCr422ToBGR_8u_P3C3R,         Planes422From2, P422,         Bgr<C3u>, FromK601,       ())
ZIM_DECODE_PLANES(     zimiYCbCr422ToRGB_8u_P3C3R,         Planes422,      P422,         Rgb<C3u>, From601b,       ())
ZIM_DECODE_INTERLEAVED(zimiYUV422ToRGB_8u_C2C3R,           Packed,         YCbCr422,     Rgb<C3u>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV422ToRGB_8u_P3R,             Planes422,      P422,         Rgb<P3u>, FromYuv,        ())
ZIM_DECODE_CONTIGUOUS( zimiYUV422ToRGB_8u_P3,              Planes422,      P422,         Rgb<P3u>, FromYuv)
ZIM_DECODE_PLANES(     zimiYUV422ToRGB_8u_P3C3R,           Planes422,      P422,         Rgb<C3u>, FromYuv,        ())
ZIM_DECODE_CONTIGUOUS( zimiYUV422ToRGB_8u_P3C3,            Planes422,      P422,         Rgb<C3u>, FromYuv)
ZIM_DECODE_PLANES(     zimiYUV422ToRGB_8u_P3AC4R,          Planes422,      P422,         Rgb<C4u>, FromYuv,        (),   0)

ZIM_DECODE_PLANES(     zimiYCbCr420ToRGB_8u_P3C3R,         Planes420,      P420,         Rgb<C3u>, From601,        ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR_8u_P3C3R,         Planes420,      P420,         Bgr<C3u>, From601,        ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR_8u_P3C4R,         Planes420,      P420,         Bgr<C4u>, From601,        AVAL, aval)
ZIM_DECODE_PLANES(     zimiYCrCb420ToRGB_8u_P3C4R,         Planes420,      P420CrCb,     Rgb<C4u>, From601,        AVAL, aval)
ZIM_DECODE_TWO_PLANES( zimiYCbCr420ToRGB_8u_P2C3R,         TwoPlanes,      TwoPlanes420, Rgb<C3u>, From601,        ())
ZIM_DECODE_TWO_PLANES( zimiYCbCr420ToRGB_8u_P2C4R,         TwoPlanes,      TwoPlanes420, Rgb<C4u>, FromFloat,      AVAL, aval)
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR_709CSC_8u_P3C3R,  Planes420,      P420,         Bgr<C3u>, From709,        ())
ZIM_DECODE_PLANES(     zimiYCbCr420ToBGR_709HDTV_8u_P3C4R, Planes420,      P420,         Bgr<C4u>, FromHdtv,       AVAL, aval)
ZIM_DECODE_PLANES(     zimiYUV420ToBGR_8u_P3C3R,           Planes420From2, P420,         Bgr<C3u>, FromYuv,        ())
ZIM_DECODE_PLANES(     zimiYUV420ToRGB_8u_P3R,             Planes420,      P420,         Rgb<P3u>, FromYuv,        ())
ZIM_DECODE_CONTIGUOUS( zimiYUV420ToRGB_8u_P3,              Planes420,      P420,         Rgb<P3u>, FromYuv)
ZIM_DECODE_PLANES(     zimiYUV420ToRGB_8u_P3C3R,           Planes420,      P420,         Rgb<C3u>, FromYuv,        ())
ZIM_DECODE_CONTIGUOUS( zimiYUV420ToRGB_8u_P3C3,            Planes420,      P420,         Rgb<C3u>, FromYuv)
ZIM_DECODE_PLANES(     zimiYUV420ToRGB_8u_P3AC4R,          Planes420,      P420,         Rgb<C4u>, FromYuvRounded, (),   0)

ZIM_DECODE_PLANES(     zimiYCbCr411ToBGR_8u_P3C3R,         Planes411,      P411,         Bgr<C3u>, From411,        ())
ZIM_DECODE_PLANES(     zimiYCbCr411ToBGR_8u_P3C4R,         Planes411,      P411,         Bgr<C4u>, From411,        AVAL, aval)
