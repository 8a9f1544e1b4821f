// N rounds against 2N: what is alive afterwards must be the same.

#include "tests/host/widget.h"

namespace zqm::host::test {
namespace {

class LedgerTest : public WidgetTest {
protected:
    void rounds(int count) {
        for (int round = 0; round < count; ++round) {
            Object widget = runtime.create("Widget");
            widget.call("Constructor", "title");
            widget.set("Title", runtime.string("other", encoding::kMacRoman));
            widget.on("pinged", [](const Arguments& arguments) { arguments[5].asText(); });
            widget.call("Ping", "text");
            Value other = runtime.callShared("Widget", "Make", "made");
            widget.call("Replace", ByRef{&other});
            Value text = runtime.string("text");
            widget.call("Exclaim", ByRef{&text});
            EXPECT_THROW(widget.call("RaiseTwice"), HostException);
            EXPECT_THROW(widget.call("Replace", ByRef{&text}), CallError);
        }
    }
};

TEST_F(LedgerTest, IsTheSameAfterTwiceTheWork) {
    rounds(20);
    const Ledger after = runtime.ledger();
    rounds(40);
    EXPECT_EQ(runtime.ledger(), after);
    EXPECT_EQ(after, Ledger());
}

TEST_F(LedgerTest, ShowsWhatIsLeftBehind) {
    const Ledger before = runtime.ledger();
    const Object widget = runtime.create("Widget");
    const Object again = widget; // NOLINT(performance-unnecessary-copy-initialization): locks it again
    const String text = runtime.string("x");
    const Ledger after = runtime.ledger();
    EXPECT_NE(after, before);
    EXPECT_EQ(after.objects.handles, 1);
    EXPECT_EQ(after.objects.locks, 2);
    EXPECT_EQ(after.strings.handles, 1);
}

} // namespace
} // namespace zqm::host::test
