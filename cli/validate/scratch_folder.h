#pragma once

#include <string>

namespace zqm::cli {

// A folder where temporary files go, for what a plugin writes. Gone afterwards, with all that is in it; a
// signal that ends the process at once leaves it.
class ScratchFolder {
public:
    ScratchFolder(); // throws Failure
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    ~ScratchFolder();

    const std::string& path() const { return path_; }

private:
    std::string path_;
};

} // namespace zqm::cli
