#include "plugin/host_text.h"

#include "plugin/entry_points.h"
#include "plugin/host_strings.h"

#include <cstring>
#include <new>

namespace {

constexpr const char* kEmpty = "";
constexpr std::size_t kRoomAfterCopy = 4;

} // namespace

rbText::~rbText() {
    if (recordFilled_) {
        REALDisposeStringData(&record_);
    }
    if (string_ != nullptr) {
        REALUnlockString(string_);
    }
}

const char* rbText::GetUTF8() {
    if (length_ < 0) {
        length_ = 0;
        data_ = kEmpty;
        if (string_ != nullptr) {
            fetch();
            terminate();
        }
    }
    return data_;
}

void rbText::fetch() {
    const char* bytes = nullptr;
    std::int64_t length = 0;
    if (rawBytes_) {
        length = hostStringByteLength(string_);
        bytes = REALGetStringContents(string_);
    } else if (REALGetStringData(string_, kCFStringEncodingUTF8, &record_)) {
        recordFilled_ = true;
        length = record_.length;
        bytes = record_.data;
    } else {
        fetchFailed_ = true;
    }
    if (bytes != nullptr && length > 0) {
        data_ = bytes;
        length_ = length;
    }
}

// The host's data may go on behind its end.
void rbText::terminate() {
    if (data_[length_] == '\0') {
        return;
    }
    const auto size = static_cast<std::size_t>(length_);
    copy_.reset(new (std::nothrow) char[size + kRoomAfterCopy]());
    if (copy_ == nullptr) {
        length_ = 0;
        data_ = kEmpty;
        fetchFailed_ = true;
        return;
    }
    std::memcpy(copy_.get(), data_, size);
    data_ = copy_.get();
}
