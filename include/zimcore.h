/** \file
 * zimcore: memory and thread count, the two services that zimcc imports. A program may define zimMalloc, zimFree and
 * ownGetNumThreads itself; its definitions then take the place of these. */
#ifndef ZIMCORE_H
#define ZIMCORE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Memory of byteCount bytes, aligned to 64 bytes, or null. */
void* zimMalloc(size_t byteCount);

/** Releases what zimMalloc returned; null is allowed. */
void zimFree(void* memory);

/** Team size that threaded operations ask the OpenMP runtime for, at least 1. Until zimSetNumThreads is called it is
 * what the runtime would use for the calling thread. */
int ownGetNumThreads(void);

/** Sets the team size for all threads of the process; a count below 1 goes back to the runtime's own choice. */
void zimSetNumThreads(int count);

#ifdef __cplusplus
}
#endif

#endif
