// What the tests of the synthesizer with the real engine share, which speaks mostly into files.

#pragma once

#include "tests/platform/speech_listener.h"
#include "tests/support/process_table.h"
#include "tests/support/temporary_folder.h"

#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <poll.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace zqm::platform::test {

using support::TemporaryFolder;

// Where every access to memory is checked, long texts are shorter by this, and take about as long.
#ifdef __SANITIZE_ADDRESS__
inline constexpr int kSlowness = 10;
#else
inline constexpr int kSlowness = 1;
#endif

inline const std::vector<HeardWord> kHelloWorld{{0, 5}, {6, 5}};

inline std::string manyWords(int count) {
    std::string text;
    for (int index = 0; index < count; ++index) {
        text += index % 10 == 9 ? "end. " : "word ";
    }
    return text;
}

inline std::size_t filesIn(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

// What a pipe that doesn't block holds now.
inline std::string waitingIn(int reader) {
    std::string bytes;
    char buffer[4096];
    for (ssize_t count = 0; (count = ::read(reader, buffer, sizeof buffer)) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(count));
    }
    return bytes;
}

// A pipe that is read only when told, so that no speech of some length into it ends before.
class UnreadPipe {
public:
    explicit UnreadPipe(const std::string& path)
        : made_(::mkfifo(path.c_str(), 0600) == 0),
          reader_(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)),
          writer_(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC)) {}
    UnreadPipe(const UnreadPipe&) = delete;
    UnreadPipe& operator=(const UnreadPipe&) = delete;
    ~UnreadPipe() {
        ::close(reader_);
        ::close(writer_);
    }

    bool isMade() const { return made_ && reader_ >= 0 && writer_ >= 0; }

    bool fillsUp() const {
        return waitUntil([this] {
            pollfd watched{writer_, POLLOUT, 0};
            return ::poll(&watched, 1, 0) == 0;
        });
    }

    // What is in it now.
    std::string read() const { return waitingIn(reader_); }

private:
    bool made_;
    int reader_;
    int writer_;
};

class Speech : public testing::Test {
protected:
    // The engines of earlier tests may take a moment to end; what is counted here begins at none.
    void SetUp() override {
        Speaker other; // later calls reap
        ASSERT_TRUE(waitUntil([&] {
            [other.synthesizer isSpeaking];
            return zqm::support::childrenOfThisProcess().empty();
        }));
    }

    std::string path(const std::string& name) const { return (folder_.path() / name).string(); }

    TemporaryFolder folder_;
};

} // namespace zqm::platform::test
