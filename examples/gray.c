/* Gray of the right half of a small RGB image: a region is a pointer to its first pixel, a step and a size. */
#include <stdio.h>
#include <zimcc.h>

enum { kWidth = 4, kHeight = 2 };

int main(void) {
  const Zim8u rgb[kHeight][kWidth][3] = {
      {{0, 0, 0}, {85, 85, 85}, {170, 170, 170}, {255, 255, 255}},
      {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {255, 255, 0}},
  };
  Zim8u gray[kHeight][2];
  const ZimiSize half = {2, kHeight};
  const ZimLibraryVersion* version = zimccGetLibVersion();
  ZimResult result;

  printf("zimcc %d.%d, built for %.4s\n", version->versionMajor, version->versionMinor, version->targetTag);

  /* The step is that of the whole image, so that each row begins below the one above. */
  result = zimiRGBToGray_8u_C3C1R(rgb[0][kWidth - 2], sizeof rgb[0], gray[0], sizeof gray[0], half);
  if (result != zimResultOk) {
    fprintf(stderr, "conversion failed: %d\n", result);
    return 1;
  }
  for (int y = 0; y < kHeight; ++y) printf("%3d %3d\n", gray[y][0], gray[y][1]);

  /* Errors come back as results; nothing is written then. */
  result = zimiRGBToGray_8u_C3C1R(NULL, sizeof rgb[0], gray[0], sizeof gray[0], half);
  printf("without a source: %d\n", result);
  return result == zimResultNullPointer ? 0 : 1;
}
