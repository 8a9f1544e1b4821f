#include "function_type.h"

#include <stdexcept>

namespace zqm::host {

namespace {

ffi_type* ffiType(const Type& type) {
    if (type.isArray) {
        return &ffi_type_pointer;
    }
    switch (type.kind) {
    case TypeKind::Boolean:
        return &ffi_type_uint8;
    case TypeKind::Int32:
        return &ffi_type_sint32;
    case TypeKind::UInt32:
        return &ffi_type_uint32;
    case TypeKind::Integer:
        return &ffi_type_sint64;
    case TypeKind::Single:
        return &ffi_type_float;
    case TypeKind::Double:
        return &ffi_type_double;
    case TypeKind::String:
    case TypeKind::Text:
    case TypeKind::Variant:
    case TypeKind::Ptr:
    case TypeKind::Object:
        break;
    }
    return &ffi_type_pointer;
}

std::vector<FunctionType::Argument> argumentsOf(const Declaration& declaration) {
    std::vector<FunctionType::Argument> arguments;
    for (const Parameter& parameter : declaration.parameters) {
        arguments.push_back({parameter.type, parameter.byRef});
    }
    return arguments;
}

} // namespace

FunctionType::FunctionType(bool self, const std::vector<Argument>& arguments,
                           const std::optional<Type>& result)
    : result_(result ? ffiType(*result) : &ffi_type_void) {
    if (self) {
        arguments_.push_back(&ffi_type_pointer);
    }
    for (const Argument& argument : arguments) {
        arguments_.push_back(argument.byRef ? &ffi_type_pointer : ffiType(argument.type));
    }
    const auto count = static_cast<unsigned>(arguments_.size());
    if (ffi_prep_cif(&description_, FFI_DEFAULT_ABI, count, result_, arguments_.data()) != FFI_OK) {
        throw std::runtime_error("libffi knows no such function type");
    }
}

FunctionType::FunctionType(bool self, const Declaration& declaration)
    : FunctionType(self, argumentsOf(declaration), declaration.result) {}

Slot FunctionType::call(void* function, std::span<Slot> arguments) const {
    std::vector<void*> addresses;
    addresses.reserve(arguments.size());
    for (Slot& argument : arguments) {
        addresses.push_back(&argument);
    }
    Slot result;
    ffi_call(&description_, FFI_FN(function), &result, addresses.data());
    return result;
}

} // namespace zqm::host
