// Pixel layouts: where the samples of a pixel lie in memory, and how a block of pixels comes into lanes and back.
//
// A layout knows nothing of colours and rows. It is described by the argument types that stand for it in a public
// signature, by the byte distance of successive pixels in each of its planes, and by load and store.
#pragma once

#include "frame/lanes/memory.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {

// One position in each plane of an image; an interleaved image has one plane.
template <class Byte, std::size_t Planes>
struct Position {
  std::array<Byte*, Planes> plane;

  ZIM_INLINE Position at(std::ptrdiff_t byteOffset) const {
    return {perChannel<Planes>([&](auto c) ZIM_LAMBDA { return plane[c] + byteOffset; })};
  }
};

// Channels interleaved samples of every Stride; what lies between is neither read past the last pixel nor written.
template <class T, std::size_t Channels, std::size_t Stride = Channels>
struct Interleaved {
  using Sample = T;
  using Source = const T*;
  using Destination = T*;
  static constexpr std::size_t channels = Channels;
  static constexpr std::size_t planes = 1;
  static constexpr std::ptrdiff_t pixelBytes = sizeof(T) * Stride;
  // Whether a block of whole pixels ends in a sample that is not of this layout.
  static constexpr bool hasGaps = Stride > Channels;

  ZIM_INLINE static Position<const std::byte, 1> start(Source p) { return {{reinterpret_cast<const std::byte*>(p)}}; }
  ZIM_INLINE static Position<std::byte, 1> start(Destination p) requires(!std::is_same_v<Source, Destination>) {
    return {{reinterpret_cast<std::byte*>(p)}};
  }
  static bool planesGiven(Source) { return true; }

  // A block is read with all its gaps.
  template <int N>
  ZIM_INLINE static Pixels<T, N, Channels> load(Position<const std::byte, 1> from) {
    if constexpr (hasGaps && N > 1) {
      const auto all = zim::load<T, N, Stride>(from.plane[0]);
      return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return all[c]; });
    } else {
      return zim::load<T, N, Channels>(from.plane[0]);
    }
  }

  template <int N>
  ZIM_INLINE static void store(Position<std::byte, 1> to, const Pixels<T, N, Channels>& pixels) {
    if constexpr (hasGaps && N > 1) {
      storeBesideGaps<T, N, Channels, Stride>(to.plane[0], pixels);
    } else {
      zim::store<T, N, Channels>(to.plane[0], pixels);
    }
  }

  // Half a block at a time, from 16-bit lanes, where single pixels are stored: computing the next ones then does not
  // wait behind the stores of a whole block.
  template <int N>
  ZIM_INLINE static void storeHalf(Position<std::byte, 1> to,
                                   const Pixels<Zim16s, N, 3>& pixels) requires(hasGaps&& std::is_same_v<T, Zim8u>) {
    storeBytesThreeOfFour<N>(to.plane[0], pixels);
  }

  // Copies so many pixels of an image for reading: all but the last gap.
  ZIM_INLINE static void read(Position<std::byte, 1> to, Position<const std::byte, 1> from, int pixels) {
    constexpr std::ptrdiff_t gap = (Stride - Channels) * sizeof(T);
    copyBytes(to.plane[0], from.plane[0], pixels * pixelBytes - gap);
  }
  // Copies so many pixels into an image, whose gaps stay as they are.
  ZIM_INLINE static void write(Position<std::byte, 1> to, Position<const std::byte, 1> from, int pixels) {
    if constexpr (hasGaps) {
      copyBesideGaps<T, Channels, Stride>(to.plane[0], from.plane[0], pixels);
    } else {
      read(to, from, pixels);
    }
  }
};

// Channels planes of single samples, passed as the address of an array of their pointers. The planes from Tested on
// (an alpha plane) are used without a test.
template <class T, std::size_t Channels, std::size_t Tested = Channels>
struct Planar {
  using Sample = T;
  using Source = const T* const*;
  using Destination = T* const*;
  static constexpr std::size_t channels = Channels;
  static constexpr std::size_t planes = Channels;
  static constexpr std::ptrdiff_t pixelBytes = sizeof(T);
  static constexpr bool hasGaps = false;

  ZIM_INLINE static Position<const std::byte, planes> start(Source p) {
    Position<const std::byte, planes> position;
    for (std::size_t c = 0; c < planes; ++c) position.plane[c] = reinterpret_cast<const std::byte*>(p[c]);
    return position;
  }
  ZIM_INLINE static Position<std::byte, planes> start(Destination p) {
    Position<std::byte, planes> position;
    for (std::size_t c = 0; c < planes; ++c) position.plane[c] = reinterpret_cast<std::byte*>(p[c]);
    return position;
  }
  static bool planesGiven(Source p) {
    for (std::size_t c = 0; c < Tested; ++c) {
      if (p[c] == nullptr) return false;
    }
    return true;
  }

  template <int N>
  ZIM_INLINE static Pixels<T, N, Channels> load(Position<const std::byte, planes> from) {
    return perChannel<Channels>([&](auto c) ZIM_LAMBDA { return zim::load<T, N, 1>(from.plane[c])[0]; });
  }
  template <int N>
  ZIM_INLINE static void store(Position<std::byte, planes> to, const Pixels<T, N, Channels>& pixels) {
    forChannels<Channels>([&](auto c) ZIM_LAMBDA { zim::store<T, N, 1>(to.plane[c], {pixels[c]}); });
  }
  ZIM_INLINE static void read(Position<std::byte, planes> to, Position<const std::byte, planes> from, int pixels) {
    for (std::size_t c = 0; c < Channels; ++c) copyBytes(to.plane[c], from.plane[c], pixels * pixelBytes);
  }
  ZIM_INLINE static void write(Position<std::byte, planes> to, Position<const std::byte, planes> from, int pixels) {
    read(to, from, pixels);
  }
};

template <class T>
using C1 = Interleaved<T, 1>;
template <class T>
using C3 = Interleaved<T, 3>;
template <class T>
using C4 = Interleaved<T, 4>;
template <class T>
using AC4 = Interleaved<T, 3, 4>;
template <class T>
using P3 = Planar<T, 3>;
template <class T>
using P4 = Planar<T, 4, 3>;
template <class T>
using AP4 = Planar<T, 4>;

// A few pixels apart from their row, in the row's own layout: there a whole block can be loaded and stored where the
// row has fewer pixels left.
template <class Layout, int N>
struct Block {
  alignas(kRegisterBytes) std::byte bytes[Layout::planes][N * static_cast<std::size_t>(Layout::pixelBytes)];

  ZIM_INLINE Position<std::byte, Layout::planes> start() {
    return {perChannel<Layout::planes>([&](auto c) ZIM_LAMBDA { return &bytes[c][0]; })};
  }
};

template <std::size_t Planes>
ZIM_INLINE Position<const std::byte, Planes> readOnly(Position<std::byte, Planes> position) {
  return {perChannel<Planes>([&](auto c) ZIM_LAMBDA { return static_cast<const std::byte*>(position.plane[c]); })};
}

}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim
