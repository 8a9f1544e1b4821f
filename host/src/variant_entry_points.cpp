#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "variant_content.h"

namespace zqm::host {

namespace {

REALobject fromString(Core& core, REALstring string) {
    String content = core.borrow(string, entry::REALNewVariantString::kName);
    if (content.isNull() && string != nullptr) {
        return nullptr;
    }
    return core.makeVariant(variant::kString, std::move(content)).release();
}

template <std::int32_t code, typename Content>
REALobject fromContent(Core& core, Content content) {
    return core.makeVariant(code, content).release();
}

// A Variant may be nil, which reads as 0 or the empty text. Nothing, with a report, when it is no object.
std::optional<Value> contentOf(Core& core, REALobject variant, const char* where) {
    Object object = core.borrow(variant, where);
    if (object.isNull() && variant != nullptr) {
        return std::nullopt;
    }
    return object;
}

REALstring toString(Core& core, REALobject variant) {
    const auto content = contentOf(core, variant, entry::GetVariantString::kName);
    return content ? readString(core, *content).release() : nullptr;
}

std::int64_t toInt64(Core& core, REALobject variant) {
    const auto content = contentOf(core, variant, entry::GetVariantInt64::kName);
    return content ? readInteger(*content) : 0;
}

template <typename Entry, typename Real>
Real toReal(Core& core, REALobject variant) {
    const auto content = contentOf(core, variant, Entry::kName);
    return content ? static_cast<Real>(readReal(*content)) : 0;
}

} // namespace

std::vector<EntryPoints::Entry> variantEntryPoints() {
    return {
        offer<entry::REALNewVariantString, fromString>(),
        offer<entry::REALNewVariantInteger, fromContent<variant::kInteger, std::int64_t>>(),
        offer<entry::REALNewVariantUInt32, fromContent<variant::kInt64, std::uint32_t>>(),
        offer<entry::REALNewVariantSingle, fromContent<variant::kSingle, float>>(),
        offer<entry::REALNewVariantDouble, fromContent<variant::kDouble, double>>(),
        offer<entry::REALNewVariantBoolean, fromContent<variant::kBoolean, bool>>(),
        offer<entry::GetVariantString, toString>(),
        offer<entry::GetVariantInt64, toInt64>(),
        offer<entry::GetVariantSingle, toReal<entry::GetVariantSingle, float>>(),
        offer<entry::GetVariantDouble, toReal<entry::GetVariantDouble, double>>(),
    };
}

} // namespace zqm::host
