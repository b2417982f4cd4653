// PNG files through libpng, which leaves a failed call by longjmp: the functions that it leaves construct nothing.
#include <png.h>

#include <csetjmp>
#include <span>

#include "tools/failure.h"
#include "tools/picture.h"

namespace zim::tool {
namespace {

[[noreturn]] void keepMessage(png_structp png, const char* message) {
  *static_cast<std::string*>(png_get_error_ptr(png)) = message;
  png_longjmp(png, 1);
}

void ignoreMessage(png_structp, const char*) {}

struct Reader {
  std::string message = "out of memory";
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &message, keepMessage, ignoreMessage);
  png_infop info = png_create_info_struct(png);

  Reader() = default;
  Reader(const Reader&) = delete;
  ~Reader() { png_destroy_read_struct(&png, &info, nullptr); }

  bool read(std::FILE* file) {
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) return false;
    png_init_io(png, file);
    png_read_png(png, info, PNG_TRANSFORM_EXPAND | PNG_TRANSFORM_GRAY_TO_RGB, nullptr);
    return true;
  }
};

struct Writer {
  std::string message = "out of memory";
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &message, keepMessage, ignoreMessage);
  png_infop info = png_create_info_struct(png);

  Writer() = default;
  Writer(const Writer&) = delete;
  ~Writer() { png_destroy_write_struct(&png, &info); }

  bool write(std::FILE* file, const Picture& picture, std::span<png_bytep> rows) {
    if (info == nullptr || setjmp(png_jmpbuf(png)) != 0) return false;
    const int type = picture.channels == 1   ? PNG_COLOR_TYPE_GRAY
                     : picture.channels == 3 ? PNG_COLOR_TYPE_RGB
                                             : PNG_COLOR_TYPE_RGB_ALPHA;
    png_init_io(png, file);
    png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height),
                 picture.deep ? 16 : 8, type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_rows(png, info, rows.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    return true;
  }
};

}  // namespace

Picture readPng(std::FILE* file, const std::string& name) {
  Reader reader;
  if (!reader.read(file)) throw Failure("cannot read " + name + " as a PNG: " + reader.message);
  const bool deep = png_get_bit_depth(reader.png, reader.info) == 16;
  Picture picture(static_cast<int>(png_get_image_width(reader.png, reader.info)),
                  static_cast<int>(png_get_image_height(reader.png, reader.info)),
                  png_get_channels(reader.png, reader.info));
  picture.deep = deep;
  png_bytep* const rows = png_get_rows(reader.png, reader.info);
  const auto samples = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.channels);
  for (int y = 0; y < picture.height; ++y) {
    float* to = picture.pixel(0, y);
    const png_byte* from = rows[y];
    for (std::size_t i = 0; i < samples; ++i) {
      to[i] = deep ? static_cast<float>(from[2 * i] << 8 | from[2 * i + 1]) / 65535 : static_cast<float>(from[i]) / 255;
    }
  }
  return picture;
}

void writePng(const std::string& path, const Picture& picture) {
  const int white = picture.deep ? 65535 : 255;
  std::vector<png_byte> bytes;
  bytes.reserve(picture.samples.size() * (picture.deep ? 2 : 1));
  for (const float sample : picture.samples) {
    const unsigned value = quantised(sample, white);
    if (picture.deep) bytes.push_back(static_cast<png_byte>(value >> 8));
    bytes.push_back(static_cast<png_byte>(value));
  }
  std::vector<png_bytep> rows(static_cast<std::size_t>(picture.height));
  const std::size_t rowBytes = bytes.size() / rows.size();
  for (std::size_t y = 0; y < rows.size(); ++y) rows[y] = bytes.data() + y * rowBytes;
  OutputFile output(path);
  Writer writer;
  if (!writer.write(output.get(), picture, rows)) throw Failure("cannot write " + path + ": " + writer.message);
  output.commit();
}

}  // namespace zim::tool
