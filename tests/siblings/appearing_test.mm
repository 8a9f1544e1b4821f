// The sibling that appears in the middle of a program: what the speech classes make of it from then on.

#include "plugin/autorelease_pool.h"
#include "plugin/sibling_methods.h"
#include "tests/support/fresh_process.h"
#include "tests/support/temporary_folder.h"

#import <AppKit/AppKit.h>
#include <bit>
#include <gtest/gtest.h>
#import <objc/runtime.h>
#include <zqmhost/zqmhost.h>

namespace {

using zqm::host::HostException;
using zqm::host::Ledger;
using zqm::host::Object;
using zqm::host::Runtime;

constexpr const char* kSynthesizer = "NSSpeechSynthesizerZQM";
constexpr zqm::host::Seconds kDeadline{60};

void expectNoReports(const Runtime& host) {
    for (const zqm::host::Report& report : host.reports()) {
        ADD_FAILURE() << nameOf(report.kind) << ": " << report.text;
    }
}

int preparations = 0;

void countPreparation(id, SEL) {
    ++preparations;
}

void raiseInstead(id, SEL) {
    [NSException raise:@"StopException" format:@"stop was refused"];
}

void loadSibling(Runtime& host) {
    host.load(ZQM_FOUNDATION);
    method_setImplementation(class_getClassMethod([NSException class], @selector(PrepareNSExceptionZQM)),
                             std::bit_cast<IMP>(&countPreparation));
}

CFIndex pairs() {
    return CFDictionaryGetCount([NSException GetInstancesDictionaryZQM]);
}

void speak(Runtime& host, Object& synthesizer) {
    const zqm::support::TemporaryFolder folder;
    ASSERT_TRUE(
        synthesizer.call("startSpeakingString", "Hello", "file://" + (folder / "a.wav").string()).asBool());
    const auto end = host.runUntilRaised(synthesizer, "didFinishSpeaking", kDeadline);
    ASSERT_TRUE(end.has_value());
    EXPECT_TRUE(end->front().asBool());
}

TEST(AppearingSibling, IsUsedFromThenOn) {
    zqm::support::inFreshProcess([] {
        const AutoreleasePool pool;
        Runtime host;
        host.load(ZQM_PLUGIN);
        Object early = host.construct(kSynthesizer);
        speak(host, early);
        loadSibling(host);
        EXPECT_EQ(preparations, 0);
        {
            Object late = host.construct(kSynthesizer);
            EXPECT_EQ(preparations, 1);
            EXPECT_EQ(pairs(), 1);
            const Object another = host.construct(kSynthesizer);
            EXPECT_EQ(preparations, 1);
            EXPECT_EQ(pairs(), 2);
            speak(host, late);
        }
        EXPECT_EQ(pairs(), 0);
        speak(host, early);
        early.reset(); // was never entered
        EXPECT_EQ(pairs(), 0);
        expectNoReports(host);
        EXPECT_EQ(host.ledger(), Ledger());
    });
}

TEST(AppearingSibling, TurnsPlatformExceptionsIntoHostExceptions) {
    zqm::support::inFreshProcess([] {
        const AutoreleasePool pool;
        Runtime host;
        host.load(ZQM_PLUGIN);
        loadSibling(host);
        // Before the class below it is used, which keeps the methods it inherits.
        method_setImplementation(
            class_getInstanceMethod([NSSpeechSynthesizer class], @selector(stopSpeaking)),
            std::bit_cast<IMP>(&raiseInstead));
        Object synthesizer = host.construct(kSynthesizer);
        const Ledger before = host.ledger();
        try {
            synthesizer.call("stopSpeaking");
            ADD_FAILURE() << "nothing was raised";
        } catch (const HostException& exception) {
            EXPECT_EQ(exception.className(), "NSExceptionZQM");
            EXPECT_EQ(exception.message(), "stop was refused");
        }
        EXPECT_EQ(host.ledger(), before);
        EXPECT_NE(synthesizer.get("voice").asText(), "");
        expectNoReports(host);
    });
}

} // namespace
