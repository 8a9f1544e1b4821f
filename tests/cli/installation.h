#pragma once

#include "tests/cli/say.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zqm::tests {

// The command in a folder of its own, with these of the files that it needs beside it.
class Installation {
public:
    explicit Installation(const std::vector<std::string>& libraries) {
        const std::filesystem::path built = std::filesystem::path(ZQMSPEECH_PROGRAM).parent_path();
        std::filesystem::copy(ZQMSPEECH_PROGRAM, folder_.path());
        for (const std::string& library : libraries) {
            std::filesystem::copy(built / library, folder_.path());
        }
    }

    support::ProcessResult run(const std::vector<std::string>& arguments,
                               const support::ProcessOptions& options = bareOptions()) const {
        return support::runProcess((folder_ / "zqmspeech").string(), arguments, options);
    }
    const std::filesystem::path& path() const { return folder_.path(); }

private:
    support::TemporaryFolder folder_{"with blank"};
};

} // namespace zqm::tests
