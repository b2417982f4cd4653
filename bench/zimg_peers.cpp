// zimg: planes of integers or floats, computed in single precision. Interleaved images go to it as three planes.

#include <zimg.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>

#include "bench/peers.h"

namespace zim::bench {
namespace {

using catalogue::Image;

// Linear near black and a power above that; zimg takes BT.709 for a plain power.
constexpr auto kTransfer = ZIMG_TRANSFER_IEC_61966_2_1;

zimg_image_format format(zimg_pixel_type_e type, zimg_color_family_e family, zimg_matrix_coefficients_e matrix,
                         zimg_pixel_range_e range = ZIMG_RANGE_FULL,
                         zimg_transfer_characteristics_e transfer = kTransfer) {
  zimg_image_format f;
  zimg_image_format_default(&f, ZIMG_API_VERSION);
  f.pixel_type = type;
  f.depth = type == ZIMG_PIXEL_FLOAT ? 32 : type == ZIMG_PIXEL_WORD ? 16 : 8;
  f.color_family = family;
  f.matrix_coefficients = matrix;
  f.transfer_characteristics = transfer;
  f.color_primaries = ZIMG_PRIMARIES_BT709;
  f.pixel_range = range;
  return f;
}

zimg_image_format rgb(zimg_pixel_type_e type, zimg_transfer_characteristics_e transfer = kTransfer) {
  return format(type, ZIMG_COLOR_RGB, ZIMG_MATRIX_RGB, ZIMG_RANGE_FULL, transfer);
}
zimg_image_format linearRgb(zimg_pixel_type_e type) { return rgb(type, ZIMG_TRANSFER_LINEAR); }
zimg_image_format gray(zimg_pixel_type_e type) { return format(type, ZIMG_COLOR_GREY, ZIMG_MATRIX_ST170_M); }
zimg_image_format yCbCr(zimg_pixel_type_e type) {
  return format(type, ZIMG_COLOR_YUV, ZIMG_MATRIX_ST170_M, ZIMG_RANGE_LIMITED);
}
zimg_image_format subsampled(zimg_image_format f, unsigned across, unsigned down) {
  f.subsample_w = across;
  f.subsample_h = down;
  return f;
}
zimg_image_format yuv(zimg_pixel_type_e type) { return format(type, ZIMG_COLOR_YUV, ZIMG_MATRIX_ST170_M); }
zimg_image_format yCgCo(zimg_pixel_type_e type) { return format(type, ZIMG_COLOR_YUV, ZIMG_MATRIX_YCGCO); }

template <class Buffer>
Buffer buffer(Image& image, zimg_color_family_e family) {
  const Picture p = picture(image, family == ZIMG_COLOR_GREY ? 1 : 3);
  Buffer b = {};
  b.version = ZIMG_API_VERSION;
  for (std::size_t i = 0; i < 3; ++i) {
    b.plane[i].data = p.data[i];
    b.plane[i].stride = p.step[i];
    b.plane[i].mask = ZIMG_BUFFER_MAX;
  }
  return b;
}

Call conversion(Image& source, zimg_image_format from, Image& destination, zimg_image_format to,
                zimg_dither_type_e dither = ZIMG_DITHER_NONE) {
  from.width = to.width = static_cast<unsigned>(source.size().width);
  from.height = to.height = static_cast<unsigned>(source.size().height);
  zimg_graph_builder_params params;
  zimg_graph_builder_params_default(&params, ZIMG_API_VERSION);
  params.cpu_type = ZIMG_CPU_AUTO_64B;
  params.allow_approximate_gamma = 1;
  params.dither_type = dither;
  const std::shared_ptr<zimg_filter_graph> graph(zimg_filter_graph_build(&from, &to, &params), zimg_filter_graph_free);
  std::size_t scratchBytes = 0;
  if (!graph || zimg_filter_graph_get_tmp_size(graph.get(), &scratchBytes) != ZIMG_ERROR_SUCCESS) {
    throw std::runtime_error("no such conversion in zimg");
  }
  const std::shared_ptr<void> scratch(std::aligned_alloc(64, (scratchBytes / 64 + 1) * 64), std::free);
  return [=, in = buffer<zimg_image_buffer_const>(source, from.color_family),
          out = buffer<zimg_image_buffer>(destination, to.color_family)] {
    return zimg_filter_graph_process(graph.get(), &in, &out, scratch.get(), nullptr, nullptr, nullptr, nullptr) ==
           ZIMG_ERROR_SUCCESS;
  };
}

const Enter entered([] {
  constexpr auto k8u = ZIMG_PIXEL_BYTE;
  constexpr auto k16u = ZIMG_PIXEL_WORD;
  constexpr auto k32f = ZIMG_PIXEL_FLOAT;
  constexpr const char* kGray = "gray of planes";
  constexpr const char* kMatrix = "3 x 3 matrix on planes, no offset";
  constexpr const char* kYCbCr = "YCbCr, planes";
  constexpr const char* kYuv = "full-range YCbCr, planes";
  constexpr const char* kYCgCo = "YCgCo, planes";
  constexpr const char* kCurve = "approximate sRGB curve, planes";
  constexpr const char* kRound = "to 8 bits, rounded";
  constexpr const char* kOrdered = "ordered dither, planes";
  constexpr const char* kDiffusion = "Floyd-Steinberg, planes";
  struct Row {
    const char* exportName;
    const char* label;
    zimg_image_format source, destination;
    zimg_dither_type_e dither = ZIMG_DITHER_NONE;
    int levels = 0;
  };
  const Row rows[] = {
      {"zimiRGBToGray_16u_C3C1R", kGray, rgb(k16u), gray(k16u)},
      {"zimiRGBToGray_32f_C3C1R", kGray, rgb(k32f), gray(k32f)},

      {"zimiRGBToYCbCr_8u_C3R", kYCbCr, rgb(k8u), yCbCr(k8u)},
      {"zimiRGBToYCbCr_8u_C3P3R", kYCbCr, rgb(k8u), yCbCr(k8u)},
      {"zimiRGBToYCbCr_8u_P3R", kYCbCr, rgb(k8u), yCbCr(k8u)},
      {"zimiYCbCrToRGB_8u_P3R", kYCbCr, yCbCr(k8u), rgb(k8u)},
      {"zimiRGBToYUV_8u_C3R", kYuv, rgb(k8u), yuv(k8u)},
      {"zimiRGBToYUV_8u_C3P3R", kYuv, rgb(k8u), yuv(k8u)},
      {"zimiRGBToYUV_8u_P3R", kYuv, rgb(k8u), yuv(k8u)},
      {"zimiYUVToRGB_8u_P3R", kYuv, yuv(k8u), rgb(k8u)},

      {"zimiYCbCr420ToYCbCr422_Filter_8u_P3R", "bicubic rows of chroma", subsampled(yCbCr(k8u), 1, 1),
       subsampled(yCbCr(k8u), 1, 0)},

      {"zimiRGBToYCoCg_8u_C3P3R", kYCgCo, rgb(k8u), yCgCo(k8u)},
      {"zimiYCoCgToRGB_8u_P3C3R", kYCgCo, yCgCo(k8u), rgb(k8u)},
      {"zimiBGRToYCoCg_8u16s_C3P3R", kYCgCo, rgb(k8u), yCgCo(k16u)},
      {"zimiYCoCgToBGR_16s8u_P3C3R", kYCgCo, yCgCo(k16u), rgb(k8u)},
      {"zimiSBGRToYCoCg_16s_C3P3R", kYCgCo, rgb(k16u), yCgCo(k16u)},
      {"zimiYCoCgToSBGR_16s_P3C3R", kYCgCo, yCgCo(k16u), rgb(k16u)},

      {"zimiColorTwist32f_8u_C3R", kMatrix, rgb(k8u), yuv(k8u)},
      {"zimiColorTwist32f_8u_P3R", kMatrix, rgb(k8u), yuv(k8u)},
      {"zimiColorTwist32f_16u_C3R", kMatrix, rgb(k16u), yuv(k16u)},
      {"zimiColorTwist32f_16u_P3R", kMatrix, rgb(k16u), yuv(k16u)},
      {"zimiColorTwist_32f_C3R", kMatrix, rgb(k32f), yuv(k32f)},
      {"zimiColorTwist_32f_P3R", kMatrix, rgb(k32f), yuv(k32f)},

      {"zimiGammaFwd_8u_C3R", kCurve, linearRgb(k8u), rgb(k8u)},
      {"zimiGammaInv_8u_C3R", kCurve, rgb(k8u), linearRgb(k8u)},
      {"zimiGammaFwd_16u_C3R", kCurve, linearRgb(k16u), rgb(k16u)},
      {"zimiGammaInv_16u_C3R", kCurve, rgb(k16u), linearRgb(k16u)},
      {"zimiGammaFwd_32f_C3R", kCurve, linearRgb(k32f), rgb(k32f)},
      {"zimiGammaInv_32f_C3R", kCurve, rgb(k32f), linearRgb(k32f)},
      {"zimiGammaFwd_32f_P3R", kCurve, linearRgb(k32f), rgb(k32f)},
      {"zimiGammaInv_32f_P3R", kCurve, rgb(k32f), linearRgb(k32f)},

      // Its reductions are to all values of the narrower type.
      {"zimiReduceBits_16u8u_C1R:none", kRound, gray(k16u), gray(k8u), ZIMG_DITHER_NONE, 256},
      {"zimiReduceBits_16u8u_C1R:bayer", kOrdered, gray(k16u), gray(k8u), ZIMG_DITHER_ORDERED, 256},
      {"zimiReduceBits_16u8u_C1R", kDiffusion, gray(k16u), gray(k8u), ZIMG_DITHER_ERROR_DIFFUSION, 256},
      {"zimiReduceBits_16u8u_C3R", kDiffusion, rgb(k16u), rgb(k8u), ZIMG_DITHER_ERROR_DIFFUSION, 256},
      {"zimiReduceBits_32f8u_C1R", kDiffusion, gray(k32f), gray(k8u), ZIMG_DITHER_ERROR_DIFFUSION, 256},
      {"zimiReduceBits_32f16u_C3R:bayer", kOrdered, rgb(k32f), rgb(k16u), ZIMG_DITHER_ORDERED, 65536},
  };
  std::vector<Pair> some;
  for (const Row& row : rows) {
    some.push_back({row.exportName, "zimg", row.label,
                    [=](Image& source, Image& destination) {
                      return conversion(source, row.source, destination, row.destination, row.dither);
                    },
                    row.levels});
  }
  return some;
}());

}  // namespace
}  // namespace zim::bench
