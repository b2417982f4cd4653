// Pixels packed in 16-bit words to 8-bit RGB, and to YCbCr and YUV with chroma shared by pixels.

#include "lumachroma/packed_words.h"
#include "lumachroma/subsampling.h"

using namespace zim;

namespace {

// Samples as they are; their order in memory is that of the fields from the low bits up.
struct Expand {
  using Sample = Zim16s;

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 3> operator()(const Pixels<Zim16s, N, 3>& colours) const {
    return colours;
  }
};
using WholeWords = Rules<N_S_T, Offsets::elements>;

using Bgr555 = BgrSource<Words555>;
using Bgr565 = BgrSource<Words565>;
using Rgb565 = RgbSource<Words565>;

using Planes422 = PlanesInOrder<kYCbCr, 2, 1>;
using Planes411 = PlanesInOrder<kYCbCr, 4, 1>;
using YCbCr420 = PlanesInOrder<kYCbCr, 2, 2>;
using YCrCb420 = PlanesInOrder<kYCrCb, 2, 2>;

using Pair = Coder<Luma<E601>, PairEighth<E601>>;
using Quad = Coder<Luma<E601>, QuadEighth<E601>>;
using Block601 = Coder<Luma<E601>, BlockEighth<E601>>;
using PairYuv = Coder<LumaYuv, YuvPair>;
using BlockYuv = Coder<LumaYuv, YuvBlock>;
using BlockYuvRounded = Coder<LumaYuvRounded, YuvBlock>;

using LoneEighth = LumaAndFirstChroma<Encode<E601, kChromaEighth>>;
using LoneLuma = LumaOnly<Luma<E601>>;
using EdgeLuma = LumaOfEdges<Luma<E601>>;

}  // namespace

// clang-format off
//            export                            rules       source    destination further kernel
ZIM_PIXELWISE(zimiBGR565ToBGR_16u8u_C3R,        WholeWords, Words565, C3<Zim8u>,  (),     Expand{})
ZIM_PIXELWISE(zimiRGB565ToRGB_16u8u_C3R,        WholeWords, Words565, C3<Zim8u>,  (),     Expand{})

//            export                            tests  least     warning     source  target     coder            tail
ZIM_TO_STREAM(zimiBGR555ToYCbCr422_16u8u_C3C2R, N_S,   kFrom2x1, kSilent,    Bgr555, YCbYCr,    Pair,            LoneEighth)
ZIM_TO_STREAM(zimiBGR565ToYCbCr422_16u8u_C3C2R, N_S,   kFrom2x1, kSilent,    Bgr565, YCbYCr,    Pair,            LoneEighth)
ZIM_TO_PLANES(zimiBGR555ToYCbCr422_16u8u_C3P3R, N_Q_S, kFrom2x1, kSilent,    Bgr555, Planes422, Pair,            LoneLuma)
ZIM_TO_PLANES(zimiBGR565ToYCbCr422_16u8u_C3P3R, N_Q_S, kFrom2x1, kSilent,    Bgr565, Planes422, Pair,            LoneLuma)
ZIM_TO_PLANES(zimiBGR555ToYCbCr411_16u8u_C3P3R, N_Q_S, kFrom4x1, kNotByFour, Bgr555, Planes411, Quad,            Dropped)
ZIM_TO_PLANES(zimiBGR565ToYCbCr411_16u8u_C3P3R, N_Q_S, kFrom4x1, kNotByFour, Bgr565, Planes411, Quad,            Dropped)
ZIM_TO_PLANES(zimiBGR555ToYCbCr420_16u8u_C3P3R, N_Q_S, kFrom2x2, kSilent,    Bgr555, YCbCr420,  Block601,        EdgeLuma)
ZIM_TO_PLANES(zimiBGR565ToYCbCr420_16u8u_C3P3R, N_Q_S, kFrom2x2, kSilent,    Bgr565, YCbCr420,  Block601,        EdgeLuma)
ZIM_TO_PLANES(zimiBGR555ToYCrCb420_16u8u_C3P3R, N_Q_S, kFrom2x2, kSilent,    Bgr555, YCrCb420,  Block601,        EdgeLuma)
ZIM_TO_PLANES(zimiBGR565ToYCrCb420_16u8u_C3P3R, N_Q_S, kFrom2x2, kSilent,    Bgr565, YCrCb420,  Block601,        EdgeLuma)
ZIM_TO_PLANES(zimiBGR555ToYUV420_16u8u_C3P3R,   N_Q_S, kFrom2x2, kOddSize,   Bgr555, YCbCr420,  BlockYuvRounded, Dropped)
ZIM_TO_PLANES(zimiBGR565ToYUV420_16u8u_C3P3R,   N_Q_S, kFrom2x2, kOddSize,   Bgr565, YCbCr420,  BlockYuvRounded, Dropped)
ZIM_TO_PLANES(zimiRGB565ToYUV420_16u8u_C3P3R,   N_S_Q, kFrom1x1, kOddSize,   Rgb565, YCbCr420,  BlockYuv,        Dropped)
ZIM_TO_PLANES(zimiRGB565ToYUV422_16u8u_C3P3R,   N_S_Q, kFrom1x1, kOddWidth,  Rgb565, Planes422, PairYuv,         Dropped)
