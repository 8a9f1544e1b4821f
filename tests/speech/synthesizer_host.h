// A host program with one synthesizer object, for tests that look behind it.

#pragma once

#include "plugin/autorelease_pool.h"
#include "plugin/instance_data.h"
#import "speech/MyNSSpeechSynthesizer.h"
#include "tests/plugin/plugin_host.h"
#include "tests/support/fresh_process.h"
#include "tests/support/sibling_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// The platform object of a host's synthesizer; nil while it is unconstructed. Borrowed.
inline MyNSSpeechSynthesizer* platformObjectOf(const zqm::host::Object& object) {
    return instanceData<MyNSSpeechSynthesizer*>(object.handle());
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

    AutoreleasePool pool;
    PluginHost host;
};

// For what happens where there is no sibling, or before one appears, whatever the run. A library stays in its
// process, so each of these tests has a process of its own.
class SynthesizerAloneTest : public SynthesizerTest {
protected:
    SynthesizerAloneTest() : SynthesizerTest(zqm::host::kDefaultVersion, Sibling::None) {}
};
