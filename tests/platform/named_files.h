// Folders as those of file systems that have no files without names.

#pragma once

namespace zqm::platform::test {

// While one of these lives, no file can be opened without a name.
class NamedFilesOnly {
public:
    NamedFilesOnly();
    NamedFilesOnly(const NamedFilesOnly&) = delete;
    NamedFilesOnly& operator=(const NamedFilesOnly&) = delete;
    ~NamedFilesOnly();
};

} // namespace zqm::platform::test
