// Matrices in fixed point with 16 fraction bits, on 16-bit lanes.
#pragma once

#include "frame/lanes/convert.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// (c[0] x + c[1] y + c[2] z + bias) >> 16
struct FixedRow {
  Zim32s c[3];
  Zim32s bias;
};

// A row as signed 16-bit factors of the pairs (x, y) and (x, z), and the whole multiples of x, y, z that are left:
//   (sum c_i x_i + r) >> 16  ==  ((sum (c_i - 65536 k_i) x_i + r) >> 16) + sum k_i x_i
// The factor of x may be shared out between the pairs, and a pair whose second factor is zero is left out.
struct SplitRow {
  Zim16s xy[2] = {}, xz[2] = {};
  Zim16s whole[3] = {};
  bool usesXy = false, usesXz = false;

  constexpr explicit SplitRow(FixedRow row) : usesXy(row.c[1] != 0), usesXz(row.c[2] != 0 || row.c[1] == 0) {
    const auto nearestWhole = [](Zim32s c) { return (c + 32768) >> 16; };
    const bool both = usesXy && usesXz;
    const Zim32s wholeX = both && row.c[0] > -65536 && row.c[0] < 65534 ? 0 : nearestWhole(row.c[0]);
    const Zim32s x = row.c[0] - wholeX * 65536;
    const Zim32s xInXy = both ? x / 2 : usesXy ? x : 0;
    const Zim32s wholeY = nearestWhole(row.c[1]), wholeZ = nearestWhole(row.c[2]);
    xy[0] = static_cast<Zim16s>(xInXy);
    xz[0] = static_cast<Zim16s>(x - xInXy);
    xy[1] = static_cast<Zim16s>(row.c[1] - wholeY * 65536);
    xz[1] = static_cast<Zim16s>(row.c[2] - wholeZ * 65536);
    whole[0] = static_cast<Zim16s>(wholeX);
    whole[1] = static_cast<Zim16s>(wholeY);
    whole[2] = static_cast<Zim16s>(wholeZ);
  }
};

// The row on samples within -256 to 255, with a result that fits 16 bits.
template <FixedRow row, int N>
ZIM_INLINE Lane<Zim16s, N> fixedDot(Lane<Zim16s, N> x, Lane<Zim16s, N> y, Lane<Zim16s, N> z) {
  if constexpr (N == 1) {
    const Zim32s sum = row.c[0] * x.v + row.c[1] * y.v + row.c[2] * z.v + row.bias;
    return Lane<Zim16s, N>(static_cast<Zim16s>(sum >> 16));
  } else {
    constexpr SplitRow split(row);
    Lane<Zim32s, N> sum(row.bias);
    if constexpr (split.usesXy) sum = sum + pairDot(x, y, split.xy[0], split.xy[1]);
    if constexpr (split.usesXz) sum = sum + pairDot(x, z, split.xz[0], split.xz[1]);
    auto result = narrow<Zim16s>(sum >> 16);
    if constexpr (split.whole[0] != 0) result = result + x * split.whole[0];
    if constexpr (split.whole[1] != 0) result = result + y * split.whole[1];
    if constexpr (split.whole[2] != 0) result = result + z * split.whole[2];
    return result;
  }
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
