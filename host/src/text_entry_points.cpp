#include "entry_point_types.h"
#include "offered_entry_points.h"
#include "text_conversion.h"
#include "variant_content.h"

namespace zqm::host {

namespace {

void lockText(Core& core, REALtext text) {
    core.lock(text, entry::REALLockText::kName);
}

void unlockText(Core& core, REALtext text) {
    core.unlock(text, entry::REALUnlockText::kName);
}

// Nil is the empty text.
CFStringRef copyCFString(Core& core, REALtext text) {
    if (text == nullptr) {
        return createCFString("", encoding::kUtf8);
    }
    const auto* handle = core.handles().find<TextHandle>(text, entry::REALCopyTextCFString::kName);
    return handle == nullptr ? nullptr : createCFString(handle->utf8, encoding::kUtf8);
}

REALobject newVariantText(Core& core, REALtext text) {
    Text content = core.borrow(text, entry::REALNewVariantText::kName);
    if (content.isNull() && text != nullptr) {
        return nullptr;
    }
    return core.makeVariant(variant::kText, std::move(content)).release();
}

} // namespace

std::vector<EntryPoints::Entry> textEntryPoints() {
    return {
        offer<entry::REALLockText, lockText>(),
        offer<entry::REALUnlockText, unlockText>(),
        offer<entry::REALCopyTextCFString, copyCFString>(),
        offer<entry::REALNewVariantText, newVariantText>(),
    };
}

} // namespace zqm::host
