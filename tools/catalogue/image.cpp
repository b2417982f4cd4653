#include "tools/catalogue/image.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>

namespace zim::catalogue {
namespace {

// splitmix64
class Generator {
 public:
  explicit Generator(std::uint64_t seed) : state_(seed) {}

  std::uint64_t operator()() {
    std::uint64_t z = state_ += 0x9e3779b97f4a7c15u;
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9u;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebu;
    return z ^ (z >> 31);
  }

 private:
  std::uint64_t state_;
};

template <class T>
T unitInterval(std::uint64_t draw) {
  constexpr int kDigits = std::numeric_limits<T>::digits;
  return static_cast<T>(draw >> (64 - kDigits)) * std::ldexp(T(1), -kDigits);
}

template <class T>
T anyBits(std::uint64_t draw) {
  T sample;
  std::memcpy(&sample, &draw, sizeof sample);
  return sample;
}

template <class T>
constexpr auto extremesOf() {
  using Limits = std::numeric_limits<T>;
  if constexpr (Limits::is_iec559) {
    return std::to_array<T>({Limits::quiet_NaN(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             Limits::max(),
                             Limits::lowest(),
                             Limits::min(),
                             -Limits::min(),
                             Limits::denorm_min(),
                             -Limits::denorm_min(),
                             T(0),
                             -T(0),
                             T(1),
                             T(-1),
                             T(0.5),
                             T(-0.5),
                             1 + Limits::epsilon(),
                             1 - Limits::epsilon(),
                             T(255),
                             T(255.5),
                             T(65535),
                             T(65535.5),
                             T(2147483648.0),
                             T(-2147483648.0),
                             T(4294967296.0),
                             T(9223372036854775808.0)});
  } else {
    constexpr T kMiddle = T(Limits::max() / 2 + Limits::min() / 2);
    return std::to_array<T>({Limits::min(), T(Limits::min() + 1), T(kMiddle - 1), kMiddle, T(kMiddle + 1),
                             T(Limits::max() - 1), Limits::max(), T(0), T(1)});
  }
}

// Of four samples two are extremes; the others are any bits or, for floats, a value around the unit interval.
template <class T>
T extreme(Generator& generator) {
  static constexpr auto kExtremes = extremesOf<T>();
  const std::uint64_t choice = generator() % 4;
  const std::uint64_t draw = generator();
  if (choice < 2) return kExtremes[draw % kExtremes.size()];
  if constexpr (std::numeric_limits<T>::is_iec559) {
    if (choice == 2) return unitInterval<T>(draw) * 3 - 1;
  }
  return anyBits<T>(draw);
}

template <class T, class Source>
void fillRow(std::byte* row, std::size_t rowBytes, Source&& source) {
  for (std::size_t i = 0; i < rowBytes; i += sizeof(T)) {
    const T sample = source();
    std::memcpy(row + i, &sample, std::min(sizeof sample, rowBytes - i));
  }
}

std::uint64_t fnv1a(std::uint64_t hash, std::span<const std::byte> bytes) {
  for (const std::byte b : bytes) hash = (hash ^ std::to_integer<std::uint64_t>(b)) * 0x100000001b3u;
  return hash;
}

}  // namespace

Image::Image(const Side& side, ZimiSize size, int stepPadding) : side_(side), size_(size) {
  for (const Plane& plane : side.planes) {
    PlaneMemory& p = planes_.emplace_back();
    p.rowBytes = plane.rowBytes(size.width);
    p.step = p.rowBytes + static_cast<std::size_t>(side.steps == Steps::none ? 0 : stepPadding);
    p.rows = plane.rows(size.height);
    const std::size_t bytes = (p.step * static_cast<std::size_t>(p.rows) / 64 + 1) * 64;
    p.memory.reset(static_cast<std::byte*>(::operator new(bytes, kAlignment)));
    std::memset(p.memory.get(), 0, bytes);
  }
}

Buffers Image::buffers() const {
  Buffers buffers;
  for (std::size_t i = 0; i < planes_.size(); ++i) {
    buffers.planes[i] = planes_[i].memory.get();
    buffers.steps[i] = static_cast<Zim32s>(planes_[i].step);
  }
  return buffers;
}

std::byte* Image::row(std::size_t plane, int y) {
  const PlaneMemory& p = planes_[plane];
  return p.memory.get() + p.step * static_cast<std::size_t>(y);
}

template <class Visitor>
void Image::forEachRow(Visitor&& visitor) const {
  for (const PlaneMemory& p : planes_) {
    for (int y = 0; y < p.rows; ++y) visitor(p.memory.get() + p.step * static_cast<std::size_t>(y), p.rowBytes);
  }
}

void Image::fill(std::byte value) {
  forEachRow([&](std::byte* row, std::size_t rowBytes) { std::fill_n(row, rowBytes, value); });
}

void Image::fillRandom(std::uint64_t seed) {
  Generator generator(seed);
  visit(side_.type, [&]<class T>(std::type_identity<T>) {
    forEachRow([&](std::byte* row, std::size_t rowBytes) {
      if constexpr (std::numeric_limits<T>::is_iec559) {
        fillRow<T>(row, rowBytes, [&] { return unitInterval<T>(generator()); });
      } else {
        fillRow<std::uint64_t>(row, rowBytes, generator);
      }
    });
  });
}

void Image::fillExtremes(std::uint64_t seed) {
  Generator generator(seed);
  visit(side_.type, [&]<class T>(std::type_identity<T>) {
    forEachRow([&](std::byte* row, std::size_t rowBytes) {
      fillRow<T>(row, rowBytes, [&] { return extreme<T>(generator); });
    });
  });
}

std::uint64_t Image::digest() const {
  std::uint64_t hash = 0xcbf29ce484222325u;
  visit(side_.type, [&]<class T>(std::type_identity<T>) {
    forEachRow([&](const std::byte* row, std::size_t rowBytes) {
      if constexpr (std::numeric_limits<T>::is_iec559) {
        for (std::size_t i = 0; i < rowBytes; i += sizeof(T)) {
          T sample;
          std::memcpy(&sample, row + i, sizeof sample);
          if (std::isnan(sample)) sample = std::numeric_limits<T>::quiet_NaN();
          hash = fnv1a(hash, std::as_bytes(std::span(&sample, 1)));
        }
      } else {
        hash = fnv1a(hash, {row, rowBytes});
      }
    });
  });
  return hash;
}

}  // namespace zim::catalogue
