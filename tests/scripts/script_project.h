// A folder with a script of this project in it, and beside that what the test says.

#pragma once

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace zqm::tests {

class ScriptProject {
public:
    // The script, with what all of them share. The packages that it wants are there.
    explicit ScriptProject(std::string script);

    void write(const std::string& file, const std::string& contents) const;
    // A shell script.
    void writeProgram(const std::string& file, const std::string& commands) const;
    // One that is run in the place of the system's program of that name.
    void replace(const std::string& program, const std::string& commands) const;

    support::ProcessResult run(const std::vector<std::string>& arguments,
                               const std::filesystem::path& folder = {}) const;
    // Where no other programs are found than these of the system's.
    support::ProcessResult runWithOnly(const std::vector<std::string>& programs,
                                       const std::vector<std::string>& arguments) const;

    std::filesystem::path operator/(const std::string& file) const { return folder_ / file; }
    std::string read(const std::string& file) const;

private:
    support::ProcessResult run(const std::vector<std::string>& arguments, const std::filesystem::path& folder,
                               const std::string& path) const;

    std::string script_;
    support::TemporaryFolder folder_;
};

} // namespace zqm::tests
