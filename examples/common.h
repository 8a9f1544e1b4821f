// What the examples share.

#pragma once

#include <zqmhost/zqmhost.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace examples {

using namespace zqm::host;

// Files are named by URLs, and those by whole paths.
inline std::string fileUrl(const std::string& path) {
    if (path.starts_with('/')) {
        return "file://" + path;
    }
    const std::unique_ptr<char, void (*)(void*)> folder(getcwd(nullptr, 0), std::free);
    if (folder == nullptr) {
        throw Error("there is no current folder");
    }
    return std::string("file://") + folder.get() + '/' + path;
}

// Loads the plugin and, where it stands beside it, the family's library of errors and the like.
inline void load(Runtime& runtime, const std::string& plugin) {
    runtime.load(plugin);
    runtime.loadBeside(plugin, "libZQMFoundation");
}

// Speaks the text to its end, aloud or into a sound file when one is named.
inline void speak(Runtime& runtime, Object& speaker, const std::string& text, const std::string& file = {}) {
    std::vector<Value> request{text};
    if (!file.empty()) {
        request.emplace_back(fileUrl(file));
    }
    if (!speaker.callWith("startSpeakingString", request).asBool()) {
        throw Error("the speech could not be started");
    }
    const auto end = runtime.runUntilRaised(speaker, "didFinishSpeaking", Seconds(24 * 3600));
    if (!end || !end->front().asBool()) {
        throw Error("the speech ended early");
    }
}

// The bytes that so many UTF-16 units are, at the beginning of a text in UTF-8: events count the former.
inline std::size_t bytesOf(std::size_t units, std::string_view text) {
    std::size_t bytes = 0;
    while (units > 0 && bytes < text.size()) {
        const auto first = static_cast<unsigned char>(text[bytes]);
        const bool pair = first >= 0xF0; // beyond U+FFFF: four bytes, two units
        bytes += pair ? 4 : first >= 0xE0 ? 3 : first >= 0xC0 ? 2 : 1;
        units -= pair && units > 1 ? 2 : 1;
    }
    return bytes;
}

} // namespace examples
