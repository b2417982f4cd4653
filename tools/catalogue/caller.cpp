#include "tools/catalogue/caller.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace zim::catalogue {
namespace {

constexpr std::size_t kMostArguments = 16;

ffi_type& sizeType() {
  static ffi_type* fields[] = {&ffi_type_sint32, &ffi_type_sint32, nullptr};
  static ffi_type type = {sizeof(ZimiSize), alignof(ZimiSize), FFI_TYPE_STRUCT, fields};
  return type;
}

ffi_type& numberType(SampleType type) {
  switch (type) {
    case SampleType::s8:
      return ffi_type_sint8;
    case SampleType::u16:
      return ffi_type_uint16;
    case SampleType::s16:
      return ffi_type_sint16;
    case SampleType::s32:
      return ffi_type_sint32;
    case SampleType::f32:
      return ffi_type_float;
    case SampleType::f64:
      return ffi_type_double;
    case SampleType::u1:
    case SampleType::u8:
      break;
  }
  return ffi_type_uint8;
}

}  // namespace

Value::Value(const Argument& argument) : name_(argument.name), type_(argument.type), array_(argument.array) {
  set(argument.usual);
}

void Value::set(std::span<const double> numbers) {
  visit(type_, [&]<class T>(std::type_identity<T>) {
    if (numbers.size() > (array_ ? elements_.size() / sizeof(T) : 1)) {
      throw std::length_error("too many numbers for " + std::string(name_));
    }
    for (std::size_t i = 0; i < numbers.size(); ++i) {
      double number = numbers[i];
      if constexpr (std::numeric_limits<T>::is_integer) {
        number = std::clamp<double>(number, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
      }
      const T element = static_cast<T>(number);
      std::memcpy(elements_.data() + i * sizeof element, &element, sizeof element);
    }
  });
  null_ = false;
}

Operands::Operands(const Export& e, ZimiSize roiSize) : size(roiSize), values(e.further.begin(), e.further.end()) {}

Operands::Operands(const Export& e, const Image& sourceImage, Image& destinationImage)
    : Operands(e, destinationImage.size()) {
  source = sourceImage.buffers();
  destination = destinationImage.buffers();
}

Value& Operands::value(std::string_view name) {
  const auto found = std::ranges::find(values, name, &Value::name);
  if (found == values.end()) throw std::out_of_range("no argument " + std::string(name));
  return *found;
}

Caller::Caller(const Export& e) : function_(e.function) {
  if (function_ == nullptr) throw std::invalid_argument(e.name + " is not in the library");
  if (!e.inPlace) addSide(e.source, &Operands::source);
  addSide(e.destination, &Operands::destination);
  add(sizeType(), {Kind::size, nullptr, 0});
  for (std::size_t i = 0; i < e.further.size(); ++i) {
    const Argument& argument = e.further[i];
    add(argument.array ? ffi_type_pointer : numberType(argument.type), {Kind::value, nullptr, i});
  }
  if (slots_.size() > kMostArguments || ffi_prep_cif(&call_, FFI_DEFAULT_ABI, static_cast<unsigned>(types_.size()),
                                                     &ffi_type_sint32, types_.data()) != FFI_OK) {
    throw std::invalid_argument("no way to call " + e.name);
  }
}

void Caller::add(ffi_type& type, Slot slot) {
  types_.push_back(&type);
  slots_.push_back(slot);
}

void Caller::addSide(const Side& side, Buffers Operands::*buffers) {
  if (side.pointerArray) {
    add(ffi_type_pointer, {Kind::planeArray, buffers, 0});
    if (side.steps == Steps::one) add(ffi_type_sint32, {Kind::step, buffers, 0});
    if (side.steps == Steps::perPlane) add(ffi_type_pointer, {Kind::stepArray, buffers, 0});
    return;
  }
  for (std::size_t i = 0; i < side.planes.size(); ++i) {
    add(ffi_type_pointer, {Kind::plane, buffers, i});
    if (side.steps != Steps::none) add(ffi_type_sint32, {Kind::step, buffers, i});
  }
}

ZimResult Caller::operator()(const Operands& operands) const {
  std::array<void*, kMostArguments> arguments;
  std::array<const void*, kMostArguments> pointers;
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    const Slot& slot = slots_[i];
    const auto pass = [&](const void* where) { arguments[i] = const_cast<void*>(where); };
    const auto passPointer = [&](const void* pointer) {
      pointers[i] = pointer;
      arguments[i] = &pointers[i];
    };
    switch (slot.kind) {
      case Kind::plane:
        pass(&(operands.*slot.side).planes[slot.index]);
        break;
      case Kind::step:
        pass(&(operands.*slot.side).steps[slot.index]);
        break;
      case Kind::planeArray: {
        const Buffers& side = operands.*slot.side;
        passPointer(side.nullArray ? nullptr : side.planes.data());
        break;
      }
      case Kind::stepArray: {
        const Buffers& side = operands.*slot.side;
        passPointer(side.nullSteps ? nullptr : side.steps.data());
        break;
      }
      case Kind::size:
        pass(&operands.size);
        break;
      case Kind::value: {
        const Value& value = operands.values[slot.index];
        value.isArray() ? passPointer(value.data()) : pass(value.data());
        break;
      }
    }
  }
  ffi_arg result;
  ffi_call(&call_, function_, &result, arguments.data());
  return static_cast<ZimResult>(result);
}

}  // namespace zim::catalogue
