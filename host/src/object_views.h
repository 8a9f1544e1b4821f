// What the typed objects of the C++ API have in common.

#pragma once

#include "core.h"

namespace zqm::host {

// Throws CallError when the object is nil, gone, or of another kind.
template <typename Content>
Content& contentOf(const std::shared_ptr<Core>& core, const Object& object) {
    const std::string className = object.className();
    auto* content = core->handles().known<ObjectHandle>(object.handle())->contentAs<Content>();
    if (content == nullptr) {
        throw CallError(std::string(Content::kWhat) + " asked for, but the object is " + className);
    }
    return *content;
}

// The same for one that is to become a typed object, where nil is of any kind.
template <typename Content>
Object checked(Object object) {
    if (!object.isNull()) {
        contentOf<Content>(Core::active()->shared_from_this(), object);
    }
    return object;
}

} // namespace zqm::host
