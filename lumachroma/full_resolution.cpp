// RGB and BGR to and from YCbCr and YUV, one chroma sample a pixel.

#include "frame/adapters.h"
#include "frame/pixelwise.h"
#include "lumachroma/transforms.h"

using namespace zim;

namespace {

using ToYCbCr = Encode<E601>;
using ToYuv = EncodeYuv;
using FromYCbCr = Decode<D601, Rounding::truncating>;
using FromYCbCrRounded = Decode<D601, Rounding::rounding>;
using FromYCbCrPlanes = Decode<D601b, Rounding::rounding>;
using FromYCbCr709 = Decode<D709CSC, Rounding::rounding>;
using FromYuv = Decode<DYUV, Rounding::truncating>;
using FromYuvRounded = Decode<DYUV, Rounding::rounding>;
using FromYuvPlanes = Decode<DYUVb, Rounding::truncating>;

using InterleavedOnly = Rules<N_S>;
using PlanesFirst = Rules<N_Q_S>;
using SizeFirst = Rules<N_S_Q>;

}  // namespace

#define AVAL (Zim8u aval)

// clang-format off
//            export                              rules            source      destination  further      kernel
ZIM_PIXELWISE(zimiRGBToYCbCr_8u_C3R,              InterleavedOnly, C3<Zim8u>,  C3<Zim8u>,   (),          ToYCbCr{})
ZIM_PIXELWISE(zimiRGBToYCbCr_8u_AC4R,             InterleavedOnly, AC4<Zim8u>, AC4<Zim8u>,  (),          ToYCbCr{})
ZIM_PIXELWISE(zimiRGBToYCbCr_8u_C3P3R,            PlanesFirst,     C3<Zim8u>,  P3<Zim8u>,   (),          ToYCbCr{})
ZIM_PIXELWISE(zimiRGBToYCbCr_8u_AC4P3R,           PlanesFirst,     AC4<Zim8u>, P3<Zim8u>,   (),          ToYCbCr{})
ZIM_PIXELWISE(zimiRGBToYCbCr_8u_P3R,              SizeFirst,       P3<Zim8u>,  P3<Zim8u>,   (),          ToYCbCr{})

ZIM_PIXELWISE(zimiRGBToYUV_8u_C3R,                InterleavedOnly, C3<Zim8u>,  C3<Zim8u>,   (),          ToYuv{})
ZIM_PIXELWISE(zimiRGBToYUV_8u_AC4R,               InterleavedOnly, AC4<Zim8u>, AC4<Zim8u>,  (),          ToYuv{})
ZIM_PIXELWISE(zimiRGBToYUV_8u_C3P3R,              SizeFirst,       C3<Zim8u>,  P3<Zim8u>,   (),          ToYuv{})
ZIM_PIXELWISE(zimiRGBToYUV_8u_AC4P4R,             SizeFirst,       C4<Zim8u>,  P4<Zim8u>,   (),          KeepAlpha<ToYuv>{})
ZIM_PIXELWISE(zimiRGBToYUV_8u_P3R,                SizeFirst,       P3<Zim8u>,  P3<Zim8u>,   (),          ToYuv{})

ZIM_PIXELWISE(zimiYCbCrToRGB_8u_C3R,              InterleavedOnly, C3<Zim8u>,  C3<Zim8u>,   (),          FromYCbCr{})
ZIM_PIXELWISE(zimiYCbCrToRGB_8u_AC4R,             InterleavedOnly, AC4<Zim8u>, AC4<Zim8u>,  (),          FromYCbCr{})
ZIM_PIXELWISE(zimiYCbCrToRGB_8u_P3R,              SizeFirst,       P3<Zim8u>,  P3<Zim8u>,   (),          FromYCbCrRounded{})
ZIM_PIXELWISE(zimiYCbCrToRGB_8u_P3C3R,            SizeFirst,       P3<Zim8u>,  C3<Zim8u>,   (),          FromYCbCrPlanes{})
ZIM_PIXELWISE(zimiYCbCrToRGB_8u_P3C4R,            SizeFirst,       P3<Zim8u>,  C4<Zim8u>,   AVAL,        withAlpha<FromYCbCrPlanes>(aval))
ZIM_PIXELWISE(zimiYCbCrToBGR_8u_P3C3R,            PlanesFirst,     P3<Zim8u>,  C3<Zim8u>,   (),          Reversed<FromYCbCrPlanes>{})
ZIM_PIXELWISE(zimiYCbCrToBGR_8u_P3C4R,            PlanesFirst,     P3<Zim8u>,  C4<Zim8u>,   AVAL,        withAlpha<Reversed<FromYCbCrPlanes>>(aval))
ZIM_PIXELWISE(zimiYCbCrToBGR_709CSC_8u_P3C3R,     PlanesFirst,     P3<Zim8u>,  C3<Zim8u>,   (),          Reversed<FromYCbCr709>{})
ZIM_PIXELWISE(zimiYCbCrToBGR_709CSC_8u_P3C4R,     PlanesFirst,     P3<Zim8u>,  C4<Zim8u>,   AVAL,        withAlpha<Reversed<FromYCbCr709>>(aval))

ZIM_PIXELWISE(zimiYUVToRGB_8u_C3R,                InterleavedOnly, C3<Zim8u>,  C3<Zim8u>,   (),          FromYuv{})
ZIM_PIXELWISE(zimiYUVToRGB_8u_AC4R,               InterleavedOnly, AC4<Zim8u>, AC4<Zim8u>,  (),          FromYuv{})
ZIM_PIXELWISE(zimiYUVToRGB_8u_C3C4R,              InterleavedOnly, C3<Zim8u>,  C4<Zim8u>,   AVAL,        withAlpha<FromYuvRounded>(aval))
ZIM_PIXELWISE(zimiYUVToRGB_8u_P3C3R,              SizeFirst,       P3<Zim8u>,  C3<Zim8u>,   (),          FromYuvPlanes{})
ZIM_PIXELWISE(zimiYUVToRGB_8u_P3R,                SizeFirst,       P3<Zim8u>,  P3<Zim8u>,   (),          FromYuvPlanes{})
