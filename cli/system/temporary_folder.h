#pragma once

#include <string>

namespace zqm::cli {

// Where temporary files go: TMPDIR, or else /tmp.
std::string temporaryPlace();
std::string temporaryPlaceName(); // for people: it may be that which is full

// A folder there that nobody else can look into, for one file of this name. One at a time.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::string& name); // throws Failure
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder(); // with its file

    const std::string& file() const { return file_; } // its path, whether or not there is one
    void removeFile() const;

private:
    std::string path_;
    std::string file_;
};

// Removes the one that there is, with its file. A signal's handler may call it.
void removeTemporaryFolder();

} // namespace zqm::cli
