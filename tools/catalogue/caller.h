// Calls any export through its description.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "tools/catalogue/catalogue.h"
#include "tools/catalogue/image.h"
#include "tools/catalogue/prepared_call.h"

namespace zim::catalogue {

// What is passed for an argument other than images and size; at first, what is usual.
class Value {
 public:
  explicit Value(const Argument& argument);

  std::string_view name() const { return name_; }
  bool isArray() const { return array_; }

  // One number, or the elements of an array, converted to the argument's type; integers stop at its limits.
  void set(std::span<const double> numbers);
  void set(std::initializer_list<double> numbers) { set(std::span(numbers.begin(), numbers.size())); }
  // Null in place of an array.
  void setNull() { null_ = array_; }

  // A 32-bit integer.
  Zim32s number() const;

  // Where the number lies, or the pointer that is passed for an array.
  const void* data() const { return null_ ? nullptr : elements_.data(); }

 private:
  std::string_view name_;
  SampleType type_;
  bool array_;
  bool null_ = false;
  alignas(16) std::array<std::byte, 16 * sizeof(Zim64f)> elements_ = {};
};

// All arguments of one call. An in-place export ignores the source.
struct Operands {
  Buffers source, destination, scratch;
  ZimiSize size = {};         // of the region, or of the whole image where there is one
  ZimiRegion region = {};     // of the whole image; at first all that the destination has room for
  std::vector<Value> values;  // in the order of Export::further

  // With scratch of its own, if the export takes some.
  explicit Operands(const Export& e, ZimiSize size = {});
  Operands(const Export& e, const Image& source, Image& destination);
  Operands(const Export& e, Image& inPlace) : Operands(e, inPlace, inPlace) {}

  // The value of a name; throws std::out_of_range if the export takes no such argument.
  Value& value(std::string_view name);

 private:
  std::shared_ptr<Image> scratchMemory_;  // copies share it
};

// A call to one export, prepared once. May be used by several threads at once.
class Caller {
 public:
  explicit Caller(const Export& e);
  Caller(Caller&&) = default;
  Caller& operator=(Caller&&) = default;

  ZimResult operator()(const Operands& operands) const;

 private:
  enum class Kind { plane, step, planeArray, stepArray, region, size, value };
  struct Slot {
    Kind kind;
    Buffers Operands::*side;
    std::size_t index;
  };

  void add(Parameter parameter, Slot slot);
  void addSide(const Side& side, Buffers Operands::*buffers);

  AnyFunction function_;
  std::vector<Slot> slots_;
  std::vector<Parameter> parameters_;
  PreparedCall call_;
};

}  // namespace zim::catalogue
