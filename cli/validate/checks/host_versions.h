#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace zqm::cli {

// A host that something is new in, with the newest revision of the plugin interface that it understands.
struct HostVersion {
    std::optional<double> version; // none: it doesn't tell
    std::int32_t revision;
};

// Each step, and the last host before it, ascending; the last one is the host of today.
std::span<const HostVersion> hostVersions();

std::string nameOf(const HostVersion& host);

} // namespace zqm::cli
