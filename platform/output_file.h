// The file that an utterance is written to, opened here so that a failure is known before speech begins.

#pragma once

#include "engine/protocol/descriptor.h"
#include "engine/protocol/protocol.h"

#include <optional>
#include <string>
#include <vector>

namespace zqm::platform {

class OutputFile {
public:
    // The path is absolute. What is absent, or a regular file, is written beside itself and put in its place
    // when whole; anything else (a device, a pipe) is written in place. Links are followed. Nothing when it
    // can't be opened; `error` then says why.
    static std::optional<OutputFile> open(const std::string& path, std::string& error);

    // What the engine is told, and the descriptors that go with that, which are copies; nothing when there
    // can't be any, and `error` then says why.
    [[nodiscard]] const protocol::Output& description() const { return description_; }
    std::optional<std::vector<protocol::Descriptor>> descriptors(std::string& error) const;

    // Removes what was written so far, unless it is in place already.
    void discard() const;

    // For another engine, when nobody knows what the one before has written or will yet: an empty file in the
    // place of the one that it has. What is written in place stays as it is. False: there is none now, and
    // `error` says why.
    bool renew(std::string& error);

private:
    OutputFile() = default;
    bool openInPlace(const std::string& path, mode_t type, std::string& error);
    bool openBeside(const std::string& path, const std::optional<mode_t>& mode, std::string& error);
    bool openTemporary(std::string& error);

    protocol::Output description_;
    std::optional<mode_t> mode_; // of the file that it replaces
    protocol::Descriptor file_;
    protocol::Descriptor folder_;
};

} // namespace zqm::platform
