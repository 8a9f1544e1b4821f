#include "platform/url_text.h"

#include <algorithm>
#include <array>

namespace zqm::platform {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kPathPunctuation = "-_.!~*'():@&=+$,/";
constexpr std::size_t kEscapeLength = 3;

bool isLetter(char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

char lowerCase(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

bool sameButCase(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, lowerCase, lowerCase);
}

std::optional<unsigned> hexValue(char digit) {
    const std::size_t value = kHexDigits.find(
        lowerCase(digit) == digit && isLetter(digit) ? static_cast<char>(digit - 'a' + 'A') : digit);
    return value == std::string_view::npos ? std::nullopt : std::optional(static_cast<unsigned>(value));
}

// With its colon; 0: the URL has none.
std::size_t schemeLength(std::string_view url) {
    if (url.empty() || !isLetter(url.front())) {
        return 0;
    }
    const auto end = std::ranges::find_if_not(url, [](char byte) {
        return isLetter(byte) || isDigit(byte) || byte == '+' || byte == '-' || byte == '.';
    });
    return end != url.end() && *end == ':' ? static_cast<std::size_t>(end - url.begin()) + 1 : 0;
}

// With its two slashes; 0: there is none.
std::size_t authorityLength(std::string_view url, std::size_t scheme) {
    if (!url.substr(scheme).starts_with("//")) {
        return 0;
    }
    return std::min(url.find_first_of("/?#", scheme + 2), url.size()) - scheme;
}

} // namespace

std::optional<UrlPath> pathInUrl(std::string_view url) {
    const std::size_t scheme = schemeLength(url);
    const std::size_t begin = scheme + authorityLength(url, scheme);
    if (scheme > 0 && begin == scheme && !url.substr(begin).starts_with('/')) {
        return std::nullopt;
    }
    return UrlPath{begin, std::min(url.find_first_of("?#", begin), url.size())};
}

UrlPath lastComponent(std::string_view url, UrlPath path) {
    UrlPath last = path;
    while (last.end > path.begin && url[last.end - 1] == '/') {
        --last.end;
    }
    const std::size_t slash = url.substr(0, last.end).rfind('/');
    last.begin = slash == std::string_view::npos ? path.begin : std::max(path.begin, slash + 1);
    last.begin = std::min(last.begin, last.end);
    return last;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        if (text[index] != '%') {
            bytes += text[index];
            continue;
        }
        const bool isWhole = text.size() - index >= kEscapeLength;
        const auto high = isWhole ? hexValue(text[index + 1]) : std::nullopt;
        const auto low = isWhole ? hexValue(text[index + 2]) : std::nullopt;
        if (!high || !low) {
            return std::nullopt;
        }
        bytes += static_cast<char>(*high << 4U | *low);
        index += kEscapeLength - 1;
    }
    return bytes;
}

std::string escapedPath(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        if (isLetter(byte) || isDigit(byte) || kPathPunctuation.find(byte) != std::string_view::npos) {
            text += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            text += {'%', kHexDigits[value >> 4U], kHexDigits[value & 0xFU]};
        }
    }
    return text;
}

std::optional<std::string> filePathOfUrl(std::string_view url) {
    const std::size_t scheme = schemeLength(url);
    const std::size_t authority = authorityLength(url, scheme);
    const std::string_view host = url.substr(scheme, authority).substr(authority > 0 ? 2 : 0);
    const auto place = pathInUrl(url);
    if (!sameButCase(url.substr(0, scheme), "file:") || (!host.empty() && !sameButCase(host, "localhost")) ||
        !place || place->size() == 0) {
        return std::nullopt;
    }
    auto path = unescaped(url.substr(place->begin, place->size()));
    return path && path->find('\0') == std::string::npos ? path : std::nullopt;
}

} // namespace zqm::platform
