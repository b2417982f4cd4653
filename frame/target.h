// The processor target of a build. There is no dispatch at run time: the loader picks the library file.
#pragma once

#if defined(__AVX512BW__)
#define ZIM_TARGET_PREFIX v4_
#define ZIM_TARGET_TAG "v4"
#define ZIM_TARGET_NAMESPACE v4
#elif defined(__AVX2__)
#define ZIM_TARGET_PREFIX v3_
#define ZIM_TARGET_TAG "v3"
#define ZIM_TARGET_NAMESPACE v3
#else
#define ZIM_TARGET_PREFIX mx_
#define ZIM_TARGET_TAG "mx"
#define ZIM_TARGET_NAMESPACE mx
#endif
