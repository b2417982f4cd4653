#include "reduce/error_diffusion.h"

#include <limits>
#include <memory>

#include "frame/team.h"
#include "reduce/noise.h"
#include "reduce/skewed_rows.h"

namespace zim {
inline namespace ZIM_TARGET_NAMESPACE {
namespace {

// ---- Errors that reach a pixel: sums in single precision, in this order ----

// e = (((p[x+1] * 3 + p[x] * 5) + p[x-1]) + c[x-1] * 7) / 16, of the row above p and the row itself c. The sixteenth is
// taken of every term instead, which scales all roundings alike: errors are whole multiples of 2^-50 or more, so that
// nothing falls below the normal numbers.
struct FloydSteinberg {
  static constexpr int depth = 1;

  template <class Near>
  ZIM_INLINE auto operator()(const Near& near) const {
    const auto above = (near(1, 1) * 0.1875F + near(1, 0) * 0.3125F) + near(1, -1) * 0.0625F;
    return above + near(0, -1) * 0.4375F;
  }
};

// Jarvis, Judice and Ninke: 7, 5, 3, 1 over 48. Stucki: 8, 4, 2, 1 over 42.
struct TwoRowsDown {
  static constexpr int depth = 2;
  Zim32f w1, w2, w3, norm;

  explicit TwoRowsDown(ZimDitherKind kind) {
    const bool isStucki = kind == zimDitherKindStucki;
    w1 = isStucki ? 8.0F : 7.0F;
    w2 = isStucki ? 4.0F : 5.0F;
    w3 = isStucki ? 2.0F : 3.0F;
    norm = isStucki ? 0.023809524F : 0.020833334F;
  }

  template <class Near>
  ZIM_INLINE auto operator()(const Near& near) const {
    const auto a = ((near(2, -1) + near(2, 1)) + near(1, -2)) + near(1, 2);
    const auto b = ((near(2, 0) + near(1, -1)) + near(1, 1)) + near(0, -2);
    const auto d = (near(1, 0) + near(0, -1)) * w1 + (near(2, -2) + near(2, 2));
    return (a * w3 + (b * w2 + d)) * norm;
  }
};

// ---- Rule of one pixel ----

// u, the value with the errors that reach it, lies between the levels a = n step and a + step. It takes the upper one
// if it is more above the lower than the threshold, and leaves what it is above the one it took; at the limits it
// leaves nothing.
template <class Errors, bool withNoise>
struct Rule {
  using Element = Zim32f;
  static constexpr int depth = Errors::depth;
  static constexpr bool usesThresholds = withNoise;
  // Below black with any errors. With a NaN among them the error is one, but so is that of the pixel beside, which
  // reaches whatever this one does.
  static constexpr Zim32f outside = -std::numeric_limits<Zim32f>::infinity();

  Errors errors;
  Zim32f step, scale, black, white, middle;
  Zim32f storedWhite;

  Rule(const Diffusion& d, const Errors& errorsOf)
      : errors(errorsOf),
        step(d.levels.step),
        scale(d.levels.scale),
        black(d.black),
        white(d.white),
        middle(d.levels.step * 0.5F),
        storedWhite(d.stored.white) {}

  template <int N, class Near>
  ZIM_INLINE Outcome<Lane<Zim32f, N>> operator()(Lane<Zim32f, N> value, Lane<Zim32f, N> threshold,
                                                 const Near& near) const {
    using Lanes = Lane<Zim32f, N>;
    const auto masked = [](Lane<Zim32s, N> mask, Lanes a)
                            ZIM_LAMBDA { return bitsAs<Zim32f>(mask & bitsAs<Zim32s>(a)); };
    const Lanes u = value + errors(near);
    const Lanes lower = toFloat(truncate(u * scale)) * step;
    const auto takesUpper = u - lower > (withNoise ? threshold : Lanes(middle));
    const Lanes taken = lower + masked(takesUpper, Lanes(step));
    const auto isWhite = u >= Lanes(white), isBlack = u < Lanes(black);
    return {masked(~(isWhite | isBlack), u - taken), masked(~isBlack, select(isWhite, Lanes(storedWhite), taken))};
  }
};

// ---- One channel ----

// Rows of a channel from y on.
struct ChannelImage {
  const Diffusion& d;
  const NoiseTables& noise;
  std::ptrdiff_t channel;
  Zim32s y;

  ZIM_INLINE void expect(int row, std::ptrdiff_t x, std::ptrdiff_t count) const {
    fetch(at(d.source, row, x), (count - 1) * d.source.pixelBytes);
    fetch(at(d.destination, row, x), (count - 1) * d.destination.pixelBytes);
  }
  void read(int row, std::ptrdiff_t x, std::ptrdiff_t count, Zim32f* to) const {
    d.read(at(d.source, row, x), count, d.size.width - x - count, to);
  }
  void readThresholds(int row, std::ptrdiff_t x, std::ptrdiff_t count, Zim32f* to) const {
    noise.read(x, y + row, count, to);
  }
  void write(int row, std::ptrdiff_t x, std::ptrdiff_t count, const Zim32f* from) const {
    d.write(from, count, d.stored, at(d.destination, row, x));
  }

 private:
  template <class Byte>
  Byte* at(const ChannelRows<Byte>& rows, int row, std::ptrdiff_t x) const {
    return rows.first + channel * rows.sampleBytes + std::ptrdiff_t{y + row} * rows.step + x * rows.pixelBytes;
  }
};

// Channels one after another. Errors are cleared ahead of the first only: the last rows of a channel reach into the
// first of the next.
template <class Errors, bool withNoise>
[[gnu::noinline]] void diffuseChannels(const Diffusion& d, const Errors& errors, const NoiseTables& noise, int first,
                                       int count, const std::array<Zim32f*, Errors::depth>& above) {
  using Rows = SkewedRows<Rule<Errors, withNoise>>;
  Rows rows(Rule<Errors, withNoise>(d, errors), d.size.width, above);
  for (int channel = first; channel < first + count; ++channel) {
    for (Zim32s rest = d.size.height; rest > 0; rest -= Rows::rows) {
      rows.run(std::min(Rows::rows, rest), ChannelImage{d, noise, channel, d.size.height - rest});
    }
  }
}

// ---- Sections: channels that share the rows of errors ----

struct Release {
  void operator()(Zim32f* memory) const { zimFree(memory); }
};

// The size of the team that runs for many channels. Four threads or more count as one less for three channels.
int teamFor(int channels) {
  int size = 1;
  if (channels == 1) return size;
  inTeam(wantedTeamSize(), [&](int thread, int team) {
    if (thread == 0) size = team;
  });
  return channels == 3 && size >= 4 ? size - 1 : size;
}

// As many sections as threads, none without a channel; the first ones take what is left over.
template <class Section>
void inSections(int team, int channels, const Section& section) {
  const int sections = std::min(team, channels), share = channels / sections, more = channels % sections;
  const auto run = [&](int i) { section(i, i * share + std::min(i, more), share + (i < more ? 1 : 0)); };
  if (sections == 1) return run(0);
  shareOut(sections, sections, run);
}

template <class Errors>
ZimResult diffuse(const Diffusion& d, const Errors& errors) {
  NoiseTables noise;
  if (d.noise > 0) {
    const auto bound = [&](Zim32s percent) { return static_cast<Zim32f>(percent) * d.levels.step / 100.0F; };
    if (const ZimResult failure = noise.make(bound(50 - d.noise), bound(50 + d.noise)); failure != zimResultOk) {
      return failure;
    }
  }
  const int team = teamFor(d.channels);
  // Every thread's block has room for the current row, too, and for a margin around each.
  const std::size_t width = static_cast<std::size_t>(d.size.width),
                    rowFloats = Errors::depth == 1 ? width + 2 : ((width + 3) & ~std::size_t{3}) + 4;
  const std::size_t blockFloats = (Errors::depth + 1) * rowFloats;
  const std::unique_ptr<Zim32f[], Release> blocks(
      static_cast<Zim32f*>(zimMalloc(static_cast<std::size_t>(team) * blockFloats * sizeof(Zim32f))));
  if (blocks == nullptr) {
    noise.abandon();
    return zimResultNoMemory;
  }
  inSections(team, d.channels, [&](int section, int first, int count) {
    Zim32f* const block = &blocks[static_cast<std::size_t>(section) * blockFloats];
    std::fill_n(block, blockFloats, 0.0F);
    std::array<Zim32f*, Errors::depth> above;
    for (std::size_t up = 0; up < above.size(); ++up) above[up] = block + up * rowFloats;
    if (d.noise > 0) {
      diffuseChannels<Errors, true>(d, errors, noise, first, count, above);
    } else {
      diffuseChannels<Errors, false>(d, errors, noise, first, count, above);
    }
  });
  return zimResultOk;
}

}  // namespace

}  // namespace ZIM_TARGET_NAMESPACE

ZimResult diffuse(const Diffusion& d) {
  if (d.kind == zimDitherKindFloydSteinberg) return diffuse(d, FloydSteinberg());
  return diffuse(d, TwoRowsDown(d.kind));
}

}  // namespace zim
