#pragma once

namespace zqm::host {

// What an object of a built-in class holds beside its instance data. Plugins never see it.
struct ObjectContent {
    ObjectContent() = default;
    ObjectContent(const ObjectContent&) = delete;
    ObjectContent& operator=(const ObjectContent&) = delete;
    virtual ~ObjectContent() = default;
};

} // namespace zqm::host
