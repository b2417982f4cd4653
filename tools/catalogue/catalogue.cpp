#include "tools/catalogue/catalogue.h"

#include <algorithm>
#include <regex>

#include "tools/catalogue/pattern.h"

namespace zim::catalogue {
namespace {

// ---- What names do not tell. In each table the first row that matches counts. -------------------------------------

struct Family {
  const char* pattern;
  std::string_view name;
};

constexpr Family kFamilies[] = {
    {"zimi*ToGray_*", "gray"},
    {"zimi@(RGBToLUV|LUVToRGB)_*", "LUV"},
    {"zimi@(BGRToLab|LabToBGR)_*", "Lab"},
    {"zimi@(RGBToY@(CbCr|UV)|Y@(CbCr|UV)To@(RGB|BGR))_*", "full-resolution luma-chroma"},
    {"zimi@(RGBToXYZ|XYZToRGB)_*", "xyz"},
    {"zimi@(RGBToYCC|YCCToRGB)_*", "photo ycc"},
    {"zimi@(@(RGB|BGR)ToHLS|HLSTo@(RGB|BGR))_*", "hls"},
    {"zimi@(RGBToHSV|HSVToRGB)_*", "hsv"},
    {"zimi*YCoCg*", "ycocg"},
    {"zimiColorTwist*", "colour twist"},
    {"zimiGamma@(Fwd|Inv)_*", "gamma"},
    {"zimiToneMap*", "tone mapping"},
    {"zimi@(CFAToRGB|DemosaicAHD)_*", "demosaicing"},
    {"zimiReduceBits_*", "bit depth"},
    {"zimi*Dither_*", "dithered packed pixels"},
    {"zimi*@(444|555|565)*", "packed 16-bit pixels"},
    {"zimi@(RGB|BGR)To@(Y@(CbCr|CrCb|UV)|CbYCr)4*", "chroma-subsampling encoders"},
    {"zimi*_Filter_*", "filtered chroma resampling"},
    {"zimi@(Y@(CbCr|CrCb|UV)|CbYCr)4*To@(RGB|BGR)_*", "chroma-subsampled decoders"},
    {"zimi*_Interlace_*", "interlaced chroma conversion"},
    {"zimi@(Y@(CbCr|CrCb)|CbYCr)@(4|1)*", "chroma reformatting"},
};

// Extents by the name of an export; what no row matches is {1, 1}.
struct Extent {
  const char* pattern;
  ZimiSize size;
};

// 0 where the extent is not tested.
constexpr Extent kLeast[] = {
    {"zimi*YCoCg*", {0, 0}},

    {"zimiCFAToRGB_*", {2, 2}},
    {"zimiDemosaicAHD_*", {5, 5}},

    {"zimi*_Interlace_*", {2, 4}},
    {"zimiY@(CbCr|CrCb)420ToYCbCr422_Filter_8u_@(P2P3R|P3R)", {2, 8}},
    {"zimiYCbCr420To*_Filter_*", {2, 2}},

    {"zimi@(BGR|BGR555|BGR565)ToYCbCr422_@(8u|16u8u)_*", {2, 1}},
    {"zimiRGBToYCbCr422_8u_C3P3R", {2, 1}},
    {"zimiBGR*ToYCbCr411_*", {4, 1}},
    {"zimi@(BGR|BGR555|BGR565)ToY@(CbCr|CrCb)420_*", {2, 2}},
    {"zimi@(RGBToYCrCb420|BGR555ToYUV420|BGR565ToYUV420)_*", {2, 2}},
    {"zimiYCbCr422ToBGR_8u_*", {2, 1}},
    {"zimiYUV420ToBGR_8u_*", {2, 2}},
    {"zimiYCbCr411ToBGR*", {4, 1}},

    {"zimiYCbCr@(1620To420|411To420|420To1620)_8u_P3R", {4, 4}},
    {"zimiYCbCr420To411_8u_P3R", {4, 2}},
    {"zimi@(CbYCr|YCbCr|YCrCb)422ToYCbCr411_*", {4, 0}},
    {"zimiYCbCr411ToY@(CbCr|CrCb)422_*", {4, 0}},
    {"zimiYCbCr411_*", {4, 0}},
    {"zimiYCbCr411ToY@(CbCr|CrCb)420_*", {4, 2}},
    {"zimiY@(CbCr|CrCb)420ToYCbCr411_*", {4, 2}},
    {"zimiCbYCr422ToYCbCr422_8u_C2P3R", {2, 0}},
    {"zimiYCbCr422ToYCrCb422_8u_*", {2, 0}},
    {"zimiYCrCb422ToYCbCr422_8u_*", {2, 0}},
    {"zimi@(CbYCr|YCbCr|YCrCb)422ToY@(CbCr|CrCb)420_8u_*", {2, 2}},
    {"zimiY@(CbCr|CrCb)420?(To@(CbYCr|YCbCr|YCrCb)42[02])_8u_*", {2, 2}},
    {"zimi@(CbYCr|YCbCr)422?(To@(CbYCr|YCbCr)422)_8u_*", {2, 1}},
};

constexpr Extent kMultiple[] = {
    {"zimiYCbCr@(1620To420|411To420|420To1620)_8u_P3R", {4, 4}},
    {"zimiYCbCr420To411_8u_P3R", {4, 2}},
};

// Of which incomplete groups give a warning.
constexpr Extent kWhole[] = {
    {"zimi*_Interlace_*", {2, 4}},
    {"zimi@(BGR|BGR555|BGR565)ToYCbCr411_*", {4, 1}},
    {"zimiYCbCr411ToBGR@(555|565)_*", {4, 1}},
    {"zimi@(RGBToYCbCr422_8u_C3P3R|RGB565ToYUV422_*)", {2, 1}},
    {"zimi@(BGR|RGB)ToY@(CbCr|CrCb|UV)420_*", {2, 2}},
    {"zimi@(BGR555|BGR565|RGB565)ToYUV420_*", {2, 2}},
    {"zimiY@(CbCr|CrCb|UV)420To@(BGR|RGB)_*", {2, 2}},
};

// Operations that leave an incomplete last group, and the chroma that would belong to it, alone.
constexpr const char* kWholeGroupsOnly[] = {
    "zimi@(BGR|RGB)ToY@(CbCr|CrCb|UV)420_*",
    "zimi@(BGR|RGB)ToYCbCr4@(22|11)_8u_*P3R",
    "zimi@(BGR|RGB)@(555|565)To*P3R",
    "zimiY@(CbCr|CrCb|UV)420To@(BGR|RGB)_*",
    "zimiYCbCr422ToBGR_8u_P3C3R",
    "zimiYCbCr411ToBGR*",
    "zimi@(CbYCr|YCbCr|YCrCb)@(422|420|411|1620)?(To*@(422|420|411|1620))_*",
};

// Operations that see a whole mosaic, and those of them that are lent memory.
constexpr const char* kTakeRegion = "zimi@(CFAToRGB|DemosaicAHD)_*";
constexpr const char* kTakeScratch = "zimiDemosaicAHD_*";
constexpr int kScratchRows = 30, kScratchMargin = 6;

struct FurtherArguments {
  const char* pattern;
  std::vector<Argument> arguments;
};

const std::vector<FurtherArguments>& furtherArguments() {
  using enum SampleType;
  // Luma weights other than the fixed ones; sepia with small offsets; four colours that mix with one another.
  static const std::vector<double> weights = {0.2126, 0.7152, 0.0722};
  static const std::vector<double> sepia = {0.393, 0.769, 0.189, 0.25,  //
                                            0.349, 0.686, 0.168, 0.0,   //
                                            0.272, 0.534, 0.131, -0.125};
  static const std::vector<double> mixture = {0.7, 0.1,  0.1, 0.1,   //
                                              0.2, 0.9,  0.0, -0.1,  //
                                              0.0, -0.3, 1.2, 0.1,   //
                                              0.1, 0.2,  0.3, 0.4};
  const std::vector<std::string_view> dithers = {"none", "floyd-steinberg", "jarvis-judice-ninke", "stucki", "bayer"};
  static const std::vector<FurtherArguments> table = {
      {"zimiReduceBits_8u1u_*",
       {{"dstBitOffset", s32, false, false, {0}, {}, true},
        {"unread1", s32, false, false, {0}},
        {"unread2", s32, false, false, {0}},
        {"dither", s32, false, false, {zimDitherKindStucki}, dithers},
        {"threshold", u8, false, false, {127}}}},
      {"zimiReduceBits_*",
       {{"noise", s32, false, false, {0}},
        {"dither", s32, false, false, {zimDitherKindFloydSteinberg}, dithers},
        {"levels", s32, false, false, {8}}}},
      {"zimiColorToGray_64f_*", {{"coeffs", f64, true, true, weights}}},
      {"zimiColorToGray_*", {{"coeffs", f32, true, true, weights}}},
      {"zimiColorTwist_32f_C4R", {{"twist", f32, true, false, mixture}}},
      {"zimiColorTwist*", {{"twist", f32, true, false, sepia}}},
      {"zimiGamma*_32f_*", {{"vMin", f32, false, false, {0}}, {"vMax", f32, false, false, {1}}}},
      {kTakeRegion, {{"grid", s32, false, false, {zimBayerGridRGGB}, {"BGGR", "RGGB", "GBRG", "GRBG"}}}},
      {"zimiYCbCr420ToYC@(bCr422_Filter_8u_P2C2R|rCb420_Filter_8u_P2P3R)", {{"layout", s32, false, false, {21}}}},
  };
  return table;
}

struct FormOfExports {
  const char* pattern;
  std::string_view name;
  std::vector<std::pair<std::string_view, double>> values;
};

const std::vector<FormOfExports>& formsOfExports() {
  static const std::vector<FormOfExports> table = {
      {"zimiReduceBits_8u1u_*", "threshold", {{"dither", zimDitherKindNone}}},
      {"zimiReduceBits_*[!1][usf]_*", "none", {{"dither", zimDitherKindNone}}},
      {"zimiReduceBits_*[!1][usf]_*", "bayer", {{"dither", zimDitherKindBayer}}},
      {"zimiReduceBits_@(8u|32f16s)_*", "bayer-noise", {{"dither", zimDitherKindBayer}, {"noise", 30}}},
      {"zimiReduceBits_*[!1][usf]_*", "stucki", {{"dither", zimDitherKindStucki}}},
      {"zimiReduceBits_@(8u|32f16s)_*", "stucki-noise", {{"dither", zimDitherKindStucki}, {"noise", 30}}},
  };
  return table;
}

// ---- What names tell ----------------------------------------------------------------------------------------------

ZimiSize extentOf(const std::string& name, std::span<const Extent> table) {
  const auto found = std::ranges::find_if(table, [&](const Extent& x) { return matches(x.pattern, name); });
  return found == table.end() ? ZimiSize{1, 1} : found->size;
}

SampleType sampleTypeOf(const std::string& word) {
  const auto* traits = std::ranges::find(kSampleTraits, std::string_view(word), &SampleTraits::name);
  return static_cast<SampleType>(traits - kSampleTraits);
}

// A colour model: letters that give the order of samples, digits that give the sub-sampling or the bits of a packed
// pixel.
struct Colour {
  std::string letters, digits;

  bool lumaChroma() const { return letters.find('Y') != std::string::npos && !digits.empty(); }
  bool packed() const { return !lumaChroma() && !digits.empty(); }
};

struct Grid {
  std::string_view digits;
  int across, down;
};
constexpr Grid kGrids[] = {{"444", 1, 1}, {"422", 2, 1}, {"420", 2, 2}, {"411", 4, 1}, {"1620", 4, 4}};

struct Conversion {
  Colour source, destination;
};

// The colours of "YCbCr420ToBGR565Dither"; of "YCbCr420To411", whose letters stand once; of "YCbCr420", which only
// changes layout. Operations within any one model name no colours.
Conversion conversionOf(const std::string& operation) {
  static const std::regex conversion(R"(([A-Z][A-Za-z]*?)(\d*)To([A-Z][A-Za-z]*?)?(\d*)(?:Dither|Gamma)?)");
  static const std::regex layoutChange(R"((Y[A-Za-z]+)(\d+))");
  if (operation == "DemosaicAHD") return {{"CFA", ""}, {"RGB", ""}};
  std::smatch m;
  if (std::regex_match(operation, m, conversion)) {
    return {{m[1], m[2]}, {m[3].matched ? m[3] : m[1], m[4]}};
  }
  if (std::regex_match(operation, m, layoutChange)) return {{m[1], m[2]}, {m[1], m[2]}};
  return {};
}

Side sideOf(const std::string& layout, SampleType type, const Colour& colour, bool hasSteps) {
  Side side;
  side.type = type;
  side.layout = layout;
  side.colourWord = colour.letters + colour.digits;
  const int channels = layout.back() - '0';
  const bool planar = layout.find('P') != std::string::npos;
  if (!planar) {
    const int samples = colour.packed() ? 1 : channels;
    side.planes = {{.type = type, .samples = samples, .usedSamples = samples}};
    side.steps = hasSteps ? Steps::one : Steps::none;
    return side;
  }
  side.planes.assign(static_cast<std::size_t>(channels), {.type = type});
  side.pointerArray = channels > 2;
  const auto* grid = std::ranges::find(kGrids, std::string_view(colour.digits), &Grid::digits);
  if (colour.lumaChroma() && grid != std::end(kGrids)) {
    for (auto& plane : std::span(side.planes).subspan(1)) {
      plane.pixelsAcross = grid->across;
      plane.pixelsDown = grid->down;
      if (channels == 2) plane.samples = plane.usedSamples = 2;
    }
    side.steps = Steps::perPlane;
  }
  if (!hasSteps) side.steps = Steps::none;
  return side;
}

// Chroma without incomplete last groups; of a packed row the last pixel without a partner is dropped altogether.
void keepWholeGroups(Side& side) {
  for (Plane& plane : side.planes) {
    if (side.layout == "C2") {
      plane.samples = plane.usedSamples = 4;
      plane.pixelsAcross = 2;
    }
    plane.wholeGroupsOnly = plane.pixelsAcross > 1;
  }
}

// The fourth of four interleaved samples is a colour, a copied alpha or a stored fill value, or else is left alone.
void settleFourthSample(Side& source, Side& destination) {
  const bool fourPlanes = destination.planes.size() == 4;
  if ((source.layout == "AC4" && !fourPlanes) || (source.layout == "C4" && destination.layout != "C4")) {
    source.planes[0].usedSamples = 3;
  }
  if (destination.layout == "AC4" && !source.pointerArray) destination.planes[0].usedSamples = 3;
}

// Whoever writes four samples from three is told the fourth.
bool takesFill(const Side& source, const Side& destination) {
  return destination.layout == "C4" && source.layout.back() != '4';
}

}  // namespace

std::optional<Export> describe(std::string_view name) {
  static const std::regex grammar(
      "zimi([A-Za-z0-9]+)(?:_([A-Za-z0-9]+))?"
      "_(8u|8s|16u|16s|32s|32f|64f)(1u|8u|8s|16u|16s|32s|32f|64f)?"
      "_(I?)(C[1-4]|AC4|P[2-4]|AP4)(C[1-4]|AC4|P[2-4]|AP4)?(I?)(R?)");
  Export e;
  e.name = name;
  std::smatch m;
  if (!std::regex_match(e.name, m, grammar)) return std::nullopt;
  e.operation = m[1];
  e.variant = m[2];
  e.inPlace = m[5].length() + m[8].length() > 0;

  const auto sourceType = sampleTypeOf(m[3]);
  const auto destinationType = m[4].matched ? sampleTypeOf(m[4]) : sourceType;
  const Conversion conversion = conversionOf(e.operation);
  const bool hasSteps = m[9].length() > 0;
  e.source = sideOf(m[6], sourceType, conversion.source, hasSteps);
  e.destination = sideOf(m[7].matched ? m[7] : m[6], destinationType, conversion.destination, hasSteps);
  settleFourthSample(e.source, e.destination);
  // Planes that become packed pixels have a step each even at full size.
  if (conversion.destination.packed() && e.source.pointerArray) e.source.steps = Steps::perPlane;

  const auto* const family =
      std::ranges::find_if(kFamilies, [&](const Family& f) { return matches(f.pattern, e.name); });
  if (family != std::end(kFamilies)) e.family = family->name;
  e.least = extentOf(e.name, kLeast);
  e.multiple = extentOf(e.name, kMultiple);
  e.whole = extentOf(e.name, kWhole);
  if (std::ranges::any_of(kWholeGroupsOnly, [&](const char* pattern) { return matches(pattern, e.name); })) {
    keepWholeGroups(e.source);
    keepWholeGroups(e.destination);
  }
  const auto further =
      std::ranges::find_if(furtherArguments(), [&](const FurtherArguments& f) { return matches(f.pattern, e.name); });
  if (further != furtherArguments().end()) e.further = further->arguments;
  e.takesRegion = matches(kTakeRegion, e.name);
  if (matches(kTakeScratch, e.name)) e.scratch = {sideOf("C1", sourceType, {}, true), kScratchRows, kScratchMargin};
  if (takesFill(e.source, e.destination)) e.further.push_back({"aval", destinationType, false, false, {255}});
  return e;
}

ZimResult resultOf(const Export& e, ZimiSize size) {
  const auto isMultiple = [&](ZimiSize of) { return size.width % of.width == 0 && size.height % of.height == 0; };
  // Where a least extent is 0, any other goes as well.
  const auto tooSmall = [](int extent, int least) { return least > 0 && extent < least; };
  if (tooSmall(size.width, e.least.width) || tooSmall(size.height, e.least.height) || !isMultiple(e.multiple)) {
    return zimResultBadSize;
  }
  return isMultiple(e.whole) ? zimResultOk : zimWarnOddSize;
}

std::span<const Export> exports() {
  static const std::vector<Export> all = [] {
    struct Symbol {
      const char* name;
      AnyFunction function;
    };
    constexpr auto any = [](auto* function) { return reinterpret_cast<AnyFunction>(function); };
    const Symbol symbols[] = {
#define ZIM_EXPORT(name) {#name, any(&name)},
#include "frame/exports.def"
#undef ZIM_EXPORT
    };
    std::vector<Export> described;
    for (const Symbol& symbol : symbols) {
      described.push_back(describe(symbol.name).value());
      described.back().function = symbol.function;
    }
    return described;
  }();
  return all;
}

std::span<const Export> forms() {
  static const std::vector<Export> all = [] {
    std::vector<Export> found(exports().begin(), exports().end());
    for (const Export& e : exports()) {
      for (const FormOfExports& form : formsOfExports()) {
        if (!matches(form.pattern, e.name)) continue;
        Export& other = found.emplace_back(e);
        other.name += ":" + std::string(form.name);
        for (const auto& [name, value] : form.values)
          std::ranges::find(other.further, name, &Argument::name)->usual = {value};
      }
    }
    std::ranges::sort(found, {}, &Export::name);
    return found;
  }();
  return all;
}

const Export* find(std::string_view name) {
  const auto all = name.find(':') == name.npos ? exports() : forms();
  const auto found = std::ranges::lower_bound(all, name, {}, &Export::name);
  return found != all.end() && found->name == name ? &*found : nullptr;
}

std::vector<const Export*> matching(const std::string& pattern) {
  std::vector<const Export*> found;
  for (const Export& e : exports()) {
    if (matches(pattern, e.name)) found.push_back(&e);
  }
  return found;
}

}  // namespace zim::catalogue
