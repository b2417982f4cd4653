// Gray: a weighted sum of the three samples of a pixel, by fixed weights or by the caller's.
//
// The weights go with the order of samples in memory; nothing here knows which of them is red.

#include "frame/pixelwise.h"

using namespace zim;

namespace {

// Weights in units of 1/4096, rounded half up as a sum with 0.5 that is truncated: -0.25 gives -1023.
struct Weights8u {
  Zim32s w[3] = {1225, 2404, 467};

  constexpr Weights8u() = default;
  explicit Weights8u(const Zim32f* coeffs) {
    if (coeffs == nullptr) return;
    for (int c = 0; c < 3; ++c) {
      w[c] = truncate(Lane<Zim64f, 1>(static_cast<Zim64f>(coeffs[c]) * 4096.0 + 0.5)).v;
    }
  }
};

// g = (a w0 + b w1 + c w2 + 2048) >> 12 in 32 bits, of which the low 8 bits are stored: sums above 255 wrap.
//
// A weight is low + 65536 high with a signed 16-bit low part. Weights from -8 to below 8 have no high part; of the
// others only the bits that reach the result are kept.
enum class Reach {
  byte,   // no sum leaves 0 to 255, as with the fixed weights
  wraps,  // weights of 16 bits
  wide,   // any weights
};
template <Reach reach>
struct Gray8u {
  using Sample = Zim16s;

  constexpr explicit Gray8u(const Weights8u& weights) {
    for (int c = 0; c < 3; ++c) {
      low[c] = static_cast<Zim16s>(weights.w[c]);
      high[c] = static_cast<Zim16s>((static_cast<Zim32u>(weights.w[c]) - static_cast<Zim32u>(low[c])) >> 16);
    }
  }

  template <int N>
  ZIM_INLINE Pixels<Zim16s, N, 1> operator()(Pixels<Zim16s, N, 3> pixels) const {
    const auto dot = [&](const Zim16s(&w)[3]) ZIM_LAMBDA {
      return pairDot(pixels[0], pixels[1], w[0], w[1]) + pairDot(pixels[2], Lane<Zim16s, N>(0), w[2], 0);
    };
    return {finished(narrow<Zim16s>(sum(dot)))};
  }

  ZIM_INLINE auto packed(PackedPixels pixels) const {
    return sum([&](const Zim16s(&w)[3]) ZIM_LAMBDA { return dot(pixels, w[0], w[1], w[2]); });
  }

  template <int N>
  ZIM_INLINE static Lane<Zim16s, N> finished(Lane<Zim16s, N> sums) {
    return reach == Reach::byte ? roundingShift<12 - fits>(sums) : sums;
  }

 private:
  // Sums of bytes are cut to the 15 bits that narrow lanes hold, and rounded there; others are rounded at once.
  static constexpr int fits = 5;

  template <class Dot>
  ZIM_INLINE auto sum(const Dot& dot) const {
    auto sum = dot(low);
    if constexpr (reach == Reach::wide) sum = sum + (dot(high) << 16);
    return reach == Reach::byte ? sum >> fits : ((sum + 2048) >> 12) & decltype(sum)(255);
  }

  Zim16s low[3], high[3];
};

struct ColorToGray8u {
  Weights8u weights;

  template <class Use>
  ZIM_INLINE void choose(const Use& use) const {
    const auto all = [&](auto holds) { return std::all_of(weights.w, weights.w + 3, holds); };
    if (all([](Zim32s w) { return w >= 0 && w <= 4096; }) && weights.w[0] + weights.w[1] + weights.w[2] <= 4096) {
      use(Gray8u<Reach::byte>(weights));
    } else if (all([](Zim32s w) { return w == static_cast<Zim16s>(w); })) {
      use(Gray8u<Reach::wraps>(weights));
    } else {
      use(Gray8u<Reach::wide>(weights));
    }
  }
};

// The fixed weights in double are the single-precision ones, widened.
template <class T>
struct Weights {
  T w[3] = {0.299F, 0.587F, 0.114F};

  constexpr Weights() = default;
  explicit Weights(const T* coeffs) {
    if (coeffs != nullptr) std::copy_n(coeffs, 3, w);
  }
};

// t = a w0 + 0.5, then + b w1, then + c w2: the half comes second. Truncated, and the low 16 bits kept.
template <int N>
ZIM_INLINE Lane<Zim32s, N> gray16(Lane<Zim32f, N> a, Lane<Zim32f, N> b, Lane<Zim32f, N> c, const Weights<Zim32f>& k) {
  auto t = a * k.w[0];
  t = t + 0.5F;
  t = t + b * k.w[1];
  t = t + c * k.w[2];
  return truncate(t);
}

struct Gray16u {
  using Sample = Zim32f;
  Weights<Zim32f> weights;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 1> operator()(Pixels<Zim32f, N, 3> pixels) const {
    return {gray16(pixels[0], pixels[1], pixels[2], weights) & Lane<Zim32s, N>(0xFFFF)};
  }
};

// As 16u, on samples moved up by 32768; the result moves down again.
struct Gray16s {
  using Sample = Zim32s;
  Weights<Zim32f> weights;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 1> operator()(Pixels<Zim32s, N, 3> pixels) const {
    const auto moved = [](Lane<Zim32s, N> x) { return toFloat(x + 32768); };
    const auto gray = gray16(moved(pixels[0]), moved(pixels[1]), moved(pixels[2]), weights) - 32768;
    return {(gray << 16) >> 16};
  }
};

// Neither rounded nor clamped.
template <class T>
struct GrayFloat {
  using Sample = T;
  Weights<T> weights;

  template <int N>
  ZIM_INLINE Pixels<T, N, 1> operator()(Pixels<T, N, 3> pixels) const {
    const auto& [a, b, c] = pixels;
    auto t = a * weights.w[0];
    t = t + b * weights.w[1];
    t = t + c * weights.w[2];
    return {t};
  }
};

using Bytes = Rules<N_S, Offsets::bytes32>;
using Elements = Rules<N_S, Offsets::elements32>;
using Threaded = Rules<N_S, Offsets::bytes32, Bands<32, 32>>;

}  // namespace

#define COEFFS(T) (const T* coeffs)

// clang-format off
//            export                       rules     source        destination  further          kernel
ZIM_PIXELWISE(zimiRGBToGray_8u_C3C1R,      Bytes,    C3<Zim8u>,    C1<Zim8u>,   (),              Gray8u<Reach::byte>(Weights8u()))
ZIM_PIXELWISE(zimiRGBToGray_8u_AC4C1R,     Bytes,    AC4<Zim8u>,   C1<Zim8u>,   (),              Gray8u<Reach::byte>(Weights8u()))
ZIM_PIXELWISE(zimiRGBToGray_16u_C3C1R,     Elements, C3<Zim16u>,   C1<Zim16u>,  (),              Gray16u{})
ZIM_PIXELWISE(zimiRGBToGray_16u_AC4C1R,    Elements, AC4<Zim16u>,  C1<Zim16u>,  (),              Gray16u{})
ZIM_PIXELWISE(zimiRGBToGray_16s_C3C1R,     Elements, C3<Zim16s>,   C1<Zim16s>,  (),              Gray16s{})
ZIM_PIXELWISE(zimiRGBToGray_16s_AC4C1R,    Elements, AC4<Zim16s>,  C1<Zim16s>,  (),              Gray16s{})
ZIM_PIXELWISE(zimiRGBToGray_32f_C3C1R,     Elements, C3<Zim32f>,   C1<Zim32f>,  (),              GrayFloat<Zim32f>{})
ZIM_PIXELWISE(zimiRGBToGray_32f_AC4C1R,    Elements, AC4<Zim32f>,  C1<Zim32f>,  (),              GrayFloat<Zim32f>{})
ZIM_PIXELWISE(zimiColorToGray_8u_C3C1R,    Bytes,    C3<Zim8u>,    C1<Zim8u>,   COEFFS(Zim32f),  ColorToGray8u{Weights8u(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_8u_AC4C1R,   Bytes,    AC4<Zim8u>,   C1<Zim8u>,   COEFFS(Zim32f),  ColorToGray8u{Weights8u(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_16u_C3C1R,   Elements, C3<Zim16u>,   C1<Zim16u>,  COEFFS(Zim32f),  Gray16u{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_16u_AC4C1R,  Elements, AC4<Zim16u>,  C1<Zim16u>,  COEFFS(Zim32f),  Gray16u{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_16s_C3C1R,   Elements, C3<Zim16s>,   C1<Zim16s>,  COEFFS(Zim32f),  Gray16s{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_16s_AC4C1R,  Elements, AC4<Zim16s>,  C1<Zim16s>,  COEFFS(Zim32f),  Gray16s{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_32f_C3C1R,   Elements, C3<Zim32f>,   C1<Zim32f>,  COEFFS(Zim32f),  GrayFloat<Zim32f>{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_32f_AC4C1R,  Elements, AC4<Zim32f>,  C1<Zim32f>,  COEFFS(Zim32f),  GrayFloat<Zim32f>{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_64f_C3C1R,   Threaded, C3<Zim64f>,   C1<Zim64f>,  COEFFS(Zim64f),  GrayFloat<Zim64f>{Weights(coeffs)})
ZIM_PIXELWISE(zimiColorToGray_64f_AC4C1R,  Threaded, AC4<Zim64f>,  C1<Zim64f>,  COEFFS(Zim64f),  GrayFloat<Zim64f>{Weights(coeffs)})
