// A host program with one synthesizer object, for tests that look behind it.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/instance_data.h"
#import "speech/MyNSSpeechSynthesizer.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

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

class SynthesizerTest : public testing::Test {
public:
    ~SynthesizerTest() override { EXPECT_THAT(host->reports(), testing::IsEmpty()); }

protected:
    explicit SynthesizerTest(double hostVersion = zqm::host::kDefaultVersion) : host(hostVersion) {
        host.start();
    }

    zqm::host::Object newObject() { return host->create("NSSpeechSynthesizerZQM"); }
    zqm::host::Object newSynthesizer() {
        zqm::host::Object object = newObject();
        object.call("Constructor");
        EXPECT_NE(platformObjectOf(object), nil);
        return object;
    }

    AutoreleasePool pool;
    PluginHost host;
};
