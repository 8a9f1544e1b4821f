// Speech written to a sound file, as fast as it is made; to a pipe or a device, as fast as that takes it.

#pragma once

#include "engine/event_loop.h"
#include "engine/output/file_format.h"
#include "engine/output/file_placer.h"
#include "engine/output/output.h"
#include "engine/protocol/descriptor.h"
#include "engine/protocol/protocol.h"

#include <memory>

namespace zqm::engine {

class FileOutput final : public Output {
public:
    // The file is open and empty; the folder is needed with a temporary name only. Loop and placer outlive
    // this.
    FileOutput(EventLoop& loop, const FilePlacer& placer, protocol::Output target, protocol::Descriptor file,
               protocol::Descriptor folder, int sampleRate);
    ~FileOutput() override;

    void update() override;
    [[nodiscard]] std::size_t room() const override;
    void write(std::span<const std::int16_t> samples) override;
    [[nodiscard]] std::uint64_t heard() const override { return written_; }
    void finish() override;
    // Of what a pipe or device didn't take yet the rest is dropped.
    void stop() override;

private:
    struct Writer;

    void settle();
    void putInPlace();
    void waitForRoom(bool needed);
    void fail(std::string error);
    void removeTemporary();

    EventLoop& loop_;
    const FilePlacer& placer_;
    protocol::Output target_;
    protocol::Descriptor file_;
    protocol::Descriptor folder_;
    const FileFormat* format_; // null: none is known for the extension
    std::unique_ptr<Writer> writer_;
    std::uint64_t written_ = 0;
    bool isFinishing_ = false;
    bool isWaiting_ = false; // for room
};

} // namespace zqm::engine
