// A host program with objects of the speech classes, for tests that look behind them.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/instance_data.h"
#include "plugin/sibling_methods.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sibling_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

// Gives a class a method of its own in place of the one that it has or inherits.
template <typename Function>
void replaceMethod(Class changed, SEL selector, Function* function) {
    const IMP made = reinterpret_cast<IMP>(reinterpret_cast<void*>(function));
    const char* types = method_getTypeEncoding(class_getInstanceMethod(changed, selector));
    if (!class_addMethod(changed, selector, made, types)) {
        class_replaceMethod(changed, selector, made, types);
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

// The classes and messages of what was raised outside of any call.
inline std::vector<std::string> messagesOf(const std::vector<zqm::host::RaisedException>& raised) {
    std::vector<std::string> messages;
    for (const zqm::host::RaisedException& exception : raised) {
        messages.push_back(exception.className + ": " + exception.message);
    }
    return messages;
}

enum class Sibling { OfThisRun, None };

class SpeechTest : public testing::Test {
public:
    ~SpeechTest() override { EXPECT_THAT(host->reports(), testing::IsEmpty()); }

protected:
    SpeechTest(double hostVersion, Sibling sibling) : host(hostVersion) {
        if (sibling == Sibling::OfThisRun) {
            zqm::support::loadSibling(*host);
        }
        host.start();
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
