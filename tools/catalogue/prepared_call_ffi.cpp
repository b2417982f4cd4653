#include <ffi.h>

#include <memory>

#include "tools/catalogue/prepared_call.h"

namespace zim::catalogue {
namespace {

ffi_type& sizeType() {
  static ffi_type* fields[] = {&ffi_type_sint32, &ffi_type_sint32, nullptr};
  static ffi_type type = {sizeof(ZimiSize), alignof(ZimiSize), FFI_TYPE_STRUCT, fields};
  return type;
}

ffi_type& regionType() {
  static ffi_type* fields[] = {&ffi_type_sint32, &ffi_type_sint32, &ffi_type_sint32, &ffi_type_sint32, nullptr};
  static ffi_type type = {sizeof(ZimiRegion), alignof(ZimiRegion), FFI_TYPE_STRUCT, fields};
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

ffi_type& typeOf(Parameter parameter) {
  switch (parameter.kind) {
    case Parameter::Kind::pointer:
      return ffi_type_pointer;
    case Parameter::Kind::size:
      return sizeType();
    case Parameter::Kind::region:
      return regionType();
    case Parameter::Kind::number:
      break;
  }
  return numberType(parameter.type);
}

struct Prepared {
  std::vector<ffi_type*> types;
  ffi_cif call;
};

}  // namespace

PreparedCall prepareCall(const std::vector<Parameter>& parameters) {
  const auto prepared = std::make_shared<Prepared>();
  for (const Parameter parameter : parameters) prepared->types.push_back(&typeOf(parameter));
  if (ffi_prep_cif(&prepared->call, FFI_DEFAULT_ABI, static_cast<unsigned>(parameters.size()), &ffi_type_sint32,
                   prepared->types.data()) != FFI_OK) {
    return {};
  }
  return [prepared](AnyFunction function, void* const* arguments) {
    ffi_arg result;
    // libffi writes neither to the call nor to the array, but asks for both without const.
    ffi_call(&prepared->call, function, &result, const_cast<void**>(arguments));
    return static_cast<ZimResult>(result);
  };
}

}  // namespace zim::catalogue
