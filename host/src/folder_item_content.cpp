#include "folder_item_content.h"

#include <sys/stat.h>

namespace zqm::host {

FolderItemContent::FolderItemContent(std::string_view itsPath) : path(itsPath) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
}

bool FolderItemContent::exists() const {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

std::string FolderItemContent::folder() const {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos || path.size() == 1) {
        return {};
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string FolderItemContent::name() const {
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

} // namespace zqm::host
