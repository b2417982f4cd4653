#include "reduce/noise.h"

#include <algorithm>

#include "frame/lanes/convert.h"

namespace zim {
namespace {

constexpr Zim32u kMultiplier = 69069, kIncrement = 1013904243;

}  // namespace

template <class T>
ZimResult uniformNoiseInit(UniformNoise<T>** ppState, T low, T high, Zim32u seed) {
  using Bound = typename UniformNoise<T>::Bound;
  if (ppState == nullptr) return zimResultNullPointer;
  auto* const state = static_cast<UniformNoise<T>*>(zimMalloc(sizeof(UniformNoise<T>)));
  if (state == nullptr) return zimResultNoMemory;
  const Zim32u b = seed * kMultiplier + kIncrement;
  *state = {.identifier = UniformNoise<T>::kind,
            .seed = seed,
            .low = low,
            .high = high,
            .mid = static_cast<double>(Bound{low} + Bound{high}) * 0.5,
            // A little above 2^-32.
            .scale = static_cast<double>(Bound{high} - Bound{low}) * 2.3283064365387e-10,
            .lcg = 1131199209,
            .a = seed,
            .b = b,
            .c = b * kMultiplier + kIncrement,
            .carry = -1};
  *ppState = state;
  return zimResultOk;
}

template <class T>
ZimResult uniformNoiseFill(T* pDst, Zim32s count, UniformNoise<T>* pState) {
  if (pDst == nullptr || pState == nullptr) return zimResultNullPointer;
  if (count < 1) return zimResultBadSize;
  if (pState->identifier != UniformNoise<T>::kind) return zimResultBadContext;
  UniformNoise<T> state = *pState;
  for (Zim32s i = 0; i < count; ++i) {
    Zim32u t = state.b - state.c + static_cast<Zim32u>(state.carry);
    state.carry = static_cast<Zim32s>(t) < 0 ? -1 : 0;
    if (state.carry != 0) t -= 18;
    state.lcg = state.lcg * kMultiplier + kIncrement;
    state.c = state.b;
    state.b = state.a;
    state.a = t;
    const double value = static_cast<Zim32s>(t + state.lcg) * state.scale + state.mid;
    if constexpr (std::is_integral_v<T>) {
      pDst[i] = static_cast<T>(truncate(Lane<Zim64f, 1>(value)).v);
    } else {
      pDst[i] = static_cast<T>(value);
    }
  }
  *pState = state;
  return zimResultOk;
}

template <class T>
ZimResult uniformNoiseFree(UniformNoise<T>* pState) {
  if (pState == nullptr) return zimResultNullPointer;
  if (pState->identifier != UniformNoise<T>::kind) return zimResultBadContext;
  zimFree(pState);
  return zimResultOk;
}

#define ZIM_UNIFORM_NOISE(T)                                              \
  template ZimResult uniformNoiseInit(UniformNoise<T>**, T, T, Zim32u);   \
  template ZimResult uniformNoiseFill(T* pDst, Zim32s, UniformNoise<T>*); \
  template ZimResult uniformNoiseFree(UniformNoise<T>*);
ZIM_UNIFORM_NOISE(Zim16s)
ZIM_UNIFORM_NOISE(Zim32f)

template <class T>
ZimResult NoiseTables::fillTable(Memory<T[]>& table, Memory<UniformNoise<T>>& state, T low, T high) {
  UniformNoise<T>* made = nullptr;
  const ZimResult result = uniformNoiseInit<T>(&made, low, high, 0);
  state.reset(made);
  return result == zimResultOk ? uniformNoiseFill(table.get(), kEntries, made) : result;
}

ZimResult NoiseTables::make(Zim32f low, Zim32f high) {
  valueTable_.reset(static_cast<Zim32f*>(zimMalloc(kEntries * sizeof(Zim32f))));
  if (valueTable_ == nullptr) return zimResultNoMemory;
  indexTable_.reset(static_cast<Zim16s*>(zimMalloc(kEntries * sizeof(Zim16s))));
  if (indexTable_ == nullptr) return zimResultNoMemory;
  if (const ZimResult result = fillTable(indexTable_, indexState_, Zim16s{0}, Zim16s{kEntries});
      result != zimResultOk) {
    return result;
  }
  if (const ZimResult result = fillTable(valueTable_, valueState_, low, high); result != zimResultOk) return result;
  for (std::size_t i = 0; i < kEntries; ++i) {
    values_[i] = values_[i + kEntries] = valueTable_[i];
    places_[i] = static_cast<Zim16u>((static_cast<std::size_t>(indexTable_[i]) + i) % kEntries);
  }
  return zimResultOk;
}

void NoiseTables::abandon() {
  static_cast<void>(valueTable_.release());
  static_cast<void>(indexTable_.release());
  static_cast<void>(indexState_.release());
  static_cast<void>(valueState_.release());
}

void NoiseTables::read(std::ptrdiff_t x, Zim32s y, std::ptrdiff_t count, Zim32f* to) const {
  const Zim32f* const values = &values_[2 * static_cast<Zim32u>(y) % kEntries];
  for (std::ptrdiff_t done = 0; done < count;) {
    const std::ptrdiff_t column = (x + done) % kEntries;
    const Zim16u* const places = &places_[static_cast<std::size_t>(column)];
    const std::ptrdiff_t end = std::min(count, done + kEntries - column);
    const auto readOne = [&](std::ptrdiff_t i) ZIM_LAMBDA { to[i] = values[places[i - done]]; };
    std::ptrdiff_t i = done;
    for (; i <= end - 8; i += 8) forChannels<8>([&](auto k) ZIM_LAMBDA { readOne(i + std::ptrdiff_t{k}); });
    for (; i < end; ++i) readOne(i);
    done = end;
  }
}

}  // namespace zim
