#pragma once

#include "zqmhost/object.h"

#include <string>

namespace zqm::host {

// A file or folder, there or not, by its absolute path.
class FolderItem : public Object {
public:
    FolderItem() = default; // nil
    // Throws CallError when the object is no folder item; nil stays nil.
    explicit FolderItem(Object object);

    std::string path() const; // as given, without slashes at the end; empty for nil
    bool exists() const;      // whether something is there
};

} // namespace zqm::host
