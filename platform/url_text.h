// The text of URLs: where the path stands in one, and the escapes by which bytes stand in a path.

#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zqm::platform {

// The places where the path begins and ends.
struct UrlPath {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
};

// Nothing for a URL that has no path by which to go up and down, as those of mail addresses.
std::optional<UrlPath> pathInUrl(std::string_view url);

// The last component of a path, without a slash after it; empty for "" and "/".
UrlPath lastComponent(std::string_view url, UrlPath path);

// The bytes that a part of a URL means; nothing where a percent sign has no two hex digits after it.
std::optional<std::string> unescaped(std::string_view text);

// Every byte that may not stand in a path is escaped; slashes stay.
std::string escapedPath(std::string_view bytes);

// The path of the file that an absolute URL means; nothing unless it is a file of this machine. A path with a
// NUL in it is none.
std::optional<std::string> filePathOfUrl(std::string_view url);

} // namespace zqm::platform
