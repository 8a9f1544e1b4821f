#include "platform/file_reference.h"

#include <cstdint>
#include <cstring>
#include <mutex>
#include <random>
#include <unordered_map>
#include <vector>

namespace zqm::platform {
namespace {

struct Contents {
    std::uint64_t mark;
    std::uint64_t index;
    std::uint64_t check;
};
static_assert(sizeof(Contents) <= sizeof(FSRef));

constexpr std::uint64_t kMark = 0x5A514D2D46535265;
constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15; // odd, so that no two indices have the same check

// Apple's functions may be called on any thread.
class Paths {
public:
    Paths() : secret_(std::random_device()() * kSpread) {}

    std::uint64_t indexOf(const std::string& path) {
        const std::lock_guard lock(mutex_);
        const auto [place, isNew] = indices_.try_emplace(path, paths_.size());
        if (isNew) {
            paths_.push_back(&place->first);
        }
        return place->second;
    }

    std::optional<std::string> path(std::uint64_t index) {
        const std::lock_guard lock(mutex_);
        return index < paths_.size() ? std::optional(*paths_[index]) : std::nullopt;
    }

    // Other in each process, so that a reference that was stored in a file means nothing in the next.
    std::uint64_t check(std::uint64_t index) const { return (index ^ secret_) * kSpread; }

private:
    std::mutex mutex_;
    std::unordered_map<std::string, std::uint64_t> indices_;
    std::vector<const std::string*> paths_;
    std::uint64_t secret_;
};

// Never destroyed: a host's last calls may come while the process ends.
Paths& paths() {
    static auto* const all = new Paths;
    return *all;
}

} // namespace

FSRef makeReference(const std::string& path) {
    const std::uint64_t index = paths().indexOf(path);
    const Contents contents{kMark, index, paths().check(index)};
    FSRef reference{};
    std::memcpy(reference.hidden, &contents, sizeof contents);
    return reference;
}

std::optional<std::string> pathOfReference(const FSRef& reference) {
    Contents contents{};
    std::memcpy(&contents, reference.hidden, sizeof contents);
    if (contents.mark != kMark || contents.check != paths().check(contents.index)) {
        return std::nullopt;
    }
    return paths().path(contents.index);
}

} // namespace zqm::platform
