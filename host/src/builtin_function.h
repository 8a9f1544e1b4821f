// C functions behind the members of built-in classes, as plugins are given them.

#pragma once

#include "core.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>

namespace zqm::host {

// A text as a template argument: what reports call the function.
template <std::size_t size>
struct FunctionName {
    consteval FunctionName(const char (&literal)[size]) { std::copy_n(literal, size, text); }
    char text[size];
};

// The runtime to work on; null, with a report where there is one to take it, when the call can't be made.
inline Core* coreOfCall(const char* name) {
    Core* core = Core::active();
    if (core != nullptr && !core->onItsThread()) {
        core->reports().add(Report::Kind::WrongThread, name);
        return nullptr;
    }
    return core;
}

// The function of a member: finds what the object or array holds, keeps it alive during the call, and calls
// the implementation with it, or with the object itself where it asks for that.
template <FunctionName name, auto implementation, typename Handle>
struct MemberFunction {
    template <typename Content>
    static Content* find(Core& core, Handle self) {
        if constexpr (std::same_as<Content, ObjectHandle>) {
            return core.handles().find<ObjectHandle>(self, name.text);
        } else {
            return core.findContent<Content>(self, name.text);
        }
    }

    template <typename Result, typename Content, typename... Arguments>
    static auto of(Result (*)(Core&, Content&, Arguments...)) -> Result (*)(Handle, Arguments...) {
        return [](Handle self, Arguments... arguments) -> Result {
            Core* core = coreOfCall(name.text);
            Content* content = core == nullptr ? nullptr : find<Content>(*core, self);
            if (content == nullptr) {
                return Result();
            }
            const Object kept = core->borrow(reinterpret_cast<REALobject>(self), name.text);
            return implementation(*core, *content, arguments...);
        };
    }
};

// Result(Core&, Content&, Arguments...) as a C function Result(REALobject, Arguments...).
template <FunctionName name, auto implementation>
void* memberFunction() {
    return std::bit_cast<void*>(MemberFunction<name, implementation, REALobject>::of(implementation));
}

// Result(Core&, Arguments...) as a C function Result(Arguments...).
template <FunctionName name, auto implementation>
struct GlobalFunction {
    template <typename Result, typename... Arguments>
    static auto of(Result (*)(Core&, Arguments...)) -> Result (*)(Arguments...) {
        return [](Arguments... arguments) -> Result {
            Core* core = coreOfCall(name.text);
            return core == nullptr ? Result() : implementation(*core, arguments...);
        };
    }
};
template <FunctionName name, auto implementation>
void* globalFunction() {
    return std::bit_cast<void*>(GlobalFunction<name, implementation>::of(implementation));
}

} // namespace zqm::host
