// What the library shows to the system's tools.

#include "tests/speech/documented_constants.h"
#include "tests/support/process.h"

#include <gmock/gmock.h>
#include <set>
#include <sstream>

namespace zqm::endtoend {
namespace {

std::vector<std::string> linesOf(const std::string& program, const std::vector<std::string>& arguments) {
    const auto result = support::runProcess(program, arguments);
    EXPECT_TRUE(result.succeeded()) << result.errors;
    std::istringstream output(result.output);
    std::vector<std::string> lines;
    for (std::string line; std::getline(output, line);) {
        lines.push_back(line);
    }
    return lines;
}

TEST(Library, ExportsItsEntryFunctionAlone) {
    EXPECT_THAT(linesOf("nm", {"-D", "--defined-only", "--format=just-symbols", ZQM_PLUGIN}),
                testing::ElementsAre("REALPluginMain"));
}

// So that it also loads on systems that lack one. The other names are those of the compiler's start-up code.
TEST(Library, NeedsThePlatformsConstantsWeaklyAndNothingElse) {
    std::set<std::string> weak = {"_ITM_deregisterTMCloneTable", "_ITM_registerTMCloneTable",
                                  "__cxa_finalize", "__gmon_start__"};
    std::set<std::string> built;
    for (const DocumentedConstant& row : kDocumentedConstants) {
        weak.insert(linkName(row));
    }
    for (const std::string& line : linesOf("nm", {"-D", "--undefined-only", ZQM_PLUGIN})) {
        std::istringstream fields(line);
        std::string kind;
        std::string name;
        fields >> kind >> name;
        if (kind == "w" || kind == "v") {
            built.insert(name.substr(0, name.find('@')));
        }
    }
    EXPECT_EQ(built, weak);
}

TEST(Library, IsNeverUnloadedBecauseItHoldsClasses) {
    EXPECT_THAT(
        linesOf("readelf", {"--dynamic", "--wide", ZQM_PLUGIN}),
        testing::Contains(testing::AllOf(testing::HasSubstr("(FLAGS_1)"), testing::HasSubstr("NODELETE"))));
}

TEST(Library, NeedsNothingThatMakesSound) {
    std::vector<std::string> needed;
    for (const std::string& line : linesOf("readelf", {"--dynamic", "--wide", ZQM_PLUGIN})) {
        if (line.find("(NEEDED)") != std::string::npos) {
            needed.push_back(line);
        }
    }
    EXPECT_THAT(needed, testing::Contains(testing::HasSubstr("libzqmplatform.so")));
    for (const char* library : {"espeak", "pulse", "sndfile", "sphinx"}) {
        EXPECT_THAT(needed, testing::Each(testing::Not(testing::HasSubstr(library))));
    }
}

} // namespace
} // namespace zqm::endtoend
