#include "tools/catalogue/caller.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace zim::catalogue {

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

Zim32s Value::number() const {
  Zim32s value;
  std::memcpy(&value, elements_.data(), sizeof value);
  return value;
}

Operands::Operands(const Export& e, ZimiSize roiSize)
    : size(roiSize), region{0, 0, roiSize.width, roiSize.height}, values(e.further.begin(), e.further.end()) {
  if (!e.scratch) return;
  scratchMemory_ = std::make_shared<Image>(e.scratch->side, e.scratch->size({std::max(size.width, 0), 0}));
  scratch = scratchMemory_->buffers();
}

Operands::Operands(const Export& e, const Image& sourceImage, Image& destinationImage)
    : Operands(e, e.takesRegion ? sourceImage.size() : destinationImage.size()) {
  region.width = destinationImage.size().width;
  region.height = destinationImage.size().height;
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
  if (e.takesRegion) {
    add({Parameter::Kind::pointer}, {Kind::plane, &Operands::source, 0});
    add({Parameter::Kind::region}, {Kind::region, nullptr, 0});
    add({Parameter::Kind::size}, {Kind::size, nullptr, 0});
    add({Parameter::Kind::number, SampleType::s32}, {Kind::step, &Operands::source, 0});
  } else if (!e.inPlace) {
    addSide(e.source, &Operands::source);
  }
  addSide(e.destination, &Operands::destination);
  const auto addFurther = [&](bool aheadOfSize) {
    for (std::size_t i = 0; i < e.further.size(); ++i) {
      const Argument& argument = e.further[i];
      if (argument.aheadOfSize != aheadOfSize) continue;
      add({argument.array ? Parameter::Kind::pointer : Parameter::Kind::number, argument.type},
          {Kind::value, nullptr, i});
    }
  };
  addFurther(true);
  if (!e.takesRegion) add({Parameter::Kind::size}, {Kind::size, nullptr, 0});
  addFurther(false);
  if (e.scratch) addSide(e.scratch->side, &Operands::scratch);
  if (slots_.size() <= kMostParameters) call_ = prepareCall(parameters_);
  if (!call_) throw std::invalid_argument("no way to call " + e.name);
}

void Caller::add(Parameter parameter, Slot slot) {
  parameters_.push_back(parameter);
  slots_.push_back(slot);
}

void Caller::addSide(const Side& side, Buffers Operands::*buffers) {
  if (side.pointerArray) {
    add({Parameter::Kind::pointer}, {Kind::planeArray, buffers, 0});
    if (side.steps == Steps::one) add({Parameter::Kind::number, SampleType::s32}, {Kind::step, buffers, 0});
    if (side.steps == Steps::perPlane) add({Parameter::Kind::pointer}, {Kind::stepArray, buffers, 0});
    return;
  }
  for (std::size_t i = 0; i < side.planes.size(); ++i) {
    add({Parameter::Kind::pointer}, {Kind::plane, buffers, i});
    if (side.steps != Steps::none) add({Parameter::Kind::number, SampleType::s32}, {Kind::step, buffers, i});
  }
}

ZimResult Caller::operator()(const Operands& operands) const {
  std::array<void*, kMostParameters> arguments;
  std::array<const void*, kMostParameters> pointers;
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
      case Kind::region:
        pass(&operands.region);
        break;
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
  return call_(function_, arguments.data());
}

}  // namespace zim::catalogue
