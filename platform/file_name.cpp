#include "platform/file_name.h"

#include "platform/unicode_forms.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sys/stat.h>
#include <system_error>

namespace zqm::platform {
namespace {

bool exists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

// Bytes that are no UTF-8 have no forms.
std::string nameInForm(UnicodeForm form, const std::string& name) {
    const auto text = utf16Of(name);
    return text ? utf8Of(inForm(form, *text)).value_or(name) : name;
}

bool isAscii(const std::string& name) {
    return std::ranges::all_of(name, [](char byte) { return (byte & 0x80) == 0; });
}

// An entry of the folder that means the same letters in neither form: it mixes both, or has characters that
// no form keeps. Of several the first in order.
std::optional<std::string> equivalentEntry(const std::string& folder, const std::string& decomposed) {
    std::optional<std::string> found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder.empty() ? "." : folder, error), end;
         !error && entry != end; entry.increment(error)) {
        const std::string name = entry->path().filename().native();
        if (!isAscii(name) && nameInForm(UnicodeForm::Decomposed, name) == decomposed &&
            (!found || name < *found)) {
            found = name;
        }
    }
    return found;
}

std::string resolveComponent(const std::string& folder, const std::string& name) {
    if (exists(folder + name)) {
        return name;
    }
    if (isAscii(name)) {
        return name; // in every form, and no reason to read a whole folder
    }
    std::string composed = nameInForm(UnicodeForm::Composed, name);
    if (exists(folder + composed)) {
        return composed;
    }
    std::string decomposed = nameInForm(UnicodeForm::Decomposed, name);
    if (exists(folder + decomposed)) {
        return decomposed;
    }
    return equivalentEntry(folder, decomposed).value_or(composed);
}

} // namespace

std::string resolveFileName(const std::string& path) {
    std::string resolved;
    std::size_t begin = 0;
    while (begin < path.size()) {
        const std::size_t slash = std::min(path.find('/', begin), path.size());
        resolved += resolveComponent(resolved, path.substr(begin, slash - begin));
        if (slash < path.size()) {
            resolved += '/';
        }
        begin = slash + 1;
    }
    return resolved;
}

} // namespace zqm::platform
