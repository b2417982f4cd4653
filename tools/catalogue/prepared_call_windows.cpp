// 64-bit Windows passes every argument in eight bytes: the first four in registers, the others on the stack; whatever
// is larger by the address of a copy. Which register depends on the type, but a double behind an ellipsis goes in both.
// So one call serves all functions, with the eight bytes of each argument as those of a double; the first argument,
// which an ellipsis needs ahead of it, is always a pointer.
#include <array>
#include <cstring>
#include <utility>

#include "tools/catalogue/prepared_call.h"

namespace zim::catalogue {
namespace {

std::size_t bytesOf(Parameter parameter) {
  switch (parameter.kind) {
    case Parameter::Kind::pointer:
      return sizeof(void*);
    case Parameter::Kind::size:
      return sizeof(ZimiSize);
    case Parameter::Kind::region:
      return sizeof(ZimiRegion);
    case Parameter::Kind::number:
      break;
  }
  return static_cast<std::size_t>(bits(parameter.type) + 7) / 8;
}

using Slots = std::array<double, kMostParameters>;

template <std::size_t... i>
ZimResult callWith(AnyFunction function, void* first, const Slots& slots, std::index_sequence<i...>) {
  // More arguments than the function takes do no harm: the caller owns their place on the stack.
  return reinterpret_cast<ZimResult (*)(void*, ...)>(function)(first, slots[i + 1]...);
}

}  // namespace

PreparedCall prepareCall(const std::vector<Parameter>& parameters) {
  return [parameters](AnyFunction function, void* const* arguments) {
    Slots slots = {};
    ZimiRegion region;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      if (parameters[i].kind == Parameter::Kind::region) {
        std::memcpy(&region, arguments[i], sizeof region);
        const ZimiRegion* const copy = &region;
        std::memcpy(&slots[i], &copy, sizeof copy);
      } else {
        std::memcpy(&slots[i], arguments[i], bytesOf(parameters[i]));
      }
    }
    void* first;
    std::memcpy(&first, slots.data(), sizeof first);
    return callWith(function, first, slots, std::make_index_sequence<kMostParameters - 1>());
  };
}

}  // namespace zim::catalogue
