// Bodies of the exports. Each exported name is a stub that jumps through its slot of functionSlotTable; the slot holds
// the body of this build's processor target, mx_zimi... or v3_zimi...
#pragma once

#include "frame/target.h"
#include "zimcc.h"

#define ZIM_JOIN2(a, b) a##b
#define ZIM_JOIN(a, b) ZIM_JOIN2(a, b)

// Name of the body of an export.
#define ZIM_BODY(name) ZIM_JOIN(ZIM_TARGET_PREFIX, name)

// Further parameters, given in parentheses and maybe none, after those before them.
#define ZIM_AND(...) __VA_OPT__(, ) __VA_ARGS__

// C linkage and the public type: a body whose definition differs from the public declaration does not compile.
extern "C" {
#define ZIM_EXPORT(name) extern decltype(name) ZIM_BODY(name);
#include "frame/exports.def"
#undef ZIM_EXPORT
}
