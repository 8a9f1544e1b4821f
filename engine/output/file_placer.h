// Puts whole files in their places, for an engine that may not: a process of its own, begun before the engine
// is confined. What it is asked for is not believed. It only touches a file that whoever asks has open as
// hosts open their outputs, by a name that hosts give these (engine/protocol/temporary_name.h), in the folder
// in which that file was opened.

#pragma once

#include "engine/protocol/descriptor.h"

#include <string>
#include <sys/types.h>

namespace zqm::engine {

class FilePlacer {
public:
    // Begins the process; that ends when this object does, or its own process. Throws std::system_error when
    // it can't be begun.
    FilePlacer();
    // Waits for its end.
    ~FilePlacer();
    FilePlacer(const FilePlacer&) = delete;
    FilePlacer& operator=(const FilePlacer&) = delete;

    // Whether the process has ended before its time: nothing is put in its place any more.
    [[nodiscard]] bool hasEnded() const;

    // Gives the file its final name in the folder, instead of the temporary one, which it need not have yet.
    // On failure it has neither. Answers 0, or the error's number.
    [[nodiscard]] int place(int file, int folder, const std::string& temporaryName,
                            const std::string& finalName) const;
    // Removes the temporary name.
    [[nodiscard]] int remove(int file, int folder, const std::string& temporaryName) const;

private:
    [[nodiscard]] int request(int file, int folder, const std::string& temporaryName,
                              const std::string& finalName) const;

    pid_t process_ = -1;
    protocol::Descriptor socket_;
};

} // namespace zqm::engine
