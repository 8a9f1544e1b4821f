// scripts/check-documentation finds what it is there for: each of these headers has one fault.

#include "tests/support/process.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;
using support::ProcessResult;
using testing::HasSubstr;

constexpr const char* kSound = R"(// A header for programs.

#pragma once

#define ZQM_ANSWER 42

namespace zqm::host {

using Seconds = double;

// How much was counted.
struct Count {
    int whole = 0;
};

// What counts.
class Counter {
public:
    Counter() = default;

    // Counts so much more.
    void add(Count more);

private:
    int total_ = 0;
};

// How counting ends.
enum class End { Whole, Stopped };

// One that has counted nothing.
Counter make();

} // namespace zqm::host

extern "C" {

// What all of them have counted.
int ZQMCountOfAll(void);
}
)";

// The script and the folders that it reads, with one header in them.
class Project {
public:
    Project() {
        fs::create_directory(folder_ / "scripts");
        for (const std::string file :
             {"scripts/check-documentation", "scripts/setup.bash", "scripts/documentation"}) {
            fs::copy(fs::path(ZQM_SOURCE_FOLDER) / file, folder_ / file, fs::copy_options::recursive);
        }
        for (const char* other : {"host/include", "platform/include", "plugin"}) {
            fs::create_directories(folder_ / other);
        }
        std::ofstream(folder_ / "plugin/host_interface.h") << "// Of the plugin.\n";
    }

    ProcessResult checked(const std::string& header) const {
        std::ofstream(folder_ / "host/include/counter.h") << header;
        return support::runProcess((folder_ / "scripts/check-documentation").string(), {});
    }

private:
    support::TemporaryFolder folder_;
};

// Names of types, constants, members and macros may go without.
TEST(Documentation, PassesASoundHeader) {
    const ProcessResult result = Project().checked(kSound);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
}

struct Fault {
    const char* what;
    const char* comment; // that is missing
    const char* problem;
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
    return out << fault.what;
}

class UndocumentedPart : public testing::TestWithParam<Fault> {};

// Also in a header that says nothing of itself.
TEST_P(UndocumentedPart, IsRefused) {
    const std::string comment = std::string("// ") + GetParam().comment + "\n";
    std::string header = kSound;
    const std::size_t at = header.find(comment);
    ASSERT_NE(at, std::string::npos);
    header.erase(at, comment.size());
    for (const std::string& faulty : {header, header.substr(header.find("#pragma once"))}) {
        const ProcessResult result = Project().checked(faulty);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.errors, HasSubstr("counter.h:"));
        EXPECT_THAT(result.errors, HasSubstr(GetParam().problem));
        EXPECT_THAT(result.errors,
                    HasSubstr("The comments of the public headers are not in order; see above."));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, UndocumentedPart,
    testing::Values(
        Fault{"structure", "How much was counted.", "Compound zqm::host::Count is not documented."},
        Fault{"class", "What counts.", "Compound zqm::host::Counter is not documented."},
        Fault{"method", "Counts so much more.", "Member add(Count more) (function)"},
        Fault{"enumeration", "How counting ends.", "Member End (enumeration)"},
        Fault{"function", "One that has counted nothing.", "Member make() (function)"},
        Fault{"c_function", "What all of them have counted.", "Member ZQMCountOfAll(void) (function)"}),
    testing::PrintToStringParamName());

} // namespace
} // namespace zqm::tests
