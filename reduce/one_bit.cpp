// Bitmaps of gray images, by a threshold or by error diffusion in integers.

#include <algorithm>
#include <memory>

#include "frame/pixelwise.h"
#include "reduce/skewed_rows.h"
#include "zimcore.h"

using namespace zim;

namespace {

struct Call {
  const Zim8u* pSrc;
  Zim32s srcStep;
  Zim8u* pDst;
  Zim32s dstStep;
  Zim32s dstBitOffset;
  ZimiSize roiSize;

  bool pointersGiven() const { return pSrc != nullptr && pDst != nullptr; }

  const std::byte* source(Zim32s y) const {
    return reinterpret_cast<const std::byte*>(pSrc) + rowOffset<Offsets::bytes, Zim8u>(y, srcStep);
  }
};

// ---- Bits of a row, the first one highest ----

using Bits = std::uint64_t;

// All bits in the opposite order.
Bits reversed(Bits bits) {
  const auto swapped = [&bits](int distance, Bits lower) {
    bits = (bits >> distance & lower) | (bits & lower) << distance;
  };
  swapped(1, 0x5555555555555555U);
  swapped(2, 0x3333333333333333U);
  swapped(4, 0x0F0F0F0F0F0F0F0FU);
  return __builtin_bswap64(bits);
}

// The bits of so many pixels, for each register of which mask(x) has lanes that are all ones or zeros.
template <int pixels, class Mask>
ZIM_INLINE Bits bitsOf(const Mask& mask) {
  constexpr int n = kLanes<Zim8s>;
  Bits bits = 0;
  forChannels<pixels / n>(
      [&](auto i) ZIM_LAMBDA { bits |= Bits{signBits(mask(std::ptrdiff_t{i} * n))} << (std::size_t{i} * n); });
  return reversed(bits);
}

class BitRow {
 public:
  BitRow(const Call& call, Zim32s y)
      : first_(reinterpret_cast<std::byte*>(call.pDst) + rowOffset<Offsets::bytes, Zim8u>(y, call.dstStep)),
        offset_(call.dstBitOffset & 7) {}

  // A row that starts inside a byte clears the rest of it first, which shows where it ends there.
  void clearStart() const {
    if (offset_ != 0) *first_ &= ~(std::byte{0xFF} >> offset_);
  }

  // Pixels up to the next whole byte.
  int aheadOfByte() const { return -offset_ & 7; }

  // The bits of so many pixels, at most 64, from x on. The other bits of a byte stay.
  void put(std::ptrdiff_t x, int count, Bits bits) const {
    std::byte* to = first_ + (offset_ + x) / 8;
    const auto offset = static_cast<int>((offset_ + x) % 8);
    if (offset == 0 && count == 64) {
      bits = __builtin_bswap64(bits);
      std::memcpy(to, &bits, sizeof bits);
      return;
    }
    for (int start = offset; count > 0; start = 0) {
      const int bitsHere = std::min(count, 8 - start);
      const auto mask = (std::byte{0xFF} >> start) & (std::byte{0xFF} << (8 - start - bitsHere));
      const auto value = static_cast<std::byte>(bits >> 56) >> start;
      *to = mask == std::byte{0xFF} ? value : (*to & ~mask) | (value & mask);
      ++to;
      bits <<= bitsHere;
      count -= bitsHere;
    }
  }

 private:
  std::byte* first_;
  int offset_;
};

// ---- Threshold ----

// The bits of 64 pixels: 1 above the threshold.
ZIM_INLINE Bits aboveThreshold(const std::byte* from, Zim8u threshold) {
  constexpr int n = kLanes<Zim8u>;
  return bitsOf<64>([&](std::ptrdiff_t x)
                        ZIM_LAMBDA { return load<Zim8u, n, 1>(from + x)[0] > Lane<Zim8u, n>(threshold); });
}

void thresholdRow(const std::byte* from, std::ptrdiff_t width, const BitRow& to, Zim8u threshold) {
  const auto putFew = [&](std::ptrdiff_t x, std::ptrdiff_t count) {
    std::byte few[64] = {};
    std::memcpy(few, from + x, static_cast<std::size_t>(count));
    to.put(x, static_cast<int>(count), aboveThreshold(few, threshold));
  };
  to.clearStart();
  std::ptrdiff_t x = std::min<std::ptrdiff_t>(to.aheadOfByte(), width);
  if (x > 0) putFew(0, x);
  for (; x <= width - 64; x += 64) to.put(x, 64, aboveThreshold(from + x, threshold));
  if (x < width) putFew(x, width - x);
}

ZimResult byThreshold(const Call& call, Zim8u threshold) {
  for (Zim32s y = 0; y < call.roiSize.height; ++y) {
    thresholdRow(call.source(y), call.roiSize.width, BitRow(call, y), threshold);
  }
  return zimResultOk;
}

// ---- Error diffusion ----

// Samples count 8192 to the step of gray, errors 8. Each weight of Stucki's passes on 23 / 1024 of an error, a little
// less than a 42nd, so that errors fade; white counts as just under 256 steps.
struct StuckiInIntegers {
  using Element = Zim32s;
  static constexpr int depth = 2;
  static constexpr bool usesThresholds = false;
  static constexpr Zim32s outside = -1;
  Zim32s threshold;

  template <int N, class Near>
  ZIM_INLINE Outcome<Lane<Zim32s, N>> operator()(Lane<Zim32s, N> sample, Lane<Zim32s, N>, const Near& near) const {
    const auto twos = near(2, -1) + near(2, 1) + near(1, -2) + near(1, 2);
    const auto fours = near(2, 0) + near(1, -1) + near(1, 1) + near(0, -2);
    const auto eights = near(1, 0) + near(0, -1);
    const auto sum = (near(2, -2) + near(2, 2)) + (twos << 1) + (fours << 2) + (eights << 3);
    const auto value = sample + ((sum << 4) + (sum << 3) - sum);
    const auto isWhite = value > Lane<Zim32s, N>(threshold);
    const auto error = (value >> 10) - (isWhite & Lane<Zim32s, N>(2047));
    return {error & ~(sample >> 31), isWhite};
  }
};

struct BitImage {
  const Call& call;
  Zim32s y;

  ZIM_INLINE void expect(int row, std::ptrdiff_t x, std::ptrdiff_t count) const {
    fetch(call.source(y + row) + x, count - 1);
  }
  void read(int row, std::ptrdiff_t x, std::ptrdiff_t count, Zim32s* to) const {
    constexpr int block = kLanes<Zim8u>;
    const std::byte* from = call.source(y + row) + x;
    std::ptrdiff_t i = 0;
    for (; i <= count - block; i += block) {
      const auto samples = convert<Zim32s>(widenTowards<Zim32s>(load<Zim8u, block, 1>(from + i)[0]));
      store<Zim32s, block, 1>(reinterpret_cast<std::byte*>(to + i), {samples << 13});
    }
    for (; i < count; ++i) to[i] = std::to_integer<Zim32s>(from[i]) << 13;
  }
  void write(int row, std::ptrdiff_t x, std::ptrdiff_t count, const Zim32s* from) const {
    constexpr int most = 64;
    Zim32s few[most] = {};
    if (count < most) from = std::copy_n(from, count, few) - count;
    const Bits bits = bitsOf<most>([&](std::ptrdiff_t i) ZIM_LAMBDA {
      const auto masks = load<Zim32s, kLanes<Zim8s>, 1>(reinterpret_cast<const std::byte*>(from + i))[0];
      return narrow<Zim8s>(narrow<Zim16s>(masks));
    });
    BitRow(call, y + row).put(x, static_cast<int>(count), bits);
  }
};

struct Release {
  void operator()(Zim32s* memory) const { zimFree(memory); }
};

ZimResult byStucki(const Call& call, Zim8u threshold) {
  const auto [width, height] = call.roiSize;
  using Rows = SkewedRows<StuckiInIntegers>;
  // Three rows with a margin of two on either side, of which two serve here.
  const std::size_t rowLength = ((static_cast<std::size_t>(width) + 4) & ~std::size_t{4}) + 4;
  const std::unique_ptr<Zim32s[], Release> errors(static_cast<Zim32s*>(zimMalloc(3 * rowLength * sizeof(Zim32s))));
  if (errors == nullptr) return zimResultNoMemory;
  std::fill_n(errors.get(), 3 * rowLength, 0);
  Rows rows({threshold << 13}, width, {&errors[0], &errors[rowLength]});
  for (Zim32s rest = height; rest > 0; rest -= Rows::rows) {
    const Zim32s y = height - rest;
    const int count = std::min(Rows::rows, rest);
    for (int row = 0; row < count; ++row) BitRow(call, y + row).clearStart();
    rows.run(count, BitImage{call, y});
  }
  return zimResultOk;
}

}  // namespace

ZimResult ZIM_BODY(zimiReduceBits_8u1u_C1R)(const Zim8u* pSrc, Zim32s srcStep, Zim8u* pDst, Zim32s dstStep,
                                            Zim32s dstBitOffset, ZimiSize roiSize, Zim32s, Zim32s, ZimDitherKind dither,
                                            Zim8u threshold) {
  const Call call{pSrc, srcStep, pDst, dstStep, dstBitOffset, roiSize};
  if (const ZimResult failure = N_S::check(call); failure != zimResultOk) return failure;
  if (dstBitOffset < 0) return zimResultBadSize;
  switch (dither) {
    case zimDitherKindNone:
      return byThreshold(call, threshold);
    case zimDitherKindStucki:
      return byStucki(call, threshold);
    default:
      return zimResultBadDither;
  }
}
