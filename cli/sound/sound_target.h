#pragma once

#include <string>

namespace zqm::cli {

// An open file, closed with this.
class OpenFile {
public:
    explicit OpenFile(int descriptor = -1) : descriptor_(descriptor) {}
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    int get() const { return descriptor_; } // -1: none
    int release();

private:
    int descriptor_;
};

// Where a sound file shall be in the end. Until then it has no name, or a temporary one: what stands there
// stays as it is, and nothing is left when this goes. Links are followed. What is no regular file (a device,
// a pipe) gets the whole of it at the end.
class SoundTarget {
public:
    // "-" is standard output. Throws Failure when nothing can be written there.
    explicit SoundTarget(const std::string& path);
    SoundTarget(const SoundTarget&) = delete;
    SoundTarget& operator=(const SoundTarget&) = delete;
    ~SoundTarget();

    // Of the file to be, empty at first, for reading and writing.
    int descriptor() const { return file_.get(); }
    std::string fileName() const; // what people call it, or the place where it is
    void putInPlace();            // throws Failure

private:
    void openBeside(const std::string& path, bool isPresent, unsigned int mode);
    void openInPlace(const std::string& path);
    void copy();
    [[noreturn]] void fail(int error) const;

    std::string name_;
    OpenFile file_;
    OpenFile folder_;
    std::string temporaryName_; // in that folder; empty: it has none
    std::string finalName_;
    OpenFile receiver_; // gets a copy; none: the file is renamed
};

} // namespace zqm::cli
