// Speech written to a sound file, as fast as it is made.

#pragma once

#include "engine/descriptor.h"
#include "engine/file_format.h"
#include "engine/output.h"
#include "engine/protocol.h"

#include <memory>

namespace zqm::engine {

class FileOutput final : public Output {
public:
    // The file is open and empty; the folder is needed with a temporary name only.
    FileOutput(protocol::Output target, protocol::Descriptor file, protocol::Descriptor folder,
               int sampleRate);
    ~FileOutput() override;

    [[nodiscard]] std::size_t room() const override;
    void write(std::span<const std::int16_t> samples) override;
    [[nodiscard]] std::uint64_t heard() const override { return written_; }
    void finish() override;
    void stop() override { finish(); }

private:
    struct Writer;

    bool giveName() const;
    void fail(std::string error);
    void removeTemporary();

    protocol::Output target_;
    protocol::Descriptor file_;
    protocol::Descriptor folder_;
    const FileFormat* format_; // null: none is known for the extension
    std::unique_ptr<Writer> writer_;
    std::uint64_t written_ = 0;
};

} // namespace zqm::engine
