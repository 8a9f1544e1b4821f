// What is shipped, by component.

#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace zqm::tests {

using Files = std::set<std::string>; // paths below the prefix

struct Component {
    std::string name;
    std::string package; // Debian's, which holds the same
    Files files;         // but for the documents below, which each of them brings
};

extern const std::string kDocuments;       // the folder of them
extern const std::string kPlatformLibrary; // the file that programs load, by its version
extern const Files kCommonDocuments;
extern const std::vector<Component> kComponents;

// All but folders, by their paths below this one.
Files filesIn(const std::filesystem::path& folder);

Files joined(Files one, const Files& other);

} // namespace zqm::tests
