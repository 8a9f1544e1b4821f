#include "zqmhost/folder_item.h"

#include "folder_item_content.h"
#include "object_views.h"

#include <utility>

namespace zqm::host {

FolderItem::FolderItem(Object object) : Object(checked<FolderItemContent>(std::move(object))) {}

std::string FolderItem::path() const {
    return isNull() ? std::string() : contentOf<FolderItemContent>(core(), *this).path;
}

bool FolderItem::exists() const {
    return contentOf<FolderItemContent>(core(), *this).exists();
}

} // namespace zqm::host
