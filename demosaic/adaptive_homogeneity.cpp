// RGB from a mosaic by two candidates, one with green interpolated along rows (H) and one along columns (V): each pixel
// comes whole from the one that is the more homogeneous about it.
//
// The candidates stream through the caller's scratch, a row of each stage at a time. A stage is a pure function from
// rows to rows, as wide as the stages after it need:
//     green           a sample about the region in each direction: three rows and columns beyond it
//     red and blue    two beyond; from the mosaic and the candidate's own green
//     perceptual      the same, for the row whose homogeneity comes next
//     homogeneity     one beyond
//     output          the region
#include "demosaic/mosaic.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {
namespace {

// Half the sum of two colour samples, from which half the sum of two others can be taken without more bits.
template <class T, int N>
struct MeanOfTwo {
  Lane<T, N> mean, odd;  // rounded down; what was lost by that

  ZIM_INLINE MeanOfTwo(Lane<T, N> a, Lane<T, N> b) : mean(averageUp(a, b)), odd((a ^ b) & Lane<T, N>(1)) {
    mean = mean - odd;
  }

  // start + ((a + b - c - d) >> 1), saturated. An odd a + b makes up for the half that is lost of c + d: their mean
  // counts rounded down then, else up.
  ZIM_INLINE Lane<T, N> lessMean(Lane<T, N> c, Lane<T, N> d, Lane<T, N> start) const {
    const auto other = averageUp(c, d) - ((c ^ d) & odd);
    return subtractSaturated(addSaturated(start, subtractSaturated(mean, other)), subtractSaturated(other, mean));
  }
};

// Of the four nearest neighbours that are diagonal, by distance.
template <class At>
ZIM_INLINE auto sumOfCorners(const At& at) {
  return (widen(at(-1, -1)) + widen(at(1, -1))) + (widen(at(-1, 1)) + widen(at(1, 1)));
}

// Green between two neighbours a and b and, twice as far away, two samples of the colour of the sample between them:
//   t = ((2 sample - a2 - b2) >> 2) + ((a + b) >> 1), limited to what lies between a and b
// The first term is (sample - (a2 + b2 + 1 >> 1)) >> 1, by halves of its positive or its negative part. Beyond the
// range of samples t is beyond a and b, too: it may saturate first.
template <class T, int N>
ZIM_INLINE Lane<T, N> greenBetween(Lane<T, N> sample, Lane<T, N> a, Lane<T, N> b, Lane<T, N> a2, Lane<T, N> b2) {
  const auto away = averageUp(a2, b2);
  const auto up = subtractSaturated(sample, away) >> 1;
  const auto down = averageUp(subtractSaturated(away, sample), Lane<T, N>(0));
  const auto t = subtractSaturated(addSaturated(MeanOfTwo(a, b).mean, up), down);
  return larger(smaller(a, b), smaller(t, larger(a, b)));
}

// Y = (66 R + 129 G + 25 B + 128) >> 8       range of 8u: [0, 219]      of 16u: [0, 56319]
// U = (-38 R - 74 G + 112 B + 128) >> 8                   [-112, 112]           [-28672, 28671]
// V = (112 R - 94 G - 18 B + 128) >> 8                    [-112, 112]           [-28672, 28671]
// Only differences count: a constant is added to each so that they are samples without sign. The weights of U and V add
// up to zero, so that these follow from R - G and B - G.
template <int N>
ZIM_INLINE Pixels<Zim8u, N, 3> perceptual(const Pixels<Zim8u, N, 3>& rgb) {
  const auto times = [](Lane<Zim16s, N> a, Zim16s weight) ZIM_LAMBDA { return a * factor<Zim16s, N>(weight); };
  // Sums of luma reach beyond 32767, and all are without sign once their constant is in.
  const auto sample = [](Lane<Zim16s, N> sum, Zim16u bias)
                          ZIM_LAMBDA { return narrow<Zim8u>(bitsAs<Zim16s>((bitsAs<Zim16u>(sum) + bias) >> 8)); };
  const auto g = widen(rgb[1]), red = widen(rgb[0]) - g, blue = widen(rgb[2]) - g;
  constexpr Zim16u kMiddle = 128 << 8;
  return {sample(times(red, 66) + times(g, 66 + 129 + 25) + times(blue, 25), 128),
          sample(times(blue, 112) - times(red, 38), kMiddle + 128),
          sample(times(red, 112) - times(blue, 18), kMiddle + 128)};
}
// Samples less 32768 have a sign, as products of 16 bits want it. It takes 220 * 32768 = 28160 << 8 from the sum of
// luma, and nothing from the others, whose weights add up to zero.
template <int N>
ZIM_INLINE Pixels<Zim16u, N, 3> perceptual(const Pixels<Zim16u, N, 3>& rgb) {
  const Lane<Zim16u, N> middle = 32768;
  const auto r = bitsAs<Zim16s>(rgb[0] ^ middle), g = bitsAs<Zim16s>(rgb[1] ^ middle);
  const auto b = bitsAs<Zim16s>(rgb[2] ^ middle);
  const auto sum = [&](Zim16s ofRed, Zim16s ofGreen, Zim16s ofBlue) ZIM_LAMBDA {
    const auto products = pairDot(r, g, ofRed, ofGreen) + pairDot(b, Lane<Zim16s, N>(1), ofBlue, 128);
    return bitsAs<Zim16u>(narrow<Zim16s>(products >> 8)) ^ middle;
  };
  return {sum(66, 129, 25), sum(-38, -74, 112), sum(112, -94, -18)};
}

// How far apart two pixels are: |Y - Y'| and (U - U')^2 + (V - V')^2. The latter stays below 57,600 for 8u, whose
// colours are no more than samples; for 16u it wraps at 32 bits and counts with its sign.
template <class T, int N>
struct Distance {
  using Chroma = decltype(square(Lane<T, N>()));
  Lane<T, N> luma;
  Chroma chroma;

  ZIM_INLINE static Distance between(const Pixels<T, N, 3>& a, const Pixels<T, N, 3>& b) {
    return {distance(a[0], b[0]), square(distance(a[1], b[1])) + square(distance(a[2], b[2]))};
  }
};

template <class T, int N>
ZIM_INLINE Distance<T, N> larger(const Distance<T, N>& a, const Distance<T, N>& b) {
  return {larger(a.luma, b.luma), larger(a.chroma, b.chroma)};
}
template <class T, int N>
ZIM_INLINE Distance<T, N> smaller(const Distance<T, N>& a, const Distance<T, N>& b) {
  return {smaller(a.luma, b.luma), smaller(a.chroma, b.chroma)};
}

// A pixel's distances from its neighbours, in one candidate.
template <class T, int N>
struct Surroundings {
  Distance<T, N> left, right, above, below;

  // Less the number of neighbours within the limit.
  ZIM_INLINE Lane<SignedOf<T>, N> lessWithin(const Distance<T, N>& limit) const {
    const auto isWithin = [&](const Distance<T, N>& d) ZIM_LAMBDA {
      const auto lumaWithin = d.luma <= limit.luma;
      if constexpr (std::is_signed_v<typename Distance<T, N>::Chroma::Element>) {
        return lumaWithin & ~narrow<SignedOf<T>>(d.chroma > limit.chroma);  // a quicker comparison than <=
      } else {
        return lumaWithin & narrow<SignedOf<T>>(d.chroma <= limit.chroma);
      }
    };
    return isWithin(left) + isWithin(right) + isWithin(above) + isWithin(below);
  }
};

// By how many neighbours more H is homogeneous than V: -4 to 4. The limit is the lesser of what the candidates have
// along their own directions.
template <class T, int N>
ZIM_INLINE Lane<SignedOf<T>, N> homogeneity(const Surroundings<T, N>& h, const Surroundings<T, N>& v) {
  const auto limit = smaller(larger(h.left, h.right), larger(v.above, v.below));
  return v.lessWithin(limit) - h.lessWithin(limit);
}

// From where the sum of homogeneities is below zero (V) and where it is zero, so that the pixel on the left decides:
// a carry through the ties. Bits from the lowest up are pixels from the left on; `before` is the decision ahead of
// them.
ZIM_INLINE std::uint64_t decided(std::uint64_t negative, std::uint64_t tie, bool before) {
  const std::uint64_t passing = negative | tie;
  const std::uint64_t carries = (passing + negative + (before ? 1 : 0)) ^ passing ^ negative;
  return negative | (tie & carries);
}

enum Candidate { H, V };
constexpr Candidate kCandidates[] = {H, V};

// The caller's rows, which planes of the candidates share: each has as many as are still needed, row by row in turn. Of
// the 30 that the caller lends, 29 are in use.
struct Scratch {
  struct Plane {
    int first, rows;
  };
  static constexpr Plane green(Candidate c) { return {4 * c, 4}; }
  static constexpr Plane red(Candidate c) { return {8 + 6 * c, 3}; }
  static constexpr Plane blue(Candidate c) { return {11 + 6 * c, 3}; }
  static constexpr Plane homogeneity() { return {20, 3}; }
  static constexpr Plane perceptual(Candidate c, std::size_t channel) {
    return {23 + 3 * c + static_cast<int>(channel), 1};
  }

  std::byte* memory;
  std::ptrdiff_t step;

  std::byte* row(Plane plane, std::ptrdiff_t number) const {
    return memory + (plane.first + number % plane.rows) * step;
  }
};

// One call. Rows and columns of candidates count from the first of the green planes, three before the region's first.
template <class T>
class Demosaicing {
 public:
  Demosaicing(const Mosaic<T>& mosaic, Colours colours, const ZimiRegion& region, Scratch scratch)
      : mosaic_(mosaic),
        colours_(colours),
        left_(std::ptrdiff_t{region.x} - kMargin),
        top_(std::ptrdiff_t{region.y} - kMargin),
        columns_(region.width + 2 * kMargin),
        scratch_(scratch) {}

  void run(std::byte* destination, std::ptrdiff_t step, std::ptrdiff_t height) const {
    for (std::ptrdiff_t row = 0; row < height + 2 * kMargin; ++row) {
      makeGreen(row);
      if (row >= 2) makeRedAndBlue(row - 1);
      if (row >= 4) makeHomogeneity(row - 2);
      if (row >= 6) write(row - 3, destination + (row - 6) * step);
    }
  }

 private:
  static constexpr std::ptrdiff_t kMargin = 3;
  static constexpr int kBlock = kLanes<T>;
  using Signed = SignedOf<T>;

  template <int N, class Type = T>
  ZIM_INLINE static Lane<Type, N> at(const std::byte* row, std::ptrdiff_t column) {
    return load<Type, N, 1>(row + column * std::ptrdiff_t{sizeof(Type)})[0];
  }
  template <class Type, int N>
  ZIM_INLINE static void put(std::byte* row, std::ptrdiff_t column, Lane<Type, N> samples) {
    store<Type, N, 1>(row + column * std::ptrdiff_t{sizeof(Type)}, {samples});
  }

  // body(sites, column, mask of green sites) over the columns of a row from `margin` on to as far from its end.
  template <int reach, class Body>
  ZIM_INLINE void forSites(std::ptrdiff_t row, std::ptrdiff_t margin, const Body& body) const {
    const std::ptrdiff_t y = top_ + row;
    mosaic_.template forSites<reach>(y, left_ + margin, left_ + columns_ - margin, [&](const auto& sites) ZIM_LAMBDA {
      body(sites, sites.x - left_, colours_.template greens<T, std::decay_t<decltype(sites)>::lanes>(sites.x, y));
    });
  }

  [[gnu::noinline]] void makeGreen(std::ptrdiff_t row) const {
    std::byte* const h = scratch_.row(Scratch::green(H), row);
    std::byte* const v = scratch_.row(Scratch::green(V), row);
    forSites<2>(row, 0, [&](const auto& s, std::ptrdiff_t column, const auto isGreen) ZIM_LAMBDA {
      const auto sample = s(0, 0);
      put(h, column, select(isGreen, sample, greenBetween(sample, s(-1, 0), s(1, 0), s(-2, 0), s(2, 0))));
      put(v, column, select(isGreen, sample, greenBetween(sample, s(0, -1), s(0, 1), s(0, -2), s(0, 2))));
    });
  }

  // A colour is green plus the mean difference of colour and green at the neighbours that have the colour: at green
  // sites those left and right, or above and below, elsewhere those at the corners. Differences are rounded down.
  [[gnu::noinline]] void makeRedAndBlue(std::ptrdiff_t row) const {
    const bool redRow = colours_.redRow(top_ + row);
    struct Planes {
      std::array<const std::byte*, 3> green;
      std::byte *own, *other;  // of the row's red or blue sites, and the other of the two
    };
    const auto planesOf = [&](Candidate c) -> Planes {
      std::byte* const red = scratch_.row(Scratch::red(c), row);
      std::byte* const blue = scratch_.row(Scratch::blue(c), row);
      const auto green = [&](std::ptrdiff_t dy) { return scratch_.row(Scratch::green(c), row + dy); };
      return {{green(-1), green(0), green(1)}, redRow ? red : blue, redRow ? blue : red};
    };
    const Planes h = planesOf(H), v = planesOf(V);
    forSites<1>(row, 1, [&](const auto& s, std::ptrdiff_t column, const auto isGreen) ZIM_LAMBDA {
      constexpr int N = std::decay_t<decltype(s)>::lanes;
      const MeanOfTwo across(s(-1, 0), s(1, 0)), down(s(0, -1), s(0, 1));
      const auto corners = sumOfCorners(s);
      const auto make = [&](const Planes& planes) ZIM_LAMBDA {
        const auto g = [&](int dx, int dy)
                           ZIM_LAMBDA { return at<N>(planes.green[static_cast<std::size_t>(dy + 1)], column + dx); };
        const auto green = g(0, 0);
        put(planes.own, column, select(isGreen, across.lessMean(g(-1, 0), g(1, 0), green), s(0, 0)));
        put(planes.other, column,
            select(isGreen, down.lessMean(g(0, -1), g(0, 1), green),
                   narrow<T>(widen(green) + ((corners - sumOfCorners(g)) >> 2))));
      };
      make(h);
      make(v);
    });
  }

  // A candidate's planes of red, green and blue in one row.
  struct Colour {
    std::array<const std::byte*, 3> rows;
  };
  Colour colour(Candidate c, std::ptrdiff_t row) const {
    return {{scratch_.row(Scratch::red(c), row), scratch_.row(Scratch::green(c), row),
             scratch_.row(Scratch::blue(c), row)}};
  }
  template <int N>
  ZIM_INLINE static Pixels<T, N, 3> colourAt(const Colour& colour, std::ptrdiff_t column) {
    return perChannel<3>([&](auto c) ZIM_LAMBDA { return at<N>(colour.rows[c], column); });
  }

  [[gnu::noinline]] void makePerceptual(std::ptrdiff_t row) const {
    for (const Candidate c : kCandidates) {
      const Colour from = colour(c, row);
      const auto to = perChannel<3>([&](auto channel) { return scratch_.row(Scratch::perceptual(c, channel), row); });
      forBlocks<kBlock>(1, columns_ - 1, [&](auto n, std::ptrdiff_t column) ZIM_LAMBDA {
        const auto samples = perceptual(colourAt<n>(from, column));
        forChannels<3>([&](auto channel) ZIM_LAMBDA { put(to[channel], column, samples[channel]); });
      });
    }
  }

  [[gnu::noinline]] void makeHomogeneity(std::ptrdiff_t row) const {
    makePerceptual(row);
    struct Rows {
      Colour above, below, middle;  // the last in perceptual coordinates
    };
    const auto rowsOf = [&](Candidate c) -> Rows {
      const auto middle = [&](std::size_t channel) { return scratch_.row(Scratch::perceptual(c, channel), row); };
      return {colour(c, row - 1), colour(c, row + 1), {{middle(0), middle(1), middle(2)}}};
    };
    const Rows h = rowsOf(H), v = rowsOf(V);
    std::byte* const to = scratch_.row(Scratch::homogeneity(), row);
    forBlocks<kBlock>(2, columns_ - 2, [&](auto n, std::ptrdiff_t column) ZIM_LAMBDA {
      const auto surroundings = [&](const Rows& rows) ZIM_LAMBDA {
        using Near = Distance<T, n>;
        const auto middle = colourAt<n>(rows.middle, column);
        return Surroundings<T, n>{Near::between(middle, colourAt<n>(rows.middle, column - 1)),
                                  Near::between(middle, colourAt<n>(rows.middle, column + 1)),
                                  Near::between(middle, perceptual(colourAt<n>(rows.above, column))),
                                  Near::between(middle, perceptual(colourAt<n>(rows.below, column)))};
      };
      put(to, column, homogeneity(surroundings(h), surroundings(v)));
    });
  }

  [[gnu::noinline]] void write(std::ptrdiff_t row, std::byte* destination) const {
    const std::byte* const homogeneity[] = {scratch_.row(Scratch::homogeneity(), row - 1),
                                            scratch_.row(Scratch::homogeneity(), row),
                                            scratch_.row(Scratch::homogeneity(), row + 1)};
    const Colour h = colour(H, row), v = colour(V, row);
    std::uint64_t decisions = 0;              // of the last block
    std::ptrdiff_t lastColumn = kMargin - 1;  // its first column
    forBlocks<kLanes<Zim8u>>(kMargin, columns_ - kMargin, [&](auto n, std::ptrdiff_t column) ZIM_LAMBDA {
      const auto sumOfRow = [&](const std::byte* r) ZIM_LAMBDA {
        return at<n, Signed>(r, column - 1) + at<n, Signed>(r, column) + at<n, Signed>(r, column + 1);
      };
      const auto sum = narrow<Zim8s>(sumOfRow(homogeneity[0]) + sumOfRow(homogeneity[1]) + sumOfRow(homogeneity[2]));
      const bool before = (decisions >> (column - 1 - lastColumn) & 1) != 0;
      decisions = decided(signBits(sum), signBits(sum == Lane<Zim8s, n>(0)), before);
      lastColumn = column;
      const auto isV = convert<Signed>(maskOfBits<n>(decisions));
      const auto ofH = colourAt<n>(h, column), ofV = colourAt<n>(v, column);
      store<T, n, 3>(destination + (column - kMargin) * std::ptrdiff_t{3 * sizeof(T)},
                     perChannel<3>([&](auto c) ZIM_LAMBDA { return select(isV, ofV[c], ofH[c]); }));
    });
  }

  Mosaic<T> mosaic_;
  Colours colours_;
  std::ptrdiff_t left_, top_, columns_;
  Scratch scratch_;
};

template <class T>
ZimResult demosaic(const T* pSrc, ZimiRegion region, ZimiSize srcSize, Zim32s srcStep, T* pDst, Zim32s dstStep,
                   ZimBayerGrid grid, T* pBuf, Zim32s bufStep) {
  if (const ZimResult failure = checkMosaic(pSrc, pDst, srcSize, 5, grid); failure != zimResultOk) return failure;
  region.x = std::max(region.x, 0);
  region.y = std::max(region.y, 0);
  region.width = static_cast<Zim32s>(std::min(std::int64_t{region.width}, std::int64_t{srcSize.width} - region.x));
  region.height = static_cast<Zim32s>(std::min(std::int64_t{region.height}, std::int64_t{srcSize.height} - region.y));
  if (region.width < 1 || region.height < 1) return zimResultOk;
  const Mosaic<T> mosaic{reinterpret_cast<const std::byte*>(pSrc), srcStep, srcSize.width, srcSize.height};
  Demosaicing<T>(mosaic, {grid}, region, {reinterpret_cast<std::byte*>(pBuf), bufStep})
      .run(reinterpret_cast<std::byte*>(pDst), dstStep, region.height);
  return zimResultOk;
}

}  // namespace
}  // namespace ZIM_TARGET_NAMESPACE
}  // namespace zim

#define ZIM_DEMOSAIC(name, T)                                                                           \
  ZimResult ZIM_BODY(name)(const T* pSrc, ZimiRegion srcRoi, ZimiSize srcSize, Zim32s srcStep, T* pDst, \
                           Zim32s dstStep, ZimBayerGrid grid, T* pBuf, Zim32s bufStep) {                \
    return zim::demosaic(pSrc, srcRoi, srcSize, srcStep, pDst, dstStep, grid, pBuf, bufStep);           \
  }
ZIM_DEMOSAIC(zimiDemosaicAHD_8u_C1C3R, Zim8u)
ZIM_DEMOSAIC(zimiDemosaicAHD_16u_C1C3R, Zim16u)
