#include "tools/demo.h"

#include <unistd.h>

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
#include "tools/failure.h"
#include "tools/job.h"
#include "tools/measure.h"
#include "zimcore.h"

extern "C" const char zimPhoto[], zimPhotoEnd[];

namespace zim::tool {
namespace {

enum class Input { photo, highRange };

struct Entry {
  const char* group;
  const char* exportName;
  const char* title;
  const char* settings = "";
  Input input = Input::photo;
  int zoom = 1;  // shows a part of the result, each pixel so many times as wide and high
};

constexpr const char* kGray = "Gray";
constexpr const char* kLumaChroma = "Luma and chroma";
constexpr const char* kYCoCg = "YCoCg";
constexpr const char* kTwist = "Colour twist";
constexpr const char* kGamma = "Gamma";
constexpr const char* kToneMapping = "Tone mapping";

// Exports that the library lacks are left out.
constexpr Entry kEntries[] = {
    {kGray, "zimiRGBToGray_8u_C3C1R", "Luma with the usual weights"},
    {kGray, "zimiColorToGray_8u_C3C1R", "Red alone: the larches glow", "coeffs=1,0,0"},
    {kGray, "zimiColorToGray_8u_C3C1R", "Blue alone: the larches go dark", "coeffs=0,0,1"},
    {kGray, "zimiRGBToGray_16u_C3C1R", "Luma at 16 bits a sample"},
    {kGray, "zimiColorToGray_32f_C3C1R", "Green lifted, in floating point", "coeffs=-0.3,1.6,-0.3"},
    {kGray, "zimiColorToGray_64f_C3C1R", "Sky against foliage: blue less red", "coeffs=-1,0.6,1.2"},

    {kLumaChroma, "zimiRGBToYCbCr_8u_C3P3R", "Y, Cb and Cr: brightness, then what is blue, then what is red"},
    {kLumaChroma, "zimiRGBToYUV_8u_P3R", "Y, U and V with analogue weights"},
    {kLumaChroma, "zimiYCbCrToRGB_8u_P3C3R", "To YCbCr and back"},
    {kLumaChroma, "zimiYCbCrToBGR_709CSC_8u_P3C3R", "The same planes taken for BT.709: colours shift"},
    {kLumaChroma, "zimiYUVToRGB_8u_C3R", "To YUV and back"},

    {kLumaChroma, "zimiRGBToYCbCr420_8u_C3P3R", "4:2:0: chroma at half the width and height"},
    {kLumaChroma, "zimiBGRToYCbCr420_709CSC_8u_C3P2R", "4:2:0 with Cb and Cr as pairs, BT.709"},
    {kLumaChroma, "zimiRGBToCbYCr422_8u_C3C2R", "4:2:2 with filtered chroma"},
    {kLumaChroma, "zimiBGRToYCbCr411_8u_C3P3R", "4:1:1: chroma at a quarter of the width"},
    {kLumaChroma, "zimiBGR565ToBGR_16u8u_C3R", "From 16 bits a pixel: 32 levels of red and blue, 64 of green", "",
     Input::photo, 4},

    {kYCoCg, "zimiRGBToYCoCg_8u_C3P3R", "Y, Co and Cg: brightness, orange against blue, green against purple"},
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

class Progress {
 public:
  explicit Progress(std::size_t steps) : steps_(steps) {}
  ~Progress() {
    if (shown_) std::fputs("\r\033[K", stderr);
  }
  void next(const char* what) {
    ++step_;
    if (shown_) std::fprintf(stderr, "\r\033[K[%zu/%zu] %s", step_, steps_, what);
  }

 private:
  std::size_t step_ = 0, steps_;
  bool shown_ = isatty(STDERR_FILENO) != 0;
};

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

Card make(const Entry& entry, const Picture& input, const std::filesystem::path& folder, const std::string& file) {
  constexpr int kRounds = 11;
  Job job(exportNamed(entry.exportName), input, wordsOf(entry.settings));
  job.run();
  const Picture picture = enlarged(job.picture(), entry.zoom);
  writePng(folder / file, picture);
  const double seconds = measure({[&] { job.run(); }}, kRounds).front().median;
  return {entry.group,    entry.title,   entry.exportName,
          entry.settings, file,          picture.width,
          picture.height, 1e3 * seconds, megapixels({input.width, input.height}) / seconds};
}

}  // namespace

void demo(const std::string& name) {
  const std::filesystem::path folder = name;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) throw Failure("cannot make the folder " + name + ": " + error.message());

  zimSetNumThreads(1);
  const Picture original = photo();
  const Picture scene = highRange(original);
  writePng(folder / "photo.png", original);

  std::vector<const Entry*> entries;
  for (const Entry& entry : kEntries) {
    if (catalogue::find(entry.exportName) != nullptr) entries.push_back(&entry);
  }
  std::vector<Card> cards;
  {
    Progress progress(entries.size());
    for (const Entry* entry : entries) {
      progress.next(entry->exportName);
      char file[16];
      std::snprintf(file, sizeof file, "%02zu.png", cards.size() + 1);
      cards.push_back(make(*entry, entry->input == Input::photo ? original : scene, folder, file));
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
  std::printf("%zu conversions in %s\n", cards.size(), (folder / "index.html").c_str());
}

}  // namespace zim::tool
