// RGB and BGR to YCbCr and YUV with chroma shared by pixels: 4:2:2, 4:1:1 and 4:2:0, in streams and in planes.

#include "lumachroma/subsampling.h"
#include "tone/gamma_tables.h"

using namespace zim;

namespace {

using RgbC3 = RgbSource<C3<Zim8u>>;
// Every sample mapped by the forward gamma curve first.
struct RgbCurved : RgbC3 {
  static constexpr ByteMapping mapping{gammaCurveFwd8u};
};
using RgbAC4 = RgbSource<AC4<Zim8u>>;
using RgbP3 = RgbSource<P3<Zim8u>>;
using BgrC3 = BgrSource<C3<Zim8u>>;
using BgrAC4 = BgrSource<AC4<Zim8u>>;

using Planes422 = PlanesInOrder<kYCbCr, 2, 1>;
using Planes411 = PlanesInOrder<kYCbCr, 4, 1>;
using YCbCr420 = PlanesInOrder<kYCbCr, 2, 2>;
using YCrCb420 = PlanesInOrder<kYCrCb, 2, 2>;
using YCrCb420X = PlanesInOrder<kYCrCbCrossed, 2, 2>;

// A pair rounded by a half, with the luma of its second pixel truncated; with Cr two units lower before the shift.
using PairOdd = Coder<LumaOddTruncated<E601>, PairHalf<E601>>;
using PairTrim = Coder<Luma<E601>, PairHalf<E601, -2>>;
using PairGuarded = Guarded<Coder<Luma<E709HDTV>, PairHalf<E709HDTV, -2>>>;
// Rounded by an eighth.
using Pair = Coder<Luma<E601>, PairEighth<E601>>;
using Quad = Coder<Luma<E601>, QuadEighth<E601>>;
using Block601 = Coder<Luma<E601>, BlockEighth<E601>>;
using Block709 = Coder<Luma<E709CSC>, BlockEighth<E709CSC>>;
using BlockGuarded = Guarded<Coder<Luma<E709HDTV>, BlockEighth<E709HDTV>>>;
using Filter = Coder<Luma<E601>, FilteredChroma<E601>>;
using PairYuv = Coder<LumaYuv, YuvPair>;
using BlockYuv = Coder<LumaYuv, YuvBlock>;

// The lone last pixel of an odd width by itself.
using LoneHalf = LumaAndFirstChroma<Encode<E601>>;
using LoneEighth = LumaAndFirstChroma<Encode<E601, kChromaEighth>>;
using LoneGuarded = LumaAndFirstChroma<GuardedPixel<Encode<E709HDTV>>>;
using LoneYuv = LumaAndFirstChroma<EncodeYuv>;
using LoneLuma = LumaOnly<Luma<E601>>;
using WholeYuv = WholePixel<EncodeYuv>;

}  // namespace

// clang-format off
//            export                                   tests  least     warning     source   target     coder         tail
ZIM_TO_STREAM(zimiRGBToYCbCr422_8u_C3C2R,              N_S,   kFrom1x1, kSilent,    RgbC3,   YCbYCr,    PairOdd,      LoneHalf)
ZIM_TO_STREAM(zimiRGBToYCbCr422_8u_P3C2R,              N_S_Q, kFrom1x1, kSilent,    RgbP3,   YCbYCr,    PairOdd,      LoneHalf)
ZIM_TO_STREAM(zimiRGBToYCrCb422_8u_C3C2R,              N_S,   kFrom1x1, kSilent,    RgbC3,   YCrYCb,    PairOdd,      LoneHalf)
ZIM_TO_STREAM(zimiRGBToYCrCb422_8u_P3C2R,              N_S_Q, kFrom1x1, kSilent,    RgbP3,   YCrYCb,    PairOdd,      LoneHalf)
ZIM_TO_STREAM(zimiRGBToCbYCr422_8u_C3C2R,              N_S,   kFrom1x1, kSilent,    RgbC3,   CbYCrY,    Filter,       LoneHalf)
ZIM_TO_STREAM(zimiRGBToCbYCr422Gamma_8u_C3C2R,         N_S_T, kFrom1x1, kSilent,    RgbCurved, CbYCrY,  Filter,       LoneHalf)
ZIM_TO_STREAM(zimiBGRToCbYCr422_8u_AC4C2R,             N_S,   kFrom1x1, kSilent,    BgrAC4,  CbYCrY,    PairTrim,     LoneHalf)
ZIM_TO_STREAM(zimiBGRToCbYCr422_709HDTV_8u_C3C2R,      N_S,   kFrom1x1, kSilent,    BgrC3,   CbYCrY,    PairGuarded,  LoneGuarded)
ZIM_TO_STREAM(zimiBGRToCbYCr422_709HDTV_8u_AC4C2R,     N_S,   kFrom1x1, kSilent,    BgrAC4,  CbYCrY,    PairGuarded,  LoneGuarded)
ZIM_TO_STREAM(zimiBGRToYCbCr422_8u_C3C2R,              N_S,   kFrom2x1, kSilent,    BgrC3,   YCbYCr,    Pair,         LoneEighth)
ZIM_TO_STREAM(zimiBGRToYCbCr422_8u_AC4C2R,             N_S,   kFrom2x1, kSilent,    BgrAC4,  YCbYCr,    Pair,         LoneEighth)
ZIM_TO_STREAM(zimiRGBToYUV422_8u_C3C2R,                N_S,   kFrom1x1, kSilent,    RgbC3,   YCbYCr,    PairYuv,      LoneYuv)

ZIM_TO_PLANES(zimiBGRToYCbCr422_8u_C3P3R,              N_Q_S, kFrom2x1, kSilent,    BgrC3,   Planes422, Pair,         LoneLuma)
ZIM_TO_PLANES(zimiBGRToYCbCr422_8u_AC4P3R,             N_Q_S, kFrom2x1, kSilent,    BgrAC4,  Planes422, Pair,         LoneLuma)
ZIM_TO_PLANES(zimiRGBToYCbCr422_8u_C3P3R,              N_Q_S, kFrom2x1, kOddWidth,  RgbC3,   Planes422, Pair,         Dropped)
ZIM_TO_PLANES(zimiRGBToYUV422_8u_C3P3R,                N_S_Q, kFrom1x1, kSilent,    RgbC3,   Planes422, PairYuv,      WholeYuv)
ZIM_TO_PLANES(zimiRGBToYUV422_8u_P3R,                  N_S_Q, kFrom1x1, kSilent,    RgbP3,   Planes422, PairYuv,      WholeYuv)
ZIM_TO_CONTIGUOUS(zimiRGBToYUV422_8u_C3P3,             N_S_Q, kFrom1x1, kSilent,    RgbC3,   Planes422, PairYuv,      WholeYuv)
ZIM_TO_CONTIGUOUS(zimiRGBToYUV422_8u_P3,               N_S_Q, kFrom1x1, kSilent,    RgbP3,   Planes422, PairYuv,      WholeYuv)

ZIM_TO_PLANES(zimiBGRToYCbCr411_8u_C3P3R,              N_Q_S, kFrom4x1, kNotByFour, BgrC3,   Planes411, Quad,         Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr411_8u_AC4P3R,             N_Q_S, kFrom4x1, kNotByFour, BgrAC4,  Planes411, Quad,         Dropped)

ZIM_TO_PLANES(zimiRGBToYCbCr420_8u_C3P3R,              N_S_Q, kFrom1x1, kOddSize,   RgbC3,   YCbCr420,  Block601,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr420_8u_C3P3R,              N_Q_S, kFrom2x2, kOddSize,   BgrC3,   YCbCr420,  Block601,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr420_8u_AC4P3R,             N_Q_S, kFrom2x2, kOddSize,   BgrAC4,  YCbCr420,  Block601,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr420_709CSC_8u_C3P3R,       N_Q_S, kFrom2x2, kOddSize,   BgrC3,   YCbCr420,  Block709,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr420_709CSC_8u_AC4P3R,      N_Q_S, kFrom2x2, kOddSize,   BgrAC4,  YCbCr420,  Block709,     Dropped)
ZIM_TO_SEMI_PLANAR(zimiBGRToYCbCr420_709CSC_8u_C3P2R,  N_S,   kFrom2x2, kOddSize,   BgrC3,   SemiPlanar, Block709,    Dropped)
ZIM_TO_PLANES(zimiBGRToYCbCr420_709HDTV_8u_AC4P3R,     N_Q_S, kFrom2x2, kOddSize,   BgrAC4,  YCbCr420,  BlockGuarded, Dropped)
ZIM_TO_PLANES(zimiBGRToYCrCb420_8u_C3P3R,              N_Q_S, kFrom2x2, kOddSize,   BgrC3,   YCrCb420,  Block601,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCrCb420_8u_AC4P3R,             N_Q_S, kFrom2x2, kOddSize,   BgrAC4,  YCrCb420,  Block601,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCrCb420_709CSC_8u_C3P3R,       N_Q_S, kFrom2x2, kOddSize,   BgrC3,   YCrCb420,  Block709,     Dropped)
ZIM_TO_PLANES(zimiBGRToYCrCb420_709CSC_8u_AC4P3R,      N_Q_S, kFrom2x2, kOddSize,   BgrAC4,  YCrCb420,  Block709,     Dropped)
ZIM_TO_PLANES(zimiRGBToYCrCb420_8u_AC4P3R,             N_Q_S, kFrom2x2, kOddSize,   RgbAC4,  YCrCb420X, Block601,     Dropped)
ZIM_TO_SEMI_PLANAR(zimiRGBToYCbCr420_8u_C3P2R,         S_N,   kFrom1x1, kOddSize,   RgbC3,   SemiPlanar, FloatCoder,  Dropped)
ZIM_TO_SEMI_PLANAR(zimiRGBToYCbCr420_8u_C4P2R,         S_N,   kFrom1x1, kOddSize,   RgbAC4,  SemiPlanar, FloatCoder,  Dropped)
ZIM_TO_PLANES(zimiBGRToYUV420_8u_AC4P3R,               N_S_Q, kFrom1x1, kOddSize,   BgrAC4,  YCbCr420,  BlockYuv,     Dropped)
ZIM_TO_PLANES(zimiRGBToYUV420_8u_C3P3R,                N_S_Q, kFrom1x1, kOddSize,   RgbC3,   YCbCr420,  BlockYuv,     Dropped)
ZIM_TO_PLANES(zimiRGBToYUV420_8u_P3R,                  N_S_Q, kFrom1x1, kOddSize,   RgbP3,   YCbCr420,  BlockYuv,     Dropped)
ZIM_TO_CONTIGUOUS(zimiRGBToYUV420_8u_C3P3,             N_S_Q, kFrom1x1, kOddSize,   RgbC3,   YCbCr420,  BlockYuv,     Dropped)
ZIM_TO_CONTIGUOUS(zimiRGBToYUV420_8u_P3,               N_S_Q, kFrom1x1, kOddSize,   RgbP3,   YCbCr420,  BlockYuv,     Dropped)
