// libyuv: 8-bit pixels, coefficients of 6 to 8 bits. Its ARGB has B at byte 0, its RAW has R there.

#include <libyuv.h>

#include <array>
#include <tuple>
#include <utility>

#include "bench/peers.h"

namespace zim::bench {
namespace {

using catalogue::Image;
using Byte = std::uint8_t;
using Prepare = std::function<Call(Image&, Image&)>;

Prepare job(int (*convert)(const Byte*, int, Byte*, int, int, int)) {
  return [=](Image& source, Image& destination) -> Call {
    return [=, from = picture(source, 1), to = picture(destination, 1), size = source.size()] {
      return convert(from.data[0], from.step[0], to.data[0], to.step[0], size.width, size.height) == 0;
    };
  };
}

Prepare job(int (*encode)(const Byte*, int, Byte*, int, Byte*, int, Byte*, int, int, int)) {
  return [=](Image& source, Image& destination) -> Call {
    return [=, from = picture(source, 1), to = picture(destination, 3), size = source.size()] {
      return encode(from.data[0], from.step[0], to.data[0], to.step[0], to.data[1], to.step[1], to.data[2], to.step[2],
                    size.width, size.height) == 0;
    };
  };
}

using Decoder = int (*)(const Byte*, int, const Byte*, int, const Byte*, int, Byte*, int, const libyuv::YuvConstants*,
                        int, int);

Prepare job(Decoder decode, const libyuv::YuvConstants& matrix) {
  return [=, &matrix](Image& source, Image& destination) -> Call {
    return [=, &matrix, from = picture(source, 3), to = picture(destination, 1), size = source.size()] {
      return decode(from.data[0], from.step[0], from.data[1], from.step[1], from.data[2], from.step[2], to.data[0],
                    to.step[0], &matrix, size.width, size.height) == 0;
    };
  };
}

// Between as many planes as there are on either side, each passed as a pointer and a step.
template <std::size_t From, std::size_t To, class... Arguments>
Prepare planes(int (*convert)(Arguments...)) {
  return [=](Image& source, Image& destination) -> Call {
    return [=, from = picture(source, From), to = picture(destination, To), size = source.size()] {
      const auto arguments = []<std::size_t... i>(const Picture& p, std::index_sequence<i...>) {
        return std::tuple_cat(std::tuple(p.data[i], p.step[i])...);
      };
      return std::apply(convert, std::tuple_cat(arguments(from, std::make_index_sequence<From>()),
                                                arguments(to, std::make_index_sequence<To>()),
                                                std::tuple(size.width, size.height))) == 0;
    };
  };
}

// 4:2:0 with chroma interpolated in both directions.
Prepare interpolatedChroma() {
  return planes<3, 1>(+[](const Byte* y, int yStep, const Byte* u, int uStep, const Byte* v, int vStep, Byte* argb,
                          int argbStep, int width, int height) {
    return libyuv::I420ToARGBMatrixFilter(y, yStep, u, uStep, v, vStep, argb, argbStep, &libyuv::kYuvI601Constants,
                                          width, height, libyuv::kFilterBilinear);
  });
}

// A null pattern selects libyuv's own.
Prepare ditherJob() {
  return [](Image& source, Image& destination) -> Call {
    return [from = picture(source, 3), to = picture(destination, 1), size = source.size()] {
      return libyuv::I420ToRGB565Dither(from.data[0], from.step[0], from.data[1], from.step[1], from.data[2],
                                        from.step[2], to.data[0], to.step[0], nullptr, size.width, size.height) == 0;
    };
  };
}

// Sepia in units of 1/64, alpha kept.
Prepare colourMatrix() {
  return job([](const Byte* source, int sourceStep, Byte* destination, int destinationStep, int width, int height) {
    static constexpr std::int8_t kSepia[16] = {9, 34, 17, 0, 11, 44, 22, 0, 12, 49, 25, 0, 0, 0, 0, 64};
    return libyuv::ARGBColorMatrix(source, sourceStep, destination, destinationStep, kSepia, width, height);
  });
}

// Any table takes the same time; this one halves.
Prepare colourTable() {
  return [](Image&, Image& image) -> Call {
    std::array<Byte, 1024> table;
    for (std::size_t i = 0; i < table.size(); ++i) table[i] = static_cast<Byte>(i / 8);
    return [table, to = picture(image, 1), size = image.size()] {
      return libyuv::RGBColorTable(to.data[0], to.step[0], table.data(), 0, 0, size.width, size.height) == 0;
    };
  };
}

const Enter entered([] {
  using namespace libyuv;
  struct Row {
    const char* exportName;
    const char* label;
    Prepare prepare;
  };
  const Row rows[] = {
      {"zimiRGBToGray_8u_C3C1R", "RAWToJ400", job(RAWToJ400)},
      {"zimiRGBToGray_8u_AC4C1R", "ARGBToJ400", job(ARGBToJ400)},

      {"zimiRGBToYCbCr_8u_AC4P3R", "ARGBToI444", job(ARGBToI444)},
      {"zimiYCbCrToRGB_8u_C3R", "I444ToRGB24, planes for pixels", job(I444ToRGB24Matrix, kYuvI601Constants)},
      {"zimiYCbCrToRGB_8u_P3C3R", "I444ToRGB24", job(I444ToRGB24Matrix, kYuvI601Constants)},
      {"zimiYCbCrToBGR_8u_P3C3R", "I444ToRGB24", job(I444ToRGB24Matrix, kYuvI601Constants)},
      {"zimiYCbCrToBGR_709CSC_8u_P3C3R", "H444ToRGB24", job(I444ToRGB24Matrix, kYuvH709Constants)},
      {"zimiYUVToRGB_8u_C3R", "J444ToRGB24, planes for pixels", job(I444ToRGB24Matrix, kYuvJPEGConstants)},
      {"zimiYUVToRGB_8u_P3C3R", "J444ToRGB24", job(I444ToRGB24Matrix, kYuvJPEGConstants)},
      {"zimiYCbCrToRGB_8u_P3C4R", "I444ToARGB", job(I444ToARGBMatrix, kYuvI601Constants)},
      {"zimiYCbCrToBGR_8u_P3C4R", "I444ToARGB", job(I444ToARGBMatrix, kYuvI601Constants)},
      {"zimiYCbCrToBGR_709CSC_8u_P3C4R", "H444ToARGB", job(I444ToARGBMatrix, kYuvH709Constants)},

      {"zimiRGBToYCbCr420_8u_C3P3R", "RAWToI420", job(RAWToI420)},
      {"zimiBGRToYCbCr420_8u_C3P3R", "RGB24ToI420", job(RGB24ToI420)},
      {"zimiRGBToYUV420_8u_C3P3R", "RAWToJ420", job(RAWToJ420)},
      {"zimiBGRToYCbCr420_8u_AC4P3R", "ARGBToI420", job(ARGBToI420)},
      {"zimiBGRToYUV420_8u_AC4P3R", "ARGBToJ420", job(ARGBToJ420)},
      {"zimiBGRToYCbCr422_8u_AC4P3R", "ARGBToI422", job(ARGBToI422)},
      {"zimiBGRToYCbCr422_8u_AC4C2R", "ARGBToYUY2", job(ARGBToYUY2)},
      {"zimiBGRToCbYCr422_8u_AC4C2R", "ARGBToUYVY", job(ARGBToUYVY)},
      {"zimiBGR565ToYCbCr420_16u8u_C3P3R", "RGB565ToI420", job(RGB565ToI420)},
      {"zimiBGR555ToYCbCr420_16u8u_C3P3R", "ARGB1555ToI420", job(ARGB1555ToI420)},

      {"zimiYCbCr420ToRGB_8u_P3C3R", "I420ToRAW", planes<3, 1>(I420ToRAW)},
      {"zimiYCbCr420ToBGR_8u_P3C3R", "I420ToRGB24", job(I420ToRGB24Matrix, kYuvI601Constants)},
      {"zimiYCbCr420ToBGR_709CSC_8u_P3C3R", "H420ToRGB24", job(I420ToRGB24Matrix, kYuvH709Constants)},
      {"zimiYUV420ToBGR_8u_P3C3R", "J420ToRGB24", job(I420ToRGB24Matrix, kYuvJPEGConstants)},
      {"zimiYCbCr420ToBGR_8u_P3C4R", "I420ToARGB", job(I420ToARGBMatrix, kYuvI601Constants)},
      {"zimiYCbCr420ToBGR_709HDTV_8u_P3C4R", "F420ToARGB", job(I420ToARGBMatrix, kYuvF709Constants)},
      {"zimiYCbCr420ToRGB_8u_P2C3R", "NV12ToRAW", planes<2, 1>(NV12ToRAW)},
      {"zimiYCbCr420ToRGB_8u_P2C4R", "NV12ToARGB", planes<2, 1>(NV12ToARGB)},
      {"zimiYCbCr422ToRGB_8u_P3C3R", "I422ToRGB24", job(I422ToRGB24Matrix, kYuvI601Constants)},
      {"zimiYUV422ToRGB_8u_P3AC4R", "J422ToARGB", job(I422ToARGBMatrix, kYuvJPEGConstants)},
      {"zimiCbYCr422ToBGR_8u_C2C4R", "UYVYToARGB", job(UYVYToARGB)},
      {"zimiYCbCr422ToBGR_8u_C2C4R", "YUY2ToARGB", job(YUY2ToARGB)},
      {"zimiYCbCr420ToBGR565_8u16u_P3C3R", "I420ToRGB565", planes<3, 1>(I420ToRGB565)},
      {"zimiYCbCr420ToBGR555_8u16u_P3C3R", "I420ToARGB1555", planes<3, 1>(I420ToARGB1555)},
      {"zimiYCbCr420ToBGR444_8u16u_P3C3R", "I420ToARGB4444", planes<3, 1>(I420ToARGB4444)},
      {"zimiYCbCr422ToBGR565_8u16u_P3C3R", "I422ToRGB565", planes<3, 1>(I422ToRGB565)},
      {"zimiYCbCr420ToBGR565Dither_8u16u_P3C3R", "I420ToRGB565Dither", ditherJob()},

      {"zimiYCbCr420_8u_P2P3R", "NV12ToI420", planes<2, 3>(NV12ToI420)},
      {"zimiYCbCr420_8u_P3P2R", "I420ToNV12", planes<3, 2>(I420ToNV12)},
      {"zimiYCbCr422_8u_C2P3R", "YUY2ToI422", planes<1, 3>(YUY2ToI422)},
      {"zimiYCbCr422_8u_P3C2R", "I422ToYUY2", planes<3, 1>(I422ToYUY2)},
      {"zimiCbYCr422ToYCbCr422_8u_C2P3R", "UYVYToI422", planes<1, 3>(UYVYToI422)},
      {"zimiYCbCr422ToCbYCr422_8u_P3C2R", "I422ToUYVY", planes<3, 1>(I422ToUYVY)},
      {"zimiYCbCr422ToYCbCr420_8u_C2P3R", "YUY2ToI420, rows averaged", planes<1, 3>(YUY2ToI420)},
      {"zimiCbYCr422ToYCbCr420_8u_C2P3R", "UYVYToI420, rows averaged", planes<1, 3>(UYVYToI420)},
      {"zimiYCbCr422ToYCbCr420_8u_C2P2R", "YUY2ToNV12, rows averaged", planes<1, 2>(YUY2ToNV12)},
      {"zimiCbYCr422ToYCbCr420_8u_C2P2R", "UYVYToNV12, rows averaged", planes<1, 2>(UYVYToNV12)},
      {"zimiYCbCr422ToYCbCr420_8u_P3R", "I422ToI420, rows averaged", planes<3, 3>(I422ToI420)},
      {"zimiYCbCr420ToYCbCr422_8u_P3R", "I420ToI422, rows interpolated", planes<3, 3>(I420ToI422)},
      {"zimiYCrCb420ToYCbCr422_8u_P3C2R", "I420ToYUY2", planes<3, 1>(I420ToYUY2)},
      {"zimiYCrCb420ToCbYCr422_8u_P3C2R", "I420ToUYVY", planes<3, 1>(I420ToUYVY)},
      {"zimiYCrCb420ToBGR_Filter_8u_P3C4R", "I420ToARGB, bilinear both ways", interpolatedChroma()},

      {"zimiColorTwist32f_8u_AC4R", "ARGBColorMatrix, 1/64, no offset", colourMatrix()},
      {"zimiColorTwist32f_8u_AC4IR", "ARGBColorMatrix, 1/64, no offset", colourMatrix()},
      {"zimiGammaFwd_8u_AC4IR", "RGBColorTable", colourTable()},
      {"zimiGammaInv_8u_AC4IR", "RGBColorTable", colourTable()},
  };
  std::vector<Pair> some;
  for (const Row& row : rows) some.push_back({row.exportName, "libyuv", row.label, row.prepare});
  return some;
}());

}  // namespace
}  // namespace zim::bench
