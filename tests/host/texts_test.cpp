#include "tests/host/plain_host.h"

#include <CoreFoundation/CoreFoundation.h>

namespace zqm::host::test {
namespace {

class Texts : public PlainHost {
protected:
    std::string copied(REALtext text) {
        CFStringRef string = call<CFStringRef>("PluginCopyTextCFString", text);
        if (string == nullptr) {
            return "none";
        }
        const CFRange all = CFRangeMake(0, CFStringGetLength(string));
        UInt8 bytes[64];
        CFIndex used = 0;
        CFStringGetBytes(string, all, encoding::kUtf8, '?', 0, bytes, sizeof(bytes), &used);
        CFRelease(string);
        return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(used)};
    }
    // Left with no lock.
    REALtext dead() { return runtime.text("dead").handle(); }
};

TEST_F(Texts, AreCopiedAsPlatformStrings) {
    const Text text = runtime.text("a\xC3\xA4\xF0\x9F\x99\x82");
    EXPECT_EQ(copied(text.handle()), "a\xC3\xA4\xF0\x9F\x99\x82");
    EXPECT_EQ(text.text(), "a\xC3\xA4\xF0\x9F\x99\x82");
    EXPECT_EQ(copied(nullptr), "");
    EXPECT_EQ(copied(runtime.text("").handle()), "");
}

TEST_F(Texts, AreLockedAndUnlocked) {
    const Text text = runtime.text("x");
    call<void>("PluginLockText", text.handle());
    const Text again = text; // NOLINT(performance-unnecessary-copy-initialization): locks it again
    EXPECT_EQ(runtime.ledger().texts, (Ledger::Count{1, 3}));
    call<void>("PluginUnlockText", text.handle());
    EXPECT_EQ(runtime.ledger().texts, (Ledger::Count{1, 2}));
}

TEST_F(Texts, ArePutIntoVariants) {
    const Text text = runtime.text("x");
    const Object variant = runtime.adopt(call<REALobject>("PluginNewVariantText", text.handle()));
    EXPECT_EQ(variant.variantType(), 37);
    EXPECT_EQ(variant.variantValue().asHostText().handle(), text.handle());
    EXPECT_EQ(runtime.ledger().texts, (Ledger::Count{1, 2}));
    const Object nil =
        runtime.adopt(call<REALobject>("PluginNewVariantText", static_cast<REALtext>(nullptr)));
    EXPECT_EQ(nil.variantType(), 37);
    EXPECT_EQ(nil.variantValue().asText(), "");
}

TEST_F(Texts, AreValues) {
    EXPECT_EQ(Value(runtime.text("x")).asText(), "x");
    EXPECT_EQ(Value(runtime.text("x")).asHostText().text(), "x");
    EXPECT_TRUE(Value(Text()).isNull());
    EXPECT_TRUE(Value().asHostText().isNull());
    EXPECT_FALSE(Value(runtime.text("")).isNull());
    EXPECT_THROW(Value("x").asHostText(), CallError);
    EXPECT_EQ(Text().text(), "");
    EXPECT_THROW(runtime.text("\xFF"), CallError);
}

TEST_F(Texts, MisuseIsReported) {
    const String string = runtime.string("x");
    for (const char* name :
         {"PluginLockText", "PluginUnlockText", "PluginCopyTextCFString", "PluginNewVariantText"}) {
        call<void>(name, dead());
        expectReport(Report::Kind::DeadHandle, name);
        call<void>(name, this);
        expectReport(Report::Kind::ForeignHandle, name);
        call<void>(name, string.handle());
        expectReport(Report::Kind::WrongKind, std::string(name) + ": a string instead of a text");
    }
    for (const char* name : {"PluginLockText", "PluginUnlockText"}) {
        call<void>(name, nullptr);
        expectReport(Report::Kind::NullHandle, name);
    }
}

} // namespace
} // namespace zqm::host::test
