#include "platform/file_name.h"

#include <sys/stat.h>
#include <unicode/normalizer2.h>

namespace zqm::platform {
namespace {

bool exists(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

std::string normalized(const icu::Normalizer2* form, const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    std::string result;
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(name);
    std::string roundTrip;
    if (form == nullptr || text.toUTF8String(roundTrip) != name) {
        return name; // bytes that are no UTF-8 have no forms
    }
    form->normalize(text, status).toUTF8String(result);
    return U_SUCCESS(status) ? result : name;
}

std::string resolveComponent(const std::string& folder, const std::string& name) {
    if (exists(folder + name)) {
        return name;
    }
    UErrorCode status = U_ZERO_ERROR;
    std::string composed = normalized(icu::Normalizer2::getNFCInstance(status), name);
    if (exists(folder + composed)) {
        return composed;
    }
    std::string decomposed = normalized(icu::Normalizer2::getNFDInstance(status), name);
    return exists(folder + decomposed) ? decomposed : composed;
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
