// C function types made from declarations, for calls in both directions through libffi.

#pragma once

#include "declaration.h"

#include <cstdint>
#include <ffi.h>
#include <optional>
#include <span>
#include <vector>

namespace zqm::host {

// One argument or result in its C form.
union Slot {
    bool boolean;
    std::int32_t int32;
    std::uint32_t uint32;
    std::int64_t integer = 0;
    float single;
    double real;
    void* pointer;
    ffi_arg wide; // what libffi writes for an integral result
};

class FunctionType {
public:
    struct Argument {
        Type type;
        bool byRef = false;
    };

    // `self` adds the object in front of the arguments.
    FunctionType(bool self, const std::vector<Argument>& arguments, const std::optional<Type>& result);
    // As a declaration says.
    FunctionType(bool self, const Declaration& declaration);
    FunctionType(const FunctionType&) = delete;
    FunctionType& operator=(const FunctionType&) = delete;
    ~FunctionType() = default;

    Slot call(void* function, std::span<Slot> arguments) const;

    ffi_cif* description() { return &description_; }

private:
    std::vector<ffi_type*> arguments_;
    ffi_type* result_;
    mutable ffi_cif description_{};
};

} // namespace zqm::host
