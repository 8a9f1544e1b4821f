#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "text_conversion.h"

#include <utility>

namespace zqm::host {

namespace {

// A string's bytes and encoding; nil is the empty text.
struct Contents {
    std::string_view bytes;
    std::uint32_t encoding = encoding::kUtf8;
};

std::optional<Contents> contentsOf(Core& core, REALstring string, const char* where) {
    if (string == nullptr) {
        return Contents();
    }
    const auto* handle = core.handles().find<StringHandle>(string, where);
    if (handle == nullptr) {
        return std::nullopt;
    }
    return Contents{handle->bytes, handle->encoding};
}

bool getStringData(Core& core, REALstring string, std::uint32_t encoding, REALstringData* out) {
    constexpr const char* kWhere = entry::REALGetStringData::kName;
    if (out == nullptr) {
        core.reports().add(Report::Kind::BadArgument, std::string(kWhere) + ": no place for the data");
        return false;
    }
    const auto contents = contentsOf(core, string, kWhere);
    if (!contents) {
        return false;
    }
    auto converted = convertText(contents->bytes, contents->encoding, encoding);
    if (!converted) {
        return false;
    }
    auto& data = core.handles().add<StringDataHandle>(std::move(*converted));
    *out = {encoding, 0, data.bytes.data(), static_cast<std::int64_t>(data.bytes.size()), &data};
    return true;
}

void disposeStringData(Core& core, REALstringData* data) {
    constexpr const char* kWhere = entry::REALDisposeStringData::kName;
    if (data == nullptr) {
        core.reports().add(Report::Kind::BadArgument, std::string(kWhere) + ": no data");
        return;
    }
    if (auto* handle = core.handles().find<StringDataHandle>(data->owner, kWhere)) {
        core.handles().retire(*handle);
        *data = {};
    }
}

CFStringRef getStringCFString(Core& core, REALstring string, std::uint32_t /*options*/) {
    const auto contents = contentsOf(core, string, entry::REALGetStringCFString::kName);
    return contents ? createCFString(contents->bytes, contents->encoding) : nullptr;
}

REALstring buildStringWithEncoding(Core& core, const char* bytes, std::int32_t length,
                                   std::uint32_t encoding) {
    constexpr const char* kWhere = entry::REALBuildStringWithEncoding::kName;
    if (length < 0) {
        core.reports().add(Report::Kind::BadArgument,
                           std::string(kWhere) + ": length " + std::to_string(length));
        return nullptr;
    }
    if (bytes == nullptr) {
        return nullptr;
    }
    const std::string_view text(bytes, static_cast<std::size_t>(length));
    return core.handles().add<StringHandle>(text, encoding).handle();
}

REALstring buildString(Core& core, const char* bytes, std::int32_t length) {
    return buildStringWithEncoding(core, bytes, length, encoding::kNone);
}

const char* getCString(Core& core, REALstring string) {
    if (string == nullptr) {
        return "";
    }
    const auto* handle = core.handles().find<StringHandle>(string, entry::REALGetStringContents::kName);
    return handle == nullptr ? nullptr : handle->bytes.c_str();
}

std::uint32_t getEncoding(Core& core, REALstring string) {
    const auto contents = contentsOf(core, string, entry::REALGetStringEncoding::kName);
    return contents ? contents->encoding : 0;
}

void setEncoding(Core& core, REALstring string, std::uint32_t encoding) {
    if (auto* handle = core.handles().find<StringHandle>(string, entry::REALSetStringEncoding::kName)) {
        handle->encoding = encoding;
    }
}

REALstring convertString(Core& core, REALstring string, std::uint32_t encoding) {
    const auto contents = contentsOf(core, string, entry::REALConvertString::kName);
    const auto converted =
        contents ? convertText(contents->bytes, contents->encoding, encoding) : std::nullopt;
    return converted ? core.handles().add<StringHandle>(*converted, encoding).handle() : nullptr;
}

void lockString(Core& core, REALstring string) {
    core.lock(string, entry::REALLockString::kName);
}

void unlockString(Core& core, REALstring string) {
    core.unlock(string, entry::REALUnlockString::kName);
}

} // namespace

std::vector<EntryPoints::Entry> stringEntryPoints() {
    return {
        offer<entry::REALGetStringData, getStringData>(),
        offer<entry::REALDisposeStringData, disposeStringData>(),
        offer<entry::REALGetStringCFString, getStringCFString>(),
        offer<entry::originalREALBuildString, buildString>(),
        offer<entry::REALBuildStringWithEncoding, buildStringWithEncoding>(),
        offer<entry::REALGetStringContents, getCString>(),
        offer<entry::REALGetStringEncoding, getEncoding>(),
        offer<entry::REALSetStringEncoding, setEncoding>(),
        offer<entry::REALConvertString, convertString>(),
        offer<entry::REALLockString, lockString>(),
        offer<entry::REALUnlockString, unlockString>(),
    };
}

} // namespace zqm::host
