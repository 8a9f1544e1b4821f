// The pages that explain how to write a host and a plugin show the very programs that are built.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace zqm::tests {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = ZQM_SOURCE_FOLDER;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

// The code that a page shows of each file: the block behind the line that links to it.
std::map<std::string, std::string> shownOn(const fs::path& page) {
    const std::regex link(R"(\[(.+)\]\(\.\./(.+)\):)");
    std::istringstream lines(contentOf(page));
    std::map<std::string, std::string> shown;
    std::string file;
    bool isCode = false;
    std::smatch found;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("```")) {
            isCode = !isCode;
            EXPECT_FALSE(file.empty()) << page << " shows code of no file";
            if (!isCode) {
                file.clear();
            }
        } else if (isCode) {
            shown[file] += line + '\n';
        } else if (std::regex_match(line, found, link)) {
            EXPECT_EQ(found[1], found[2]);
            file = found[2];
        }
    }
    return shown;
}

void expectThatItShows(const char* page, const std::vector<std::string>& files) {
    std::map<std::string, std::string> expected;
    for (const std::string& file : files) {
        expected[file] = contentOf(kRoot / file);
        ASSERT_FALSE(expected[file].empty()) << file;
    }
    EXPECT_EQ(shownOn(kRoot / "docs" / page), expected);
}

TEST(Pages, ShowTheHostThatIsBuilt) {
    expectThatItShows("writing-a-host.md", {"examples/writing_a_host.cpp"});
}

TEST(Pages, ShowThePluginThatIsBuilt) {
    expectThatItShows("writing-a-plugin.md",
                      {"examples/writing_a_plugin/CMakeLists.txt", "examples/writing_a_plugin/NSTimerZQM.mm",
                       "examples/writing_a_plugin/count_ticks.cpp"});
}

// ---- links

// The files that a page links to; code may look like links, but is none.
std::vector<std::string> linksOf(const fs::path& page) {
    const std::regex code("`[^`]*`");
    const std::regex link(R"(\]\(([^)#:]+)(#[^)]*)?\))");
    std::istringstream lines(contentOf(page));
    std::vector<std::string> links;
    bool isCode = false;
    for (std::string line; std::getline(lines, line);) {
        isCode = isCode != line.starts_with("```");
        const std::string text = isCode ? "" : std::regex_replace(line, code, "");
        for (auto found = std::sregex_iterator(text.begin(), text.end(), link);
             found != std::sregex_iterator(); ++found) {
            links.push_back((*found)[1]);
        }
    }
    return links;
}

std::vector<fs::path> allPages() {
    std::vector<fs::path> pages{kRoot / "README.md", kRoot / "CONTRIBUTING.md"};
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kRoot / "docs")) {
        if (entry.path().extension() == ".md") {
            pages.push_back(entry.path());
        }
    }
    return pages;
}

TEST(Pages, LinkToWhatExists) {
    std::size_t links = 0;
    for (const fs::path& page : allPages()) {
        for (const std::string& link : linksOf(page)) {
            EXPECT_TRUE(fs::exists(page.parent_path() / link)) << page << ": " << link;
            ++links;
        }
    }
    EXPECT_GT(links, 20U);
}

} // namespace
} // namespace zqm::tests
