// What happens once a sibling library adds its class methods to NSException.

#include "plugin/set_up.h"

#include "plugin/autorelease_pool.h"
#include "plugin/guard.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <objc/runtime.h>

namespace {

using testing::IsEmpty;

int fetched = 0;
int prepared = 0;
CFMutableDictionaryRef dictionary = nullptr;
NSException* wrapped = nil;
bool wrapperIsMissing = false;
bool wrappingRaises = false;

CFMutableDictionaryRef fetchDictionary(id, SEL) {
    ++fetched;
    return dictionary;
}

void prepare(id, SEL) {
    ++prepared;
}

REALobject wrap(id, SEL, NSException* exception) {
    wrapped = exception;
    if (wrappingRaises) {
        [NSException raise:@"Wrapping" format:@"failed"];
    }
    return wrapperIsMissing ? nullptr : REALnewInstance("IllegalCastException");
}

template <typename Function>
void addToNSException(const char* selector, Function function, const char* types) {
    ASSERT_TRUE(class_addMethod(object_getClass([NSException class]), sel_registerName(selector),
                                reinterpret_cast<IMP>(reinterpret_cast<void*>(function)), types));
}

TEST(SetUp, DoesNothingWithoutASibling) {
    zqm::support::inFreshProcess([] {
        const AutoreleasePool pool;
        CocoaInit();
        EXPECT_EQ(instances, nullptr);
        rememberInstance(&fetched, &prepared);
        forgetInstance(&fetched);
    });
}

TEST(SetUp, FetchesAndPreparesEachOnceWhenASiblingAppears) {
    zqm::support::inFreshProcess([] {
        const AutoreleasePool pool;
        CocoaInit();

        // The two methods may come one by one, and the dictionary later than its method.
        addToNSException("PrepareNSExceptionZQM", prepare, "v@:");
        CocoaInit();
        EXPECT_EQ(prepared, 1);
        EXPECT_EQ(instances, nullptr);

        addToNSException("GetInstancesDictionaryZQM", fetchDictionary, "^v@:");
        CocoaInit();
        EXPECT_EQ(fetched, 1);
        EXPECT_EQ(instances, nullptr);

        dictionary = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
        CocoaInit();
        EXPECT_EQ(fetched, 2);
        EXPECT_EQ(instances, dictionary);

        CocoaInit();
        EXPECT_EQ(fetched, 2);
        EXPECT_EQ(prepared, 1);

        rememberInstance(&fetched, &prepared);
        EXPECT_EQ(CFDictionaryGetValue(dictionary, &fetched), &prepared);
        rememberInstance(&fetched, &wrapped);
        EXPECT_EQ(CFDictionaryGetValue(dictionary, &fetched), &wrapped);
        forgetInstance(&fetched);
        EXPECT_EQ(CFDictionaryGetCount(dictionary), 0);
        CFRelease(dictionary);
    });
}

TEST(ReleaseInstance, GivesUpTheRetainAndThePairAndLeavesNil) {
    zqm::support::inFreshProcess([] {
        const AutoreleasePool pool;
        for (const bool withDictionary : {false, true}) {
            instances = withDictionary ? CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr) : nullptr;
            NSMutableArray* const object = [NSMutableArray array];
            NSMutableArray* held = [object retain];
            rememberInstance(held, &held);
            releaseInstance(held);
            EXPECT_EQ(held, nil);
            EXPECT_EQ([object retainCount], 1U);
            releaseInstance(held);
            EXPECT_EQ([object retainCount], 1U);
            if (withDictionary) {
                EXPECT_EQ(CFDictionaryGetCount(instances), 0);
                CFRelease(instances);
            }
        }
    });
}

TEST(RaiseNSExceptionZQM, RaisesWhatTheSiblingMakesOfIt) {
    zqm::support::inFreshProcess([] {
        addToNSException("NewNSExceptionZQM:", wrap, "^v@:@");
        PluginHost host;
        const auto before = host->ledger();
        {
            const AutoreleasePool pool;
            NSException* exception = [NSException exceptionWithName:@"N" reason:@"r" userInfo:nil];
            try {
                host->guarded([&] { RaiseNSExceptionZQM(exception); });
                ADD_FAILURE() << "nothing raised";
            } catch (const zqm::host::HostException& raised) {
                EXPECT_EQ(raised.className(), "IllegalCastException");
                EXPECT_EQ(raised.all().size(), 1U);
            }
            EXPECT_EQ(wrapped, exception);

            wrapperIsMissing = true;
            host->guarded([&] { RaiseNSExceptionZQM(exception); });
        }
        EXPECT_EQ(host->ledger(), before);
        EXPECT_THAT(host->reports(), IsEmpty());
    });
}

TEST(Guard, LetsNothingOutOfAFailingSibling) {
    zqm::support::inFreshProcess([] {
        addToNSException("NewNSExceptionZQM:", wrap, "^v@:@");
        wrappingRaises = true;
        PluginHost host;
        const int result = guarded([]() -> int {
            [NSException raise:@"N" format:@"r"];
            return 1;
        });
        EXPECT_EQ(result, 0);
        EXPECT_THAT(host->takeRaised(), IsEmpty());
    });
}

} // namespace
