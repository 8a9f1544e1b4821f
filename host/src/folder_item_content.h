#pragma once

#include "object_content.h"

#include <memory>
#include <string>
#include <string_view>

namespace zqm::host {

inline constexpr std::string_view kFolderItemClass = "FolderItem";

struct FolderItemContent final : ObjectContent {
    static constexpr const char* kWhat = "a FolderItem";

    FolderItemContent() = default;
    explicit FolderItemContent(std::string_view itsPath);

    bool exists() const;
    // What holds it, and what it is called there; both empty for "/".
    std::string folder() const;
    std::string name() const;

    std::string path; // absolute, no slash at its end; empty: of no item
};

} // namespace zqm::host
