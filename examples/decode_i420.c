/* Raw video to RGB: reads frames of 4:2:0 planes (I420) from standard input and writes them as RGB, 24 bits a pixel.
 *
 *     zimcc_example_decode_i420 352 288 <clip.yuv >clip.rgb
 */
#include <stdio.h>
#include <stdlib.h>
#include <zimcc.h>

static int decode(Zim8u* frame, Zim8u* rgb, ZimiSize size) {
  const size_t width = (size_t)size.width, height = (size_t)size.height;
  const size_t lumaBytes = width * height, chromaBytes = lumaBytes / 4, rgbBytes = 3 * lumaBytes;
  /* One plane after another, without gaps. Steps could as well be those of a decoder's padded planes. */
  const Zim8u* const planes[3] = {frame, frame + lumaBytes, frame + lumaBytes + chromaBytes};
  const Zim32s steps[3] = {size.width, size.width / 2, size.width / 2};
  const size_t frameBytes = lumaBytes + 2 * chromaBytes;
  size_t bytes;
  int frames = 0;

  for (; (bytes = fread(frame, 1, frameBytes, stdin)) == frameBytes; ++frames) {
    const ZimResult result = zimiYCbCr420ToRGB_8u_P3C3R(planes, steps, rgb, 3 * size.width, size);
    if (result != zimResultOk) {
      fprintf(stderr, "frame %d: conversion failed with %d\n", frames, result);
      return 1;
    }
    if (fwrite(rgb, 1, rgbBytes, stdout) != rgbBytes) {
      fprintf(stderr, "frame %d: cannot write\n", frames);
      return 1;
    }
  }
  if (bytes != 0) fprintf(stderr, "%lu bytes at the end are less than a frame\n", (unsigned long)bytes);
  fprintf(stderr, "%d frames of %d x %d\n", frames, size.width, size.height);
  return bytes == 0 && ferror(stdin) == 0 && fflush(stdout) == 0 ? 0 : 1;
}

int main(int argc, char** argv) {
  ZimiSize size = {0, 0};
  Zim8u *frame, *rgb;
  int failed = 1;

  if (argc == 3) {
    size.width = atoi(argv[1]);
    size.height = atoi(argv[2]);
  }
  /* Frames of an odd size have chroma for part of a block; a sequence has none such. */
  if (size.width < 2 || size.height < 2 || size.width > 16384 || size.height > 16384 || size.width % 2 != 0 ||
      size.height % 2 != 0) {
    fprintf(stderr, "usage: %s WIDTH HEIGHT <frames.yuv >frames.rgb   (even sizes up to 16384)\n", argv[0]);
    return 2;
  }
  frame = malloc((size_t)size.width * (size_t)size.height * 3 / 2);
  rgb = malloc((size_t)size.width * (size_t)size.height * 3);
  if (frame == NULL || rgb == NULL) {
    fprintf(stderr, "no memory for a frame\n");
  } else {
    failed = decode(frame, rgb, size);
  }
  free(rgb);
  free(frame);
  return failed;
}
