// Kernels made from kernels: other orders of channels, a fourth channel, signed samples.
#pragma once

#include "frame/lanes/byte_pairs.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// Results in the opposite order: B, G, R for R, G, B.
template <class Kernel>
struct Reversed : Kernel {
  template <int N>
  ZIM_INLINE auto operator()(Pixels<typename Kernel::Sample, N, 3> pixels) const {
    const auto& [a, b, c] = Kernel::operator()(pixels);
    return std::array{c, b, a};
  }

  ZIM_INLINE auto onPairs(BytePairs pairs) const requires HasPairs<Kernel> {
    const auto& [a, b, c] = Kernel::onPairs(pairs);
    return std::array{c, b, a};
  }
};

// A fourth channel that has the same value in every pixel.
template <class Kernel, class Alpha>
struct WithAlpha : Kernel {
  Alpha alpha;

  constexpr explicit WithAlpha(Alpha value) : alpha(value) {}

  template <int N>
  ZIM_INLINE auto operator()(Pixels<typename Kernel::Sample, N, 3> pixels) const {
    const auto& [a, b, c] = Kernel::operator()(pixels);
    using Result = std::decay_t<decltype(a)>;
    return std::array{a, b, c, Result(static_cast<typename Result::Element>(alpha))};
  }

  ZIM_INLINE auto onPairs(BytePairs pairs) const requires HasPairs<Kernel> {
    const auto& [a, b, c] = Kernel::onPairs(pairs);
    return std::array{a, b, c, std::decay_t<decltype(a)>(alpha << 16)};
  }
};

template <class Kernel, class Alpha>
constexpr WithAlpha<Kernel, Alpha> withAlpha(Alpha value) {
  return WithAlpha<Kernel, Alpha>(value);
}

// The source's fourth channel carried across.
template <class Kernel>
struct KeepAlpha : Kernel {
  template <int N>
  ZIM_INLINE auto operator()(Pixels<typename Kernel::Sample, N, 4> pixels) const {
    const auto& [a, b, c, alpha] = pixels;
    const auto result = Kernel::operator()(std::array{a, b, c});
    return std::array{result[0], result[1], result[2], alpha};
  }
};

// A kernel for words without sign on words with sign: these are moved up by 32768, its results down again.
template <class Kernel>
struct MovedUp : Kernel {
  using Sample = Zim32s;

  template <int N, std::size_t Channels>
  ZIM_INLINE auto operator()(const Pixels<Zim32s, N, Channels>& pixels) const {
    const auto results = Kernel::operator()(
        perChannel<Channels>([&](auto c) ZIM_LAMBDA { return convert<typename Kernel::Sample>(pixels[c] + 32768); }));
    return perChannel<results.size()>([&](auto c) ZIM_LAMBDA { return results[c] - 32768; });
  }
};

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
