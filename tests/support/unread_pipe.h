#pragma once

#include <string>

namespace zqm::support {

// A named pipe that is read only when told, so that nothing that writes more into it than it holds is done
// before.
class UnreadPipe {
public:
    explicit UnreadPipe(const std::string& path);
    UnreadPipe(const UnreadPipe&) = delete;
    UnreadPipe& operator=(const UnreadPipe&) = delete;
    ~UnreadPipe();

    bool isMade() const { return isMade_ && reader_ >= 0 && writer_ >= 0; }

    // Waits until nothing more goes in; false: that was not so within minutes.
    bool fillsUp() const;

    // What is in it now.
    std::string read() const;

private:
    bool isMade_;
    int reader_;
    int writer_;
};

// What a pipe that doesn't block holds now.
std::string waitingIn(int reader);

} // namespace zqm::support
