#include "tools/samples.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace zim::tool {
namespace {

using namespace catalogue;

struct Range {
  double black, white;
};

Range rangeOf(SampleType type) {
  if (type == SampleType::u1) return {0, 1};
  return visit(type, []<class T>(std::type_identity<T>) -> Range {
    if constexpr (std::numeric_limits<T>::is_integer) {
      return {std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
    }
    return {0, 1};
  });
}

// Fields of a packed pixel from bit 0 up, in the order of the colour word.
struct Packing {
  const char* digits;
  int bits[3];
};
constexpr Packing kPackings[] = {{"444", {4, 4, 4}}, {"555", {5, 5, 5}}, {"565", {5, 6, 5}}};

bool startsWith(const Side& side, const char* word) { return side.colourWord.starts_with(word); }
bool bluesFirst(const Side& side) { return startsWith(side, "BGR") || startsWith(side, "SBGR"); }
bool redsFirst(const Side& side) {
  return side.colourWord.empty() || startsWith(side, "RGB") || startsWith(side, "Color");
}

const Packing* packingOf(const Side& side) {
  if (!bluesFirst(side) && !redsFirst(side)) return nullptr;
  const auto* found =
      std::ranges::find_if(kPackings, [&](const Packing& p) { return side.colourWord.ends_with(p.digits); });
  return found == std::end(kPackings) ? nullptr : found;
}

// Where the colours red, green, blue (and alpha) lie among the channels.
int channelOf(const Side& side, int colour) { return bluesFirst(side) && colour < 3 ? 2 - colour : colour; }

double sampleAt(const std::byte* row, SampleType type, int i) {
  if (type == SampleType::u1) return std::to_integer<int>(row[i / 8] >> (7 - i % 8)) & 1;
  return visit(type, [&]<class T>(std::type_identity<T>) {
    T sample;
    std::memcpy(&sample, row + static_cast<std::size_t>(i) * sizeof sample, sizeof sample);
    return static_cast<double>(sample);
  });
}

void setSample(std::byte* row, SampleType type, int i, double value) {
  visit(type, [&]<class T>(std::type_identity<T>) {
    if constexpr (std::numeric_limits<T>::is_integer) {
      const Range range = rangeOf(type);
      value = std::round(value > range.black ? std::min(value, range.white) : range.black);
    }
    const T sample = static_cast<T>(value);
    std::memcpy(row + static_cast<std::size_t>(i) * sizeof sample, &sample, sizeof sample);
  });
}

using Channels = std::vector<Picture>;

// L, U and V as floats are in their own units. A model wider than the colours it comes from holds differences of them
// in all channels but the first.
Range rangeOfChannel(const Side& side, const Side& source, int channel) {
  if (side.colourWord.starts_with('Y') && bits(side.type) > bits(source.type)) {
    const Range colours = rangeOf(source.type);
    const double reach = colours.white - colours.black;
    return channel == 0 ? colours : Range{-reach, reach};
  }
  if (side.colourWord == "LUV" && side.type == SampleType::f32) {
    constexpr Range kRanges[] = {{0, 100}, {-134, 220}, {-140, 122}};
    return kRanges[std::min(channel, 2)];
  }
  return rangeOf(side.type);
}

Channels packedChannels(const Image& image, const Packing& packing) {
  const ZimiSize size = image.size();
  Channels channels(3, Picture(size.width, size.height, 1));
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      auto rest = static_cast<unsigned>(sampleAt(image.row(0, y), SampleType::u16, x));
      for (int c = 0; c < 3; ++c) {
        const unsigned white = (1u << packing.bits[c]) - 1;
        *channels[static_cast<std::size_t>(c)].pixel(x, y) =
            static_cast<float>(rest & white) / static_cast<float>(white);
        rest >>= packing.bits[c];
      }
    }
  }
  return channels;
}

// Luma, then both chroma channels at half the width. Four samples are two pixels, in the order of the colour word.
Channels pairedChannels(const Image& image) {
  const int luma = image.side().colourWord.starts_with("Cb") ? 1 : 0;
  const ZimiSize size = image.size();
  Channels channels = {Picture(size.width, size.height, 1)};
  const int pairs = static_cast<int>(image.rowBytes(0)) / 4;
  channels.resize(3, Picture(pairs, size.height, 1));
  for (int y = 0; y < size.height; ++y) {
    const auto sample = [&](int i) { return static_cast<float>(sampleAt(image.row(0, y), SampleType::u8, i) / 255); };
    for (int x = 0; x < std::min(size.width, static_cast<int>(image.rowBytes(0)) / 2); ++x) {
      *channels[0].pixel(x, y) = sample(2 * x + luma);
    }
    for (int x = 0; x < pairs; ++x) {
      *channels[1].pixel(x, y) = sample(4 * x + 1 - luma);
      *channels[2].pixel(x, y) = sample(4 * x + 3 - luma);
    }
  }
  return channels;
}

Channels channelsOf(const Image& image, const Side& source) {
  const Side& side = image.side();
  if (const Packing* packing = packingOf(side)) return packedChannels(image, *packing);
  if (side.layout == "C2") return pairedChannels(image);
  Channels channels;
  for (std::size_t p = 0; p < image.planes(); ++p) {
    const Plane& plane = side.planes[p];
    for (int s = 0; s < plane.usedSamples; ++s) {
      const Range range = rangeOfChannel(side, source, static_cast<int>(channels.size()));
      Picture& channel = channels.emplace_back(plane.groups(image.size().width), image.rows(p), 1);
      channel.deep = bits(side.type) > 8;
      for (int y = 0; y < channel.height; ++y) {
        for (int x = 0; x < channel.width; ++x) {
          const double sample = sampleAt(image.row(p, y), plane.type, x * plane.samples + s);
          *channel.pixel(x, y) = static_cast<float>((sample - range.black) / (range.white - range.black));
        }
      }
    }
  }
  return channels;
}

Picture interleaved(const Channels& channels, const Side& side) {
  const Picture& first = channels.front();
  Picture picture(first.width, first.height, static_cast<int>(channels.size()));
  picture.deep = first.deep;
  for (int c = 0; c < picture.channels; ++c) {
    const Picture& channel = channels[static_cast<std::size_t>(channelOf(side, c))];
    for (std::size_t i = 0; i < channel.samples.size(); ++i) {
      picture.samples[i * channels.size() + static_cast<std::size_t>(c)] = channel.samples[i];
    }
  }
  return picture;
}

Picture sideBySide(const Channels& channels) {
  int width = -kChannelGap, height = 0;
  for (const Picture& channel : channels) {
    width += kChannelGap + channel.width;
    height = std::max(height, channel.height);
  }
  Picture picture(width, height, 1);
  picture.deep = channels.front().deep;
  std::ranges::fill(picture.samples, 1.0f);
  int left = 0;
  for (const Picture& channel : channels) {
    for (int y = 0; y < channel.height; ++y) std::copy_n(channel.pixel(0, y), channel.width, picture.pixel(left, y));
    left += channel.width + kChannelGap;
  }
  return picture;
}

}  // namespace

bool holdsColours(const Side& side) {
  return (bluesFirst(side) || redsFirst(side)) && packingOf(side) == nullptr && side.layout.back() >= '3';
}

bool isMosaic(const Side& side) { return side.colourWord == "CFA"; }

Picture mosaicOf(const Picture& picture, ZimBayerGrid grid) {
  Picture mosaic(picture.width, picture.height, 1);
  mosaic.deep = picture.deep;
  for (int y = 0; y < picture.height; ++y) {
    for (int x = 0; x < picture.width; ++x) {
      const bool green = (((grid >> 1) ^ x ^ y) & 1) != 0, redRow = ((grid ^ y) & 1) != 0;
      const int colour = green ? 1 : redRow ? 0 : 2;
      *mosaic.pixel(x, y) = picture.pixel(x, y)[picture.channels < 3 ? 0 : colour];
    }
  }
  return mosaic;
}

void fill(Image& image, const Picture& picture) {
  const Side& side = image.side();
  const Range range = rangeOf(side.type);
  const bool planar = side.planes.size() > 1;
  const int channels = side.layout.back() - '0';
  for (int y = 0; y < picture.height; ++y) {
    for (int colour = 0; colour < channels; ++colour) {
      const int channel = channelOf(side, colour);
      std::byte* row = image.row(static_cast<std::size_t>(planar ? channel : 0), y);
      for (int x = 0; x < picture.width; ++x) {
        const double value = colour < picture.channels ? static_cast<double>(picture.pixel(x, y)[colour]) : 1.0;
        setSample(row, side.type, planar ? x : x * channels + channel,
                  range.black + value * (range.white - range.black));
      }
    }
  }
}

Picture show(const Image& image, const Side& source) {
  const Side& side = image.side();
  const Channels channels = channelsOf(image, source);
  if (channels.size() == 1) return channels.front();
  const bool colours = channels.size() > 2 && (bluesFirst(side) || redsFirst(side));
  return colours ? interleaved(channels, side) : sideBySide(channels);
}

}  // namespace zim::tool
