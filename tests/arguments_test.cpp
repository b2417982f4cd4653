// Which arguments an export refuses, with which result, and which result a call has that is wrong in two ways.
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "tests/canvas.h"
#include "tests/exports.h"

namespace zim::test {
namespace {

using namespace catalogue;

// Tests in the order in which exports make them. N: pointers as passed, arrays by their own address. Q: pointers inside
// arrays. S: size. s: size for being empty, ahead of the rest. T: steps. R: range of values.
struct Order {
  const char* pattern;
  std::string_view tests;
};

// The first row that matches counts.
constexpr Order kOrders[] = {
    {"zimi*ToGray_*", "NS"},
    {"zimiRGBToYCbCr_8u_@(C3P3R|AC4P3R)", "NQS"},
    {"zimiYCbCrToBGR_*", "NQS"},
    {"zimi@(RGBToY@(CbCr|UV)|Y@(CbCr|UV)ToRGB)_8u_@(C3R|AC4R|C3C4R)", "NS"},
    {"zimi@(RGBToY@(CbCr|UV)|Y@(CbCr|UV)ToRGB)_8u_*", "NSQ"},
    {"zimi*YCoCg*", "NQ"},
    {"zimiColorTwist*", "NQST"},
    {"zimiGamma*_@(8u|16u)_*", "NQST"},
    {"zimiGamma*_32f_*", "RNQST"},
    {"zimiToneMap*", "NS"},

    {"zimi*Dither_*_P3C3R", "NSQ"},
    {"zimi*Dither_*", "NS"},
    {"zimi*_Interlace_*", "NQS"},
    {"zimiYCrCb420ToBGR_Filter_*", "NSQ"},
    {"zimiYCbCr420ToYCrCb420?(_Filter)_8u_P2P3R", "NsQS"},
    {"zimiYC@(bCr|rCb)420To*_Filter_*", "NQS"},

    {"zimi@(RGB|BGR)565To@(RGB|BGR)_*", "NST"},
    {"zimi@(RGB|BGR)To@(RGB|BGR)565_*", "NST"},
    {"zimiRGB565ToYUV*", "NSQ"},
    {"zimi@(RGB|BGR)@(555|565)To*", "NQS"},
    {"zimiYCbCr411To@(RGB|BGR)*", "NQS"},
    {"zimi@(YCbCr|YUV)*To@(RGB|BGR)@(444|555|565)_*", "NSQ"},

    {"zimiRGBToYCbCr420_8u_C[34]P2R", "SN"},
    {"zimiYCbCr420ToRGB_8u_P2C[34]R", "SN"},
    {"zimiRGBToCbYCr422Gamma_*", "NST"},
    {"zimi@(RGBToY@(CbCr|CrCb)422_8u_P3C2R|RGBToYCbCr420_8u_C3P3R|RGBToYUV42*|BGRToYUV420_*)", "NSQ"},
    {"zimi@(RGB|BGR)To@(Y@(CbCr|CrCb)|CbYCr)4*", "NQS"},
    {"zimiYCbCr422ToBGR_8u_P3C3R", "NQS"},
    {"zimi@(Y@(CbCr|CrCb|UV)|CbYCr)4*To@(RGB|BGR)_*", "NSQ"},
    {"zimi@(Y@(CbCr|CrCb)|CbYCr)@(4|1)*", "NQS"},
};

// Pointers that are used without a test, or tested only in some calls.
bool isUntested(const Export& e, const Side& side, std::size_t plane) {
  if (&side != &e.destination) return false;
  return matches(e, "zimiToneMap*") || (matches(e, "zimiRGBToYUV_8u_AC4P4R") && plane == 3);
}

struct Fault {
  std::string what;
  std::function<void(Operands&)> inject;
};

constexpr Zim32s kLowest = std::numeric_limits<Zim32s>::min();

std::vector<Fault> faultsOf(const Export& e, char test, bool emptyTestedBefore) {
  std::vector<Fault> faults;
  const auto forEachSide = [&](const auto& visitor) {
    if (!e.inPlace) visitor(e.source, &Operands::source, "source");
    visitor(e.destination, &Operands::destination, "destination");
  };
  switch (test) {
    case 'N':
      forEachSide([&](const Side& side, Buffers Operands::*buffers, const std::string& name) {
        if (side.pointerArray) faults.push_back({name + " array", [=](Operands& o) { (o.*buffers).nullArray = true; }});
      });
      for (const Argument& argument : e.further) {
        if (!argument.array || argument.mayBeNull) continue;
        const auto name = argument.name;
        faults.push_back({std::string(name), [=](Operands& o) { o.value(name).setNull(); }});
      }
      [[fallthrough]];
    case 'Q':
      forEachSide([&](const Side& side, Buffers Operands::*buffers, const std::string& name) {
        if (side.pointerArray != (test == 'Q')) return;
        for (std::size_t i = 0; i < side.planes.size(); ++i) {
          if (isUntested(e, side, i)) continue;
          faults.push_back(
              {name + " plane " + std::to_string(i), [=](Operands& o) { (o.*buffers).planes[i] = nullptr; }});
        }
      });
      break;
    case 's':
    case 'S':
      for (const auto& [name, length] : {std::pair{"width ", &ZimiSize::width}, {"height ", &ZimiSize::height}}) {
        if (e.least.*length == 0) continue;
        std::vector<Zim32s> values = {0, -1, kLowest};
        if (test == 'S' && emptyTestedBefore) values.clear();
        if (test == 'S') values.push_back(e.least.*length - 1);
        for (Zim32s odd = 1; odd < e.multiple.*length; ++odd) values.push_back(8 + odd);
        for (const Zim32s value : values) {
          faults.push_back({name + std::to_string(value), [=, l = length](Operands& o) { o.size.*l = value; }});
        }
      }
      break;
    case 'T':
      forEachSide([&](const Side& side, Buffers Operands::*buffers, const std::string& name) {
        const std::size_t steps = side.steps == Steps::one && side.pointerArray ? 1 : side.planes.size();
        for (std::size_t i = 0; i < steps; ++i) {
          for (const Zim32s value : {0, -1, kLowest}) {
            faults.push_back(
                {name + " step " + std::to_string(value), [=](Operands& o) { (o.*buffers).steps[i] = value; }});
          }
        }
      });
      break;
    case 'R':
      for (const double maximum : {-1.0, 0.5}) {
        faults.push_back({"vMax " + std::to_string(maximum), [=](Operands& o) {
                            o.value("vMin").set({0.5});
                            o.value("vMax").set({maximum});
                          }});
      }
      break;
  }
  return faults;
}

ZimResult resultOf(char test) {
  switch (test) {
    case 's':
    case 'S':
      return zimResultBadSize;
    case 'T':
      return zimResultBadStep;
    case 'R':
      return zimResultBadRange;
    default:
      return zimResultNullPointer;
  }
}

class Arguments : public testing::TestWithParam<Export> {
 protected:
  static constexpr ZimiSize kSize = {16, 8};

  const Export& e = GetParam();
  const Caller call{e};
  Image source{e.source, kSize};
  Canvas destination{e.destination, kSize};

  Operands goodOperands(ZimiSize size = kSize) const {
    Operands operands(e, size);
    operands.source = source.buffers();
    operands.destination = destination.buffers();
    return operands;
  }
};

TEST_P(Arguments, EarlierTestDecides) {
  const auto* order = std::ranges::find_if(kOrders, [&](const Order& o) { return matches(e, o.pattern); });
  ASSERT_NE(order, std::end(kOrders)) << "no order of tests for " << e.name;
  const std::string_view tests = order->tests;
  const bool emptyTestedBefore = tests.find('s') != std::string_view::npos;
  ASSERT_FALSE(faultsOf(e, tests[0], emptyTestedBefore).empty());
  for (std::size_t i = 0; i < tests.size(); ++i) {
    for (const Fault& first : faultsOf(e, tests[i], emptyTestedBefore)) {
      Operands operands = goodOperands();
      first.inject(operands);
      EXPECT_EQ(call(operands), resultOf(tests[i])) << first.what;
      for (const char later : tests.substr(i + 1)) {
        for (const Fault& second : faultsOf(e, later, emptyTestedBefore)) {
          operands = goodOperands();
          second.inject(operands);
          first.inject(operands);
          EXPECT_EQ(call(operands), resultOf(tests[i])) << first.what << " and " << second.what;
        }
      }
    }
  }
  EXPECT_EQ(destination.differenceFromBlank(), "");
}

TEST_P(Arguments, LeastSizeIsGood) {
  const ZimiSize least = goodSize(e, {1, 1});
  EXPECT_EQ(call(goodOperands(least)), resultOf(e, least));
}

TEST_P(Arguments, NullArrayOfSteps) {
  for (Buffers Operands::*side : {&Operands::source, &Operands::destination}) {
    if ((side == &Operands::source ? e.source : e.destination).steps != Steps::perPlane) continue;
    if (!(side == &Operands::source ? e.source : e.destination).pointerArray) continue;
    Operands operands = goodOperands();
    (operands.*side).nullSteps = true;
    EXPECT_EQ(call(operands), zimResultNullPointer);
  }
  EXPECT_EQ(destination.differenceFromBlank(), "");
}

// Where no test minds, there are no rows to convert.
TEST_P(Arguments, UntestedEmptySize) {
  for (const ZimiSize& size : {ZimiSize{0, 8}, {-1, 8}, {kLowest, 8}, {16, 0}, {16, -1}, {16, kLowest}}) {
    const bool tested = size.width < 1 ? e.least.width > 0 : e.least.height > 0;
    EXPECT_EQ(call(goodOperands(size)), tested ? zimResultBadSize : zimResultOk) << size.width << " x " << size.height;
  }
  EXPECT_EQ(destination.differenceFromBlank(), "");
}

INSTANTIATE_TEST_SUITE_P(All, Arguments, testing::ValuesIn(exports()), nameOf);

// The difference of the bounds is tested, in single precision.
TEST(Range, OfGamma) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  struct Bounds {
    double vMin, vMax;
    ZimResult result;
  };
  constexpr Bounds kBounds[] = {
      {0, kNaN, zimResultOk},     {kNaN, 1, zimResultOk},         {16777216, 16777217, zimResultBadRange},
      {0, 1e-45, zimResultOk},    {-1e30, 1e30, zimResultOk},     {1, 1, zimResultBadRange},
      {1, -1, zimResultBadRange}, {-0.0, 0.0, zimResultBadRange},
  };
  for (const Export* e : matching("zimiGamma*_32f_*")) {
    for (const Bounds& bounds : kBounds) {
      Image source(e->source, {3, 2}), destination(e->destination, {3, 2});
      Operands operands(*e, source, destination);
      operands.value("vMin").set({bounds.vMin});
      operands.value("vMax").set({bounds.vMax});
      EXPECT_EQ(Caller(*e)(operands), bounds.result) << e->name << ' ' << bounds.vMin << ' ' << bounds.vMax;
    }
  }
}

}  // namespace
}  // namespace zim::test
