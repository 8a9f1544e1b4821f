// A host program with one synthesizer object, for tests that look behind it.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/instance_data.h"
#include "plugin/sibling_methods.h"
#import "speech/MyNSSpeechSynthesizer.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sibling_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

// The platform object of a host's synthesizer; nil while it is unconstructed. Borrowed.
inline MyNSSpeechSynthesizer* platformObjectOf(const zqm::host::Object& object) {
    return instanceData<MyNSSpeechSynthesizer*>(object.handle());
}

// Gives the platform object's class a method of its own in place of the one that it has or inherits.
template <typename Function>
void replaceMethod(SEL selector, Function* function) {
    const IMP made = reinterpret_cast<IMP>(reinterpret_cast<void*>(function));
    const char* types =
        method_getTypeEncoding(class_getInstanceMethod([MyNSSpeechSynthesizer class], selector));
    if (!class_addMethod([MyNSSpeechSynthesizer class], selector, made, types)) {
        class_replaceMethod([MyNSSpeechSynthesizer class], selector, made, types);
    }
}

// Holds an object beyond the call in which it came, until the next one.
template <typename Held>
void keep(Held*& held, Held* object) {
    [held autorelease];
    held = [object retain];
}
inline void keep(id& held, id object) {
    [held autorelease];
    held = [object retain];
}

enum class Sibling { OfThisRun, None };

class SynthesizerTest : public testing::Test {
public:
    ~SynthesizerTest() override { EXPECT_THAT(host->reports(), testing::IsEmpty()); }

protected:
    explicit SynthesizerTest(double hostVersion = zqm::host::kDefaultVersion,
                             Sibling sibling = Sibling::OfThisRun)
        : host(hostVersion) {
        if (sibling == Sibling::OfThisRun) {
            zqm::support::loadSibling(*host);
        }
        host.start();
    }

    zqm::host::Object newObject() { return host->create("NSSpeechSynthesizerZQM"); }
    zqm::host::Object newSynthesizer() {
        zqm::host::Object object = newObject();
        object.call("Constructor");
        EXPECT_NE(platformObjectOf(object), nil);
        return object;
    }

    // The class of the host exceptions that the sibling makes of the platform's; where this run has none, of
    // those that are made here in its place.
    static std::string hostExceptionClass() {
        if (zqm::support::siblingLibrary()) {
            return "NSExceptionZQM";
        }
        REALobject (*const wrap)(id, SEL, NSException*) = [](id, SEL, NSException*) {
            return REALnewInstance("IllegalCastException");
        };
        EXPECT_TRUE(class_addMethod(object_getClass([NSException class]), @selector(NewNSExceptionZQM:),
                                    reinterpret_cast<IMP>(reinterpret_cast<void*>(wrap)), "^v@:@"));
        return "IllegalCastException";
    }

    AutoreleasePool pool;
    PluginHost host;
};

// For what happens where there is no sibling, or before one appears, whatever the run. A library stays in its
// process, so each of these tests has a process of its own.
class SynthesizerAloneTest : public SynthesizerTest {
protected:
    SynthesizerAloneTest() : SynthesizerTest(zqm::host::kDefaultVersion, Sibling::None) {}
};
