#include "tools/demo.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <sstream>
#include <system_error>
#include <vector>

#include "tools/demo_page.h"
#include "tools/describe.h"
#include "tools/failure.h"
#include "tools/job.h"
#include "tools/measure.h"
#include "tools/progress.h"
#include "tools/samples.h"
#include "zimcore.h"

extern "C" const char zimPhoto[], zimPhotoEnd[];

namespace zim::tool {
namespace {

struct Group {
  const char* name;
  const char* about;
};

enum class Input { photo, highRange, mosaic };

struct Entry {
  const Group& group;
  const char* exportName;  // empty for the input as it is
  const char* title;
  const char* settings = "";
  Input input = Input::photo;
  int zoom = 1;  // shows a part of the result, each pixel so many times as wide and high
};

constexpr Group kGray = {"Gray", "Weighted sums of red, green and blue, with the usual weights or any others."};
constexpr Group kXyz = {"CIE XYZ", "What the standard observer sees of linear light."};
constexpr Group kPhotoYcc = {
    "PhotoYCC", "The coding of scanned photographs: luma with room for highlights, and two differences of colour."};
constexpr Group kHls = {"Hue, lightness, saturation",
                        "Colours as people describe them: which one, how light, how much of it."};
constexpr Group kHsv = {"Hue, saturation, value",
                        "The same with the largest of the three samples in place of lightness."};
constexpr Group kLuvLab = {"LUV and Lab", "Models in which equal distances look about equally large."};
constexpr Group kLumaChroma = {"Luma and chroma",
                               "Brightness apart from colour, as video has it, with chroma for every pixel."};
constexpr Group kShared = {"Shared chroma",
                           "Eyes are keener on brightness than on colour, so several pixels share their chroma."};
constexpr Group kPacked = {"Packed 16-bit pixels", "A pixel in one word of 16 bits: levels are cut off, or dithered."};
constexpr Group kChroma = {"Chroma layouts", "From one way of sharing chroma to another; no colour changes."};
constexpr Group kYCoCg = {"YCoCg",
                          "Luma and chroma by sums and shifts, which the reversible form takes back to the last bit."};
constexpr Group kTwist = {"Colour twist", "Each colour from all three, by a matrix and offsets."};
constexpr Group kGamma = {"Gamma", "The transfer curve of video, and its inverse."};
constexpr Group kToneMapping = {"Tone mapping", "Scenes that are brighter than white, brought down to 8 bits."};
constexpr Group kDemosaicing = {"Raw sensor demosaicing",
                                "Colours from a sensor that sees but one of them at each site."};
constexpr Group kBitDepth = {"Bit depth",
                             "Fewer levels, with the error hidden in a pattern or handed on to neighbours."};

constexpr Entry kEntries[] = {
    {kGray, "zimiRGBToGray_8u_C3C1R", "Luma with the usual weights"},
    {kGray, "zimiColorToGray_8u_C3C1R", "Red alone: the larches glow", "coeffs=1,0,0"},
    {kGray, "zimiColorToGray_8u_C3C1R", "Blue alone: the larches go dark", "coeffs=0,0,1"},
    {kGray, "zimiRGBToGray_16u_C3C1R", "Luma at 16 bits a sample"},
    {kGray, "zimiColorToGray_32f_C3C1R", "Green lifted, in floating point", "coeffs=-0.3,1.6,-0.3"},
    {kGray, "zimiColorToGray_64f_C3C1R", "Sky against foliage: blue less red", "coeffs=-1,0.6,1.2"},

    {kXyz, "zimiRGBToXYZ_32f_C3R", "Nearly red, brightness, nearly blue"},
    {kXyz, "zimiXYZToRGB_8u_C3R", "To XYZ and back in bytes, rounded down twice"},

    {kPhotoYcc, "zimiRGBToYCC_8u_C3R", "Brightness with room above, then what is blue, then what is red"},
    {kPhotoYcc, "zimiYCCToRGB_16u_C3R", "To PhotoYCC and back at 16 bits a sample"},

    {kHls, "zimiRGBToHLS_8u_C3R", "Hue, lightness and saturation"},
    {kHls, "zimiBGRToHLS_8u_C3P3R", "The same of BGR, rounded down"},
    {kHls, "zimiHLSToRGB_8u_C3R", "To HLS and back in bytes"},
    {kHls, "zimiHLSToRGB_32f_C3R", "And in floating point"},

    {kHsv, "zimiRGBToHSV_8u_C3R", "Hue, saturation and value"},
    {kHsv, "zimiHSVToRGB_16u_C3R", "To HSV and back at 16 bits a sample"},

    {kLuvLab, "zimiRGBToLUV_8u_C3R", "Lightness, green to red, blue to yellow"},
    {kLuvLab, "zimiRGBToLUV_32f_C3R", "The same in floating point, in units of L, U and V"},
    {kLuvLab, "zimiLUVToRGB_32f_C3R", "There and back in floating point: each row as far as its first black pixel"},
    {kLuvLab, "zimiLUVToRGB_8u_C3R", "There and back in bytes"},
    {kLuvLab, "zimiBGRToLab_8u_C3R", "Lightness, green to red, blue to yellow, now as Lab"},
    {kLuvLab, "zimiBGRToLab_8u16u_C3R", "The same at 16 bits"},
    {kLuvLab, "zimiLabToBGR_8u_C3R", "Lab, there and back"},

    {kLumaChroma, "zimiRGBToYCbCr_8u_C3P3R", "Brightness, then what is blue, then what is red"},
    {kLumaChroma, "zimiRGBToYUV_8u_P3R", "Y, U and V with analogue weights"},
    {kLumaChroma, "zimiYCbCrToRGB_8u_P3C3R", "To YCbCr and back"},
    {kLumaChroma, "zimiYCbCrToBGR_709CSC_8u_P3C3R", "The same planes taken for BT.709: colours shift"},
    {kLumaChroma, "zimiYUVToRGB_8u_C3R", "To YUV and back"},

    {kShared, "zimiRGBToYCbCr420_8u_C3P3R", "4:2:0: chroma at half the width and height"},
    {kShared, "zimiBGRToYCbCr420_709CSC_8u_C3P2R", "4:2:0 with Cb and Cr as pairs, BT.709"},
    {kShared, "zimiRGBToCbYCr422_8u_C3C2R", "4:2:2 with filtered chroma"},
    {kShared, "zimiBGRToYCbCr411_8u_C3P3R", "4:1:1: chroma at a quarter of the width"},
    {kShared, "zimiYCbCr420ToRGB_8u_P3C3R", "To 4:2:0 and back: chroma for 2 x 2 pixels"},
    {kShared, "zimiYCbCr420ToRGB_8u_P3C3R", "The same, eight times as large", "", Input::photo, 8},
    {kShared, "zimiYCbCr411ToBGR_8u_P3C3R", "To 4:1:1 and back, eight times as large", "", Input::photo, 8},
    {kShared, "zimiCbYCr422ToBGR_709HDTV_8u_C2C4R", "Packed 4:2:2 of BT.601 taken for BT.709 in full range"},

    {kPacked, "zimiRGBToRGB565_8u16u_C3R", "Cut to 5, 6 and 5 bits", "", Input::photo, 4},
    {kPacked, "zimiBGR565ToBGR_16u8u_C3R", "From 16 bits a pixel: 32 levels of red and blue, 64 of green", "",
     Input::photo, 4},
    {kPacked, "zimiYCbCr420ToRGB565_8u16u_P3C3R", "The same from 4:2:0", "", Input::photo, 4},
    {kPacked, "zimiYCbCr420ToRGB565Dither_8u16u_P3C3R", "With ordered dither", "", Input::photo, 4},
    {kPacked, "zimiYCbCrToRGB444_8u16u_C3R", "Cut to 4 bits each", "", Input::photo, 4},
    {kPacked, "zimiYCbCrToRGB444Dither_8u16u_C3R", "With ordered dither", "", Input::photo, 4},

    {kChroma, "zimiYCbCr420ToYCbCr422_8u_P3R", "4:2:0 to 4:2:2: each row of chroma twice"},
    {kChroma, "zimiYCbCr420ToYCbCr422_Filter_8u_P3R", "The same with rows in between interpolated"},
    {kChroma, "zimiYCbCr422ToYCbCr420_8u_P3P2R", "4:2:2 planes to 4:2:0 with pairs of Cb and Cr"},
    {kChroma, "zimiYCbCr411ToYCbCr420_8u_P3R", "4:1:1 folded into 4:2:0: two rows of chroma in one"},
    {kChroma, "zimiYCbCr420To1620_8u_P3R", "One chroma sample for 4 x 4 pixels"},
    {kChroma, "zimiYCbCr420To422_Interlace_8u_P3R", "4:2:0 to 4:2:2, the fields apart"},
    {kChroma, "zimiYCbCr420ToYCbCr422_Filter_8u_P2C2R", "4:2:0 to packed 4:2:2, luma filtered", "layout=21"},
    {kChroma, "zimiYCrCb420ToBGR_Filter_8u_P3C4R", "4:2:0 to BGR, chroma averaged between columns", "", Input::photo,
     8},

    {kYCoCg, "zimiRGBToYCoCg_8u_C3P3R", "Brightness, orange against blue, green against purple"},
    {kYCoCg, "zimiBGRToYCoCg_Rev_8u16s_C3P3R", "The reversible form: signed differences around middle gray"},
    {kYCoCg, "zimiYCoCgToBGR_Rev_16s8u_P3C3R", "Reversible, there and back: the photograph itself"},
    {kYCoCg, "zimiYCoCgToBGR_16s8u_P3C3R", "Plain, there and back: off by one here and there"},
    {kYCoCg, "zimiYCoCgToRGB_8u_P3C3R", "The same with planes of 8 bits"},

    {kTwist, "zimiColorTwist32f_8u_C3R", "Sepia", "twist=.393,.769,.189,0,.349,.686,.168,0,.272,.534,.131,0"},
    {kTwist, "zimiColorTwist32f_8u_C3R", "Saturation raised by two thirds",
     "twist=1.47,-.39,-.08,0,-.2,1.28,-.08,0,-.2,-.39,1.59,0"},
    {kTwist, "zimiColorTwist32f_8u_AC4R", "Saturation halved", "twist=.65,.293,.057,0,.15,.793,.057,0,.15,.293,.557,0"},
    {kTwist, "zimiColorTwist32f_8u_P3R", "Red and blue exchanged", "twist=0,0,1,0,0,1,0,0,1,0,0,0"},
    {kTwist, "zimiColorTwist32f_16u_C3R", "Negative", "twist=-1,0,0,65535,0,-1,0,65535,0,0,-1,65535"},
    {kTwist, "zimiColorTwist_32f_C3R", "Evening light", "twist=1.15,.1,0,.02,0,.9,.05,0,0,.05,.62,.03"},

    {kGamma, "zimiGammaFwd_8u_C3R", "The curve of video: shadows lift"},
    {kGamma, "zimiGammaInv_8u_C3R", "Its inverse: as linear light"},
    {kGamma, "zimiGammaInv_16u_P3R", "The inverse at 16 bits a sample"},
    {kGamma, "zimiGammaFwd_32f_C3R", "The curve in floating point", "vMin=0 vMax=1"},
    {kGamma, "zimiGammaInv_32f_C3R", "The inverse, with black at -1", "vMin=-1 vMax=1"},
    {kGamma, "zimiGammaFwd_16u_AC4IR", "The curve of video, in place"},

    {kToneMapping, "zimiColorToGray_32f_C3C1R", "A high-range scene, cut off at white", "coeffs=null",
     Input::highRange},
    {kToneMapping, "zimiToneMapLinear_32f8u_C1R", "Scaled to its maximum", "", Input::highRange},
    {kToneMapping, "zimiToneMapMean_32f8u_C1R", "Scaled to twice its mean", "", Input::highRange},

    {kDemosaicing, "", "Part of the photograph, enlarged", "", Input::photo, 4},
    {kDemosaicing, "", "As a sensor behind a colour filter array sees it", "", Input::mosaic, 4},
    {kDemosaicing, "zimiCFAToRGB_8u_C1C3R", "From the mosaic, by averages of neighbours", "grid=RGGB", Input::mosaic,
     4},
    {kDemosaicing, "zimiDemosaicAHD_8u_C1C3R", "From the mosaic, by the more homogeneous of two candidates",
     "grid=RGGB", Input::mosaic, 4},
    {kDemosaicing, "zimiCFAToRGB_16u_C1C3R", "By averages, at 16 bits a sample", "grid=RGGB", Input::mosaic},
    {kDemosaicing, "zimiDemosaicAHD_16u_C1C3R", "By homogeneity, at 16 bits a sample", "grid=RGGB", Input::mosaic},

    {kBitDepth, "zimiReduceBits_8u_C1R", "8 levels, the nearest", "levels=8 dither=0"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, the nearest", "levels=2 dither=0"},
    {kBitDepth, "zimiReduceBits_8u1u_C1R", "One bit, by a threshold", "dither=0 threshold=100"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "8 levels, a pattern of thresholds", "levels=8 dither=4"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, a pattern of thresholds", "levels=2 dither=4"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, the pattern with noise", "levels=2 dither=4 noise=30"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "8 levels, Floyd and Steinberg", "levels=8 dither=1"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, Floyd and Steinberg", "levels=2 dither=1"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, the same with noise", "levels=2 dither=1 noise=30"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "8 levels, Jarvis, Judice and Ninke", "levels=8 dither=2"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, Jarvis, Judice and Ninke", "levels=2 dither=2"},
    {kBitDepth, "zimiReduceBits_8u_C3R", "2 levels a channel: eight colours", "levels=2 dither=2"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "8 levels, Stucki", "levels=8 dither=3"},
    {kBitDepth, "zimiReduceBits_8u_C1R", "2 levels, Stucki", "levels=2 dither=3"},
    {kBitDepth, "zimiReduceBits_8u1u_C1R", "One bit, Stucki in integers", "dither=3 threshold=127"},
    {kBitDepth, "zimiReduceBits_16u8u_C3R", "16 bits to 6 levels a channel, in a pattern", "levels=6 dither=4"},
    {kBitDepth, "zimiReduceBits_32f8u_C3R", "Floats to 6 levels a channel, Floyd and Steinberg", "levels=6 dither=1"},
};

Picture photo() {
  const auto size = static_cast<std::size_t>(zimPhotoEnd - zimPhoto);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(fmemopen(const_cast<char*>(zimPhoto), size, "rb"),
                                                             &std::fclose);
  if (!file) throw Failure("cannot read the photograph");
  return readPng(file.get(), "the photograph");
}

// The scene as a sensor of greater range might have it: brighter parts reach up to 3.5 times white.
Picture highRange(Picture scene) {
  for (std::size_t i = 0; i < scene.samples.size(); i += 3) {
    float* pixel = &scene.samples[i];
    const float luma = 0.299f * pixel[0] + 0.587f * pixel[1] + 0.114f * pixel[2];
    const float gain = 1 + 2.5f * luma;
    for (int c = 0; c < 3; ++c) pixel[c] = gain * std::pow(pixel[c], 1.2f);
  }
  return scene;
}

std::vector<std::string> wordsOf(const char* text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// The part in the middle that fills the picture once its pixels are so large.
Picture enlarged(const Picture& picture, int zoom) {
  Picture part(picture.width, picture.height, picture.channels);
  part.deep = picture.deep;
  const int left = (picture.width - picture.width / zoom) / 2, top = (picture.height - picture.height / zoom) / 2;
  for (int y = 0; y < part.height; ++y) {
    for (int x = 0; x < part.width; ++x) {
      std::copy_n(picture.pixel(left + x / zoom, top + y / zoom), picture.channels, part.pixel(x, y));
    }
  }
  return part;
}

// The peak signal-to-noise ratio of what has been made of an original, in decibels.
double likeness(const Picture& picture, const Picture& original) {
  double sum = 0;
  for (std::size_t i = 0; i < original.samples.size(); ++i) {
    const double difference = static_cast<double>(picture.samples[i]) - static_cast<double>(original.samples[i]);
    sum += difference * difference;
  }
  return 10 * std::log10(static_cast<double>(original.samples.size()) / sum);
}

Card cardOf(const Entry& entry, const Picture& input, const std::filesystem::path& folder, const std::string& file) {
  const Picture picture = enlarged(input, entry.zoom);
  writePng(folder / file, picture);
  Card card = {};
  card.group = entry.group.name;
  card.about = entry.group.about;
  card.title = entry.title;
  card.file = file;
  card.width = picture.width;
  card.height = picture.height;
  return card;
}

// The names of channels that are shown side by side, above each.
std::vector<Label> labelsOf(const catalogue::Image& image, const Picture& picture) {
  const catalogue::Side& side = image.side();
  const bool pairs = side.layout == "C2";
  const auto names = pairs ? std::vector<std::string>{"Y", "Cb", "Cr"} : channelsOf(side);
  if (names.size() != 3 || picture.channels != 1) return {};
  std::vector<int> widths;
  if (pairs) {
    const int half = image.size().width / 2;
    widths = {image.size().width, half, half};
  }
  for (const catalogue::Plane& plane : side.planes) {
    widths.insert(widths.end(), static_cast<std::size_t>(plane.usedSamples), plane.groups(image.size().width));
  }
  std::vector<Label> labels;
  int left = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    labels.push_back({names[i], static_cast<double>(left) / picture.width});
    left += widths[i] + kChannelGap;
  }
  return labels;
}

Card make(const Entry& entry, const Picture& input, const Picture& original, const std::filesystem::path& folder,
          const std::string& file) {
  constexpr int kRounds = 11;
  Job job(exportNamed(entry.exportName), input, wordsOf(entry.settings));
  job.run();
  Card card = cardOf(entry, job.picture(), folder, file);
  card.exportName = entry.exportName;
  card.settings = entry.settings;
  if (entry.zoom == 1) card.labels = labelsOf(job.result(), job.picture());
  if (entry.input == Input::mosaic) {
    char decibels[32];
    std::snprintf(decibels, sizeof decibels, "PSNR %.1f dB", likeness(job.picture(), original));
    card.note = decibels;
  }
  const double seconds = measure({[&] { job.run(); }}, kRounds).front().median;
  card.milliseconds = 1e3 * seconds;
  card.megapixelsPerSecond = megapixels({input.width, input.height}) / seconds;
  return card;
}

}  // namespace

void demo(const std::string& name) {
  const std::filesystem::path folder = name;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw Failure("cannot make the folder " + name + ": " + error.message());

  zimSetNumThreads(1);
  const Picture original = photo();
  const Picture scene = highRange(original), mosaic = mosaicOf(original, zimBayerGridRGGB);
  writePng(folder / "photo.png", original);

  std::vector<Card> cards;
  {
    Progress progress(std::size(kEntries));
    for (const Entry& entry : kEntries) {
      progress.next(entry.exportName);
      char file[16];
      std::snprintf(file, sizeof file, "%02zu.png", cards.size() + 1);
      const Picture& input = entry.input == Input::photo ? original : entry.input == Input::highRange ? scene : mosaic;
      cards.push_back(*entry.exportName == '\0' ? cardOf(entry, input, folder, file)
                                                : make(entry, input, original, folder, file));
    }
  }

  Card head = {};
  head.title = "The photograph";
  head.file = "photo.png";
  head.width = original.width;
  head.height = original.height;
  OutputFile page(folder / "index.html");
  const std::string html = contactSheet(head, cards);
  std::fwrite(html.data(), 1, html.size(), page.get());
  page.commit();
  std::printf("%zu pictures in %s\n", cards.size(), (folder / "index.html").c_str());
}

}  // namespace zim::tool
