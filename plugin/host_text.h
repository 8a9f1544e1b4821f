// One host string held for code that needs its bytes in UTF-8.

#pragma once

#include "plugin/host_interface.h"

#include <cstdint>
#include <memory>

class rbText {
public:
    // Takes over one lock on the string, which may be null. With `rawBytes` the string's own bytes are read
    // as they stand, whatever its encoding.
    explicit rbText(REALstring string, bool rawBytes = false) : string_(string), rawBytes_(rawBytes) {}
    rbText(const rbText&) = delete;
    rbText& operator=(const rbText&) = delete;
    ~rbText();

    // The bytes, followed by a NUL; empty for a null string and where the host can't supply them. Fetched on
    // the first call. Borrowed: they live as long as this holder.
    const char* GetUTF8();

    // The number of bytes that GetUTF8 found, without the NUL; negative before the first call.
    std::int64_t length() const { return length_; }

    // Whether the host was asked for the bytes and did not supply them.
    bool fetchFailed() const { return fetchFailed_; }

private:
    void fetch();
    void terminate();

    REALstring string_;
    std::int64_t length_ = -1;
    const char* data_ = nullptr;
    std::unique_ptr<char[]> copy_;
    REALstringData record_{};
    bool rawBytes_;
    bool recordFilled_ = false;
    bool fetchFailed_ = false;
};
