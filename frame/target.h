// The processor target of a build. There is no dispatch at run time: the loader picks the library file.
//
// The prefix of bodies is that of the build, also in files that a build compiles for a lower target: those give it on
// the command line.
#pragma once

#if defined(__AVX512BW__)
#define ZIM_OWN_PREFIX v4_
#define ZIM_TARGET_TAG "v4"
#define ZIM_TARGET_NAMESPACE v4
#elif defined(__AVX2__)
#define ZIM_OWN_PREFIX v3_
#define ZIM_TARGET_TAG "v3"
#define ZIM_TARGET_NAMESPACE v3
#else
#define ZIM_OWN_PREFIX mx_
#define ZIM_TARGET_TAG "mx"
#define ZIM_TARGET_NAMESPACE mx
#endif

#ifndef ZIM_TARGET_PREFIX
#define ZIM_TARGET_PREFIX ZIM_OWN_PREFIX
#endif
