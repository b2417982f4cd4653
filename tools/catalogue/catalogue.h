// Every image operation, described by what its name says: samples, planes, steps, further arguments.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/catalogue/prepared_call.h"
#include "tools/catalogue/sample_type.h"
#include "zimcc.h"

namespace zim::catalogue {

// Geometry of one plane: a row of it is a run of groups, each of `samples` samples for `pixelsAcross` pixels, and it
// has one row for every `pixelsDown` rows of the image.
struct Plane {
  SampleType type = SampleType::u8;
  int samples = 1;
  int usedSamples = 1;  // 3 of 4 where the fourth is neither read nor written
  int pixelsAcross = 1;
  int pixelsDown = 1;
  bool wholeGroupsOnly = false;  // an incomplete last group, or row, has no samples; otherwise it has all of them

  int groups(int width) const { return (wholeGroupsOnly ? width : width + pixelsAcross - 1) / pixelsAcross; }
  std::size_t rowBytes(int width) const {
    return (static_cast<std::size_t>(groups(width)) * static_cast<std::size_t>(samples * bits(type)) + 7) / 8;
  }
  int rows(int height) const { return (wholeGroupsOnly ? height : height + pixelsDown - 1) / pixelsDown; }

  bool operator==(const Plane&) const = default;
};

enum class Steps { none, one, perPlane };

// Source or destination. With pointerArray the planes are passed as the address of an array of pointers, and steps per
// plane as the address of an array. Otherwise each plane is a pointer followed by its step, if there are steps.
struct Side {
  SampleType type = SampleType::u8;
  std::string layout;      // "C3", "AC4", "P2"
  std::string colourWord;  // "BGR", "YCbCr420"; empty where the operation knows no colours
  std::vector<Plane> planes;
  bool pointerArray = false;
  Steps steps = Steps::one;

  bool operator==(const Side&) const = default;
};

// An argument other than images and size.
struct Argument {
  std::string_view name;
  SampleType type;
  bool array;                 // passed as a pointer to its elements
  bool mayBeNull;             // null selects the operation's own values
  std::vector<double> usual;  // what serves as a value where none is asked for: one number, or each element
  std::vector<std::string_view> words = {};  // for the numbers from 0 on, if they have names
  bool aheadOfSize = false;
};

// Rows that the caller lends an operation for its work, longer than those of the region.
struct Scratch {
  Side side;
  int rows;
  int margin;  // samples beyond the region's width

  ZimiSize size(ZimiSize region) const { return {region.width + margin, rows}; }
};

struct Export {
  std::string name;
  std::string operation;  // "YCbCr420ToBGR565Dither"
  std::string variant;    // "709CSC", or empty
  std::string_view family;
  Side source, destination;  // equal in place
  bool inPlace = false;
  bool takesRegion = false;  // of a whole image: ZimiRegion and the image's ZimiSize go between pointer and step
  std::vector<Argument> further;
  std::optional<Scratch> scratch;  // behind all other arguments
  ZimiSize least = {1, 1};         // below it zimResultBadSize; 0 where the size is not tested
  ZimiSize multiple = {1, 1};      // zimResultBadSize where the size is no multiple of it
  ZimiSize whole = {1, 1};         // zimWarnOddSize where the size is no multiple of it
  AnyFunction function = nullptr;  // the exported symbol; null if the library has none of this name
};

// What a size makes of a call whose other arguments are good.
ZimResult resultOf(const Export& e, ZimiSize size);

// What a name says, or nothing if it breaks the grammar.
std::optional<Export> describe(std::string_view name);

// All exports of the library, in ascending byte order of their names.
std::span<const Export> exports();

// All exports, and further forms of those that an argument makes do quite different things: the same with other values
// as usual ones, and named as in "zimiReduceBits_8u_C1R:bayer".
std::span<const Export> forms();

// The export, or the form, of this name, or null.
const Export* find(std::string_view name);

// The exports that match a shell pattern such as "zimiGamma*_32f_@(C3|AC4)R".
std::vector<const Export*> matching(const std::string& pattern);

}  // namespace zim::catalogue
