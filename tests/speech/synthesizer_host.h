// A host program with one synthesizer object, for tests that look behind it.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/instance_data.h"
#import "speech/MyNSSpeechSynthesizer.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The platform object of a host's synthesizer; nil while it is unconstructed. Borrowed.
inline MyNSSpeechSynthesizer* platformObjectOf(const zqm::host::Object& object) {
    return instanceData<MyNSSpeechSynthesizer*>(object.handle());
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
