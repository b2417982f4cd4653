// libswscale without scaling: one conversion of pixel formats for each pair.
//
// Its conversions of full-resolution YUV to packed RGB stay out: they are scalar code, far behind libyuv, or, with
// SWS_FAST_BILINEAR, halve the resolution of chroma.

extern "C" {
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <stdexcept>

#include "bench/peers.h"

namespace zim::bench {
namespace {

using catalogue::Image;

std::size_t planesOf(AVPixelFormat format) { return static_cast<std::size_t>(av_pix_fmt_count_planes(format)); }

Call conversion(Image& source, AVPixelFormat from, Image& destination, AVPixelFormat to) {
  const ZimiSize size = source.size();
  const std::shared_ptr<SwsContext> context(sws_getContext(size.width, size.height, from, size.width, size.height, to,
                                                           SWS_BILINEAR, nullptr, nullptr, nullptr),
                                            sws_freeContext);
  if (!context) throw std::runtime_error("no such conversion in libswscale");
  return [=, in = picture(source, planesOf(from)), out = picture(destination, planesOf(to))] {
    return sws_scale(context.get(), in.data.data(), in.step.data(), 0, size.height, out.data.data(), out.step.data()) ==
           size.height;
  };
}

const Enter entered([] {
  struct Row {
    const char* exportName;
    AVPixelFormat source, destination;
  };
  const Row rows[] = {
      {"zimiRGBToGray_8u_C3C1R", AV_PIX_FMT_RGB24, AV_PIX_FMT_GRAY8},
      {"zimiRGBToGray_8u_AC4C1R", AV_PIX_FMT_RGB0, AV_PIX_FMT_GRAY8},
      {"zimiRGBToGray_16u_C3C1R", AV_PIX_FMT_RGB48, AV_PIX_FMT_GRAY16},
      {"zimiRGBToGray_16u_AC4C1R", AV_PIX_FMT_RGBA64, AV_PIX_FMT_GRAY16},
      {"zimiRGBToGray_32f_C3C1R", AV_PIX_FMT_GBRPF32, AV_PIX_FMT_GRAYF32},

      {"zimiRGBToYCbCr_8u_C3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P},
      {"zimiRGBToYCbCr_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV444P},
      {"zimiRGBToYCbCr_8u_AC4P3R", AV_PIX_FMT_RGB0, AV_PIX_FMT_YUV444P},
      {"zimiRGBToYCbCr_8u_P3R", AV_PIX_FMT_GBRP, AV_PIX_FMT_YUV444P},
      {"zimiRGBToYUV_8u_AC4P4R", AV_PIX_FMT_RGBA, AV_PIX_FMT_YUVA444P},

      {"zimiCFAToRGB_8u_C1C3R", AV_PIX_FMT_BAYER_RGGB8, AV_PIX_FMT_RGB24},
      {"zimiCFAToRGB_16u_C1C3R", AV_PIX_FMT_BAYER_RGGB16LE, AV_PIX_FMT_RGB48},

      {"zimiYCbCr420ToRGB_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB24},
      {"zimiYCbCr420ToBGR_8u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGR24},
      {"zimiYCbCr420ToBGR_8u_P3C4R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_BGRA},
      {"zimiYCbCr420ToRGB_8u_P2C3R", AV_PIX_FMT_NV12, AV_PIX_FMT_RGB24},
      {"zimiYCbCr422ToRGB_8u_P3C3R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_RGB24},
      {"zimiYCbCr411ToBGR_8u_P3C3R", AV_PIX_FMT_YUV411P, AV_PIX_FMT_BGR24},
      {"zimiYCbCr420ToBGR565Dither_8u16u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB565LE},
      {"zimiYCbCr420ToBGR555Dither_8u16u_P3C3R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_RGB555LE},

      {"zimiYCbCr420_8u_P2P3R", AV_PIX_FMT_NV12, AV_PIX_FMT_YUV420P},
      {"zimiYCbCr420_8u_P3P2R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_NV12},
      {"zimiYCbCr422_8u_C2P3R", AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV422P},
      {"zimiYCbCr422_8u_P3C2R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_YUYV422},
      {"zimiYCbCr422ToCbYCr422_8u_P3C2R", AV_PIX_FMT_YUV422P, AV_PIX_FMT_UYVY422},
      {"zimiYCbCr422ToYCbCr420_8u_C2P3R", AV_PIX_FMT_YUYV422, AV_PIX_FMT_YUV420P},
      {"zimiCbYCr422ToYCbCr420_8u_C2P3R", AV_PIX_FMT_UYVY422, AV_PIX_FMT_YUV420P},
      {"zimiYCrCb420ToYCbCr422_8u_P3C2R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_YUYV422},
      {"zimiYCrCb420ToCbYCr422_8u_P3C2R", AV_PIX_FMT_YUV420P, AV_PIX_FMT_UYVY422},

      {"zimiRGBToYCbCr420_8u_C3P3R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUV420P},
      {"zimiBGRToYCbCr420_8u_C3P3R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV420P},
      {"zimiBGRToYCbCr420_709CSC_8u_C3P2R", AV_PIX_FMT_BGR24, AV_PIX_FMT_NV12},
      {"zimiBGRToYCbCr411_8u_C3P3R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV411P},
      {"zimiBGRToYCbCr422_8u_C3P3R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUV422P},
      {"zimiBGRToYCbCr422_8u_C3C2R", AV_PIX_FMT_BGR24, AV_PIX_FMT_YUYV422},
      {"zimiRGBToYCbCr422_8u_C3C2R", AV_PIX_FMT_RGB24, AV_PIX_FMT_YUYV422},
      {"zimiBGR565ToYCbCr420_16u8u_C3P3R", AV_PIX_FMT_RGB565LE, AV_PIX_FMT_YUV420P},
      {"zimiBGR565ToBGR_16u8u_C3R", AV_PIX_FMT_RGB565LE, AV_PIX_FMT_BGR24},
  };
  std::vector<Pair> some;
  for (const Row& row : rows) {
    some.push_back({row.exportName, "swscale",
                    std::string(av_get_pix_fmt_name(row.source)) + " to " + av_get_pix_fmt_name(row.destination),
                    [=](Image& source, Image& destination) {
                      return conversion(source, row.source, destination, row.destination);
                    }});
  }
  return some;
}());

}  // namespace
}  // namespace zim::bench
