// Colour twist: an affine map of the three samples of a pixel, in single precision.

#include <cmath>
#include <limits>

#include "frame/pixelwise.h"
#include "frame/rounding.h"

using namespace zim;

namespace {

// Output sample k of x, y, z: a = m0 x, then + m3, then + m1 y, then + m2 z. The offset enters second.
struct Twist {
  using Sample = Zim32f;
  Zim32f m[3][4];

  explicit Twist(const Zim32f (*twist)[4]) { std::copy_n(&twist[0][0], 12, &m[0][0]); }

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 3> operator()(const Pixels<Zim32f, N, 3>& pixels) const {
    return perChannel<3>([&](auto k) ZIM_LAMBDA {
      auto a = pixels[0] * m[k][0];
      a = a + m[k][3];
      a = a + pixels[1] * m[k][1];
      return a + pixels[2] * m[k][2];
    });
  }
};

// Rounded to nearest, ties to even, and saturated ahead of that; NaN becomes 0.
template <class T>
struct TwistSaturated : Twist {
  using Twist::Twist;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& pixels) const {
    const auto sums = Twist::operator()(pixels);
    return perChannel<3>([&](auto k) ZIM_LAMBDA { return rounded(sums[k]); });
  }

 private:
  template <int N>
  ZIM_INLINE static Lane<Zim32s, N> rounded(Lane<Zim32f, N> a) {
    constexpr auto lowest = static_cast<Zim32f>(std::numeric_limits<T>::lowest());
    constexpr auto highest = static_cast<Zim32f>(std::numeric_limits<T>::max());
    if constexpr (std::is_unsigned_v<T>) {
      // Negative sums and NaN come out as zero or below, for which the store gives 0.
      return roundHalfEvenPositive(smaller(a, Lane<Zim32f, N>(highest)));
    } else {
      return roundHalfEvenSigned(clamp(a, lowest, highest)) & (a == a);
    }
  }
};

// The same where no sum can leave 32 bits: then the saturation of the store does as well, since rounding is monotone
// and keeps integers.
template <class T>
struct TwistBounded : Twist {
  using Twist::Twist;

  template <int N>
  ZIM_INLINE Pixels<Zim32s, N, 3> operator()(const Pixels<Zim32f, N, 3>& pixels) const {
    const auto sums = Twist::operator()(pixels);
    return perChannel<3>([&](auto k) ZIM_LAMBDA {
      if constexpr (std::is_unsigned_v<T>) {
        return roundHalfEvenPositiveByProcessor(sums[k]);
      } else {
        return roundHalfEvenSignedByProcessor(sums[k]);
      }
    });
  }
};

template <class T>
struct TwistInteger {
  const Zim32f (*twist)[4];

  explicit TwistInteger(const Zim32f (*matrix)[4]) : twist(matrix) {}

  template <class Use>
  ZIM_INLINE void choose(const Use& use) const {
    if (roundsToNearest() && std::all_of(twist, twist + 3, isBounded)) {
      use(TwistBounded<T>(twist));
    } else {
      use(TwistSaturated<T>(twist));
    }
  }

 private:
  static bool isBounded(const Zim32f (&row)[4]) {
    constexpr Zim32f largestSample = 65536.0F, limit = 1e9F;
    return (std::abs(row[0]) + std::abs(row[1]) + std::abs(row[2])) * largestSample + std::abs(row[3]) < limit;
  }
};

// Four samples, no offset: m0 x + m1 y + m2 z + m3 w, left to right.
struct Twist4 {
  using Sample = Zim32f;
  Zim32f m[4][4];

  explicit Twist4(const Zim32f (*twist)[4]) { std::copy_n(&twist[0][0], 16, &m[0][0]); }

  template <int N>
  ZIM_INLINE Pixels<Zim32f, N, 4> operator()(const Pixels<Zim32f, N, 4>& pixels) const {
    return perChannel<4>([&](auto k) ZIM_LAMBDA {
      return pixels[0] * m[k][0] + pixels[1] * m[k][1] + pixels[2] * m[k][2] + pixels[3] * m[k][3];
    });
  }
};

using AllTested = Rules<N_Q_S_T>;

template <class Kernel, class Layout>
ZimResult twisted(Conversion<Layout, Layout> call, const Zim32f (*twist)[4]) {
  call.furtherGiven = twist != nullptr;
  return pixelwise<AllTested>(call, [&] { return Kernel(twist); });
}

}  // namespace

#define MATRIX (const Zim32f(*twist)[4])
#define TWIST(name, Layout, Kernel) ZIM_CONVERSION(name, Layout, Layout, MATRIX, twisted<Kernel>(call, twist))
#define TWIST_IN_PLACE(name, Layout, Kernel) ZIM_IN_PLACE(name, Layout, MATRIX, twisted<Kernel>(call, twist))

// clang-format off
//             export                          layout        kernel
TWIST(         zimiColorTwist32f_8u_C3R,       C3<Zim8u>,    TwistInteger<Zim8u>)
TWIST(         zimiColorTwist32f_8u_AC4R,      AC4<Zim8u>,   TwistInteger<Zim8u>)
TWIST_IN_PLACE(zimiColorTwist32f_8u_C3IR,      C3<Zim8u>,    TwistInteger<Zim8u>)
TWIST_IN_PLACE(zimiColorTwist32f_8u_AC4IR,     AC4<Zim8u>,   TwistInteger<Zim8u>)
TWIST(         zimiColorTwist32f_8u_P3R,       P3<Zim8u>,    TwistInteger<Zim8u>)
TWIST_IN_PLACE(zimiColorTwist32f_8u_IP3R,      P3<Zim8u>,    TwistInteger<Zim8u>)

TWIST(         zimiColorTwist32f_8s_C3R,       C3<Zim8s>,    TwistInteger<Zim8s>)
TWIST(         zimiColorTwist32f_8s_AC4R,      AC4<Zim8s>,   TwistInteger<Zim8s>)
TWIST_IN_PLACE(zimiColorTwist32f_8s_C3IR,      C3<Zim8s>,    TwistInteger<Zim8s>)
TWIST_IN_PLACE(zimiColorTwist32f_8s_AC4IR,     AC4<Zim8s>,   TwistInteger<Zim8s>)
TWIST(         zimiColorTwist32f_8s_P3R,       P3<Zim8s>,    TwistInteger<Zim8s>)
TWIST_IN_PLACE(zimiColorTwist32f_8s_IP3R,      P3<Zim8s>,    TwistInteger<Zim8s>)

TWIST(         zimiColorTwist32f_16u_C3R,      C3<Zim16u>,   TwistInteger<Zim16u>)
TWIST(         zimiColorTwist32f_16u_AC4R,     AC4<Zim16u>,  TwistInteger<Zim16u>)
TWIST_IN_PLACE(zimiColorTwist32f_16u_C3IR,     C3<Zim16u>,   TwistInteger<Zim16u>)
TWIST_IN_PLACE(zimiColorTwist32f_16u_AC4IR,    AC4<Zim16u>,  TwistInteger<Zim16u>)
TWIST(         zimiColorTwist32f_16u_P3R,      P3<Zim16u>,   TwistInteger<Zim16u>)
TWIST_IN_PLACE(zimiColorTwist32f_16u_IP3R,     P3<Zim16u>,   TwistInteger<Zim16u>)

TWIST(         zimiColorTwist32f_16s_C3R,      C3<Zim16s>,   TwistInteger<Zim16s>)
TWIST(         zimiColorTwist32f_16s_AC4R,     AC4<Zim16s>,  TwistInteger<Zim16s>)
TWIST_IN_PLACE(zimiColorTwist32f_16s_C3IR,     C3<Zim16s>,   TwistInteger<Zim16s>)
TWIST_IN_PLACE(zimiColorTwist32f_16s_AC4IR,    AC4<Zim16s>,  TwistInteger<Zim16s>)
TWIST(         zimiColorTwist32f_16s_P3R,      P3<Zim16s>,   TwistInteger<Zim16s>)
TWIST_IN_PLACE(zimiColorTwist32f_16s_IP3R,     P3<Zim16s>,   TwistInteger<Zim16s>)

TWIST(         zimiColorTwist_32f_C3R,         C3<Zim32f>,   Twist)
TWIST(         zimiColorTwist_32f_AC4R,        AC4<Zim32f>,  Twist)
TWIST_IN_PLACE(zimiColorTwist_32f_C3IR,        C3<Zim32f>,   Twist)
TWIST_IN_PLACE(zimiColorTwist_32f_AC4IR,       AC4<Zim32f>,  Twist)
TWIST(         zimiColorTwist_32f_P3R,         P3<Zim32f>,   Twist)
TWIST_IN_PLACE(zimiColorTwist_32f_IP3R,        P3<Zim32f>,   Twist)
// clang-format on

// Steps of width * 4 bytes, not 16, make the image one run of width * height pixels, both products of 32 bits.
ZimResult ZIM_BODY(zimiColorTwist_32f_C4R)(const Zim32f* pSrc, Zim32s srcStep, Zim32f* pDst, Zim32s dstStep,
                                           ZimiSize roiSize, const Zim32f (*twist)[4]) {
  using Image = C4<Zim32f>;
  Conversion<Image, Image> call{pSrc, srcStep, pDst, dstStep, roiSize, twist != nullptr};
  if (const ZimResult failure = AllTested::Tests::check(call); failure != zimResultOk) return failure;
  if (srcStep == dstStep && srcStep == wrappingProduct(roiSize.width, 4)) {
    call.roiSize = {wrappingProduct(roiSize.width, roiSize.height), 1};
  }
  return pixelwise<Rules<Order<>>>(call, [&] { return Twist4(twist); });
}
