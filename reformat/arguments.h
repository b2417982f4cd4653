// Arguments of conversions between chroma layouts, and the bodies of their exports.
#pragma once

#include "frame/arguments.h"
#include "frame/entry.h"
#include "reformat/strips.h"

namespace zim {

// One side of a call, as its arguments say: a pointer and a step for each plane, or arrays of both.
template <class Byte>
struct ChromaSide {
  std::array<Byte*, 3> plane = {};
  std::array<Zim32s, 3> step = {};
  bool pointersGiven = true;  // as passed, arrays by their own address
  bool planesGiven = true;    // those inside an array
  bool stepsGiven = true;     // the array of steps

  template <class Sample>
  ChromaSide(Sample* packed, Zim32s packedStep)
      : plane{bytes(packed)}, step{packedStep}, pointersGiven(packed != nullptr) {}

  template <class Sample>
  ChromaSide(Sample* luma, Zim32s lumaStep, Sample* chroma, Zim32s chromaStep)
      : plane{bytes(luma), bytes(chroma)},
        step{lumaStep, chromaStep},
        pointersGiven(luma != nullptr && chroma != nullptr) {}

  template <class Sample>
  ChromaSide(Sample* const* planes, const Zim32s* steps)
      : pointersGiven(planes != nullptr), stepsGiven(steps != nullptr) {
    for (std::size_t p = 0; p < 3; ++p) {
      if (pointersGiven) plane[p] = bytes(planes[p]);
      if (stepsGiven) step[p] = steps[p];
    }
    planesGiven = plane[0] != nullptr && plane[1] != nullptr && plane[2] != nullptr;
  }

  ChromaImage<Byte> image() const { return {plane, {step[0], step[1], step[2]}}; }

 private:
  template <class Sample>
  static Byte* bytes(Sample* p) {
    return reinterpret_cast<Byte*>(p);
  }
};

// The sizes that an export accepts; a least height of 0 is not tested, and rows fewer than 1 are none.
struct Sizes {
  ZimiSize least;
  ZimiSize multiple = {1, 1};

  constexpr bool accept(ZimiSize size) const {
    return size.width >= least.width && (least.height == 0 || size.height >= least.height) &&
           size.width % multiple.width == 0 && size.height % multiple.height == 0;
  }
};

struct ChromaCall {
  ChromaSide<const std::byte> source;
  ChromaSide<std::byte> destination;
  ZimiSize roiSize;
  Sizes sizes;

  bool pointersGiven() const { return source.pointersGiven && destination.pointersGiven; }
  bool planesGiven() const { return source.planesGiven && destination.planesGiven; }
  bool stepArraysGiven() const { return source.stepsGiven && destination.stepsGiven; }
  bool sizeAccepted() const { return sizes.accept(roiSize); }
};

}  // namespace zim

// Parameters and arguments of one side in each layout.
#define ZIM_SOURCE_C2 const Zim8u *pSrc, Zim32s srcStep
#define ZIM_SOURCE_P2 const Zim8u *pSrcY, Zim32s srcYStep, const Zim8u *pSrcCbCr, Zim32s srcCbCrStep
#define ZIM_SOURCE_P3 const Zim8u *const *pSrc, const Zim32s *srcStep
#define ZIM_DESTINATION_C2 Zim8u *pDst, Zim32s dstStep
#define ZIM_DESTINATION_P2 Zim8u *pDstY, Zim32s dstYStep, Zim8u *pDstCbCr, Zim32s dstCbCrStep
#define ZIM_DESTINATION_P3 Zim8u *const *pDst, const Zim32s *dstStep
#define ZIM_FROM_C2 pSrc, srcStep
#define ZIM_FROM_P2 pSrcY, srcYStep, pSrcCbCr, srcCbCrStep
#define ZIM_FROM_P3 pSrc, srcStep
#define ZIM_TO_C2 pDst, dstStep
#define ZIM_TO_P2 pDstY, dstYStep, pDstCbCr, dstCbCrStep
#define ZIM_TO_P3 pDst, dstStep

// The body of an export: layouts of its source and its destination (C2, P2 or P3), further parameters in parentheses,
// sizes; then its result, an expression of the call. Tests come first of all.
#define ZIM_CHROMA_CONVERSION(name, SourceLayout, DestinationLayout, parameters, Tests, sizes, ...)      \
  ZimResult ZIM_BODY(name)(ZIM_SOURCE_##SourceLayout, ZIM_DESTINATION_##DestinationLayout,               \
                           ZimiSize roiSize ZIM_AND parameters) {                                        \
    const zim::ChromaCall call{{ZIM_FROM_##SourceLayout}, {ZIM_TO_##DestinationLayout}, roiSize, sizes}; \
    if (const ZimResult failure = Tests::check(call); failure != zimResultOk) return failure;            \
    return __VA_ARGS__;                                                                                  \
  }
