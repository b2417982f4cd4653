// The tests of LUV and Lab once more, in a program with a cbrtf of its own: results follow whatever cbrtf is linked,
// not the one that lanes know the way of. This one is rounded correctly, which the usual one is not.
#include <cmath>

extern "C" float cbrtf(float x) noexcept { return static_cast<float>(std::cbrt(static_cast<double>(x))); }
