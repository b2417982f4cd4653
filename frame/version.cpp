#include "frame/target.h"
#include "zimcc.h"

extern "C" [[gnu::visibility("default")]] const ZimLibraryVersion* zimccGetLibVersion(void) {
  // 963 numbers the build of the sources, 58 that of the release: the two count differently and both are reported.
  static constexpr ZimLibraryVersion record = {
      7, 0, 205, 963, ZIM_TARGET_TAG, "zimcc" ZIM_TARGET_TAG "-7.0.dll", "7.0 build 205.58", "Apr 18 2011"};
  return &record;
}
