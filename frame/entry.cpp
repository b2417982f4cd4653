#include "frame/entry.h"

using AnyFunction = void (*)();

// Writable on purpose: a program's build for another processor may put its own bodies here.
extern "C" AnyFunction functionSlotTable[];
AnyFunction functionSlotTable[] = {
#define ZIM_EXPORT(name) reinterpret_cast<AnyFunction>(&ZIM_BODY(name)),
#include "frame/exports.def"
#undef ZIM_EXPORT
};
