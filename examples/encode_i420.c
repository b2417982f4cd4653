/* RGB to raw video: reads frames of RGB, 24 bits a pixel, from standard input and writes them as 4:2:0 planes (I420).
 *
 *     zimcc_example_encode_i420 352 288 <clip.rgb >clip.yuv
 */
#include <stdio.h>
#include <stdlib.h>
#include <zimcc.h>

static int encode(Zim8u* rgb, Zim8u* frame, ZimiSize size) {
  const size_t lumaBytes = (size_t)size.width * (size_t)size.height, chromaBytes = lumaBytes / 4;
  /* One plane after another, without gaps. Steps could as well be those of an encoder's padded planes. */
  Zim8u* const planes[3] = {frame, frame + lumaBytes, frame + lumaBytes + chromaBytes};
  const Zim32s steps[3] = {size.width, size.width / 2, size.width / 2};
  const size_t rgbBytes = 3 * lumaBytes, frameBytes = lumaBytes + 2 * chromaBytes;
  size_t bytes;
  int frames = 0;

  for (; (bytes = fread(rgb, 1, rgbBytes, stdin)) == rgbBytes; ++frames) {
    const ZimResult result = zimiRGBToYCbCr420_8u_C3P3R(rgb, 3 * size.width, planes, steps, size);
    if (result != zimResultOk) {
      fprintf(stderr, "frame %d: conversion failed with %d\n", frames, result);
      return 1;
    }
    if (fwrite(frame, 1, frameBytes, stdout) != frameBytes) {
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
  Zim8u *rgb, *frame;
  int failed = 1;

  if (argc == 3) {
    size.width = atoi(argv[1]);
    size.height = atoi(argv[2]);
  }
  /* An odd last column or row would be left out: the conversion would return zimWarnOddSize. */
  if (size.width < 2 || size.height < 2 || size.width > 16384 || size.height > 16384 || size.width % 2 != 0 ||
      size.height % 2 != 0) {
    fprintf(stderr, "usage: %s WIDTH HEIGHT <frames.rgb >frames.yuv   (even sizes up to 16384)\n", argv[0]);
    return 2;
  }
  rgb = malloc((size_t)size.width * (size_t)size.height * 3);
  frame = malloc((size_t)size.width * (size_t)size.height * 3 / 2);
  if (rgb == NULL || frame == NULL) {
    fprintf(stderr, "no memory for a frame\n");
  } else {
    failed = encode(rgb, frame, size);
  }
  free(frame);
  free(rgb);
  return failed;
}
