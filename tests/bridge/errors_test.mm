// Platform errors as host objects.

#include "bridge/errors.h"

#include "plugin/set_up.h"
#include "tests/bridge/bridge_host.h"

#import <Foundation/Foundation.h>

namespace {

using namespace zqm::bridge::test;
using testing::IsEmpty;
using zqm::host::Object;

NSError* someError() {
    return [NSError errorWithDomain:@"test" code:5 userInfo:nil];
}

// Ends the wrapper's hold on its error, as the sibling that brings the class would.
void defineErrorClass(PluginHost& host) {
    host->defineClass({.name = "NSErrorZQM", .dataSize = sizeof(id), .dispose = [](void* data) {
                           [*static_cast<id*>(data) release];
                       }});
}

// The pairs are plain pointers.
class Instances {
public:
    Instances() { instances = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr); }
    Instances(const Instances&) = delete;
    Instances& operator=(const Instances&) = delete;
    ~Instances() {
        CFRelease(instances);
        instances = nullptr;
    }
};

TEST(ErrorToHost, IsANewObjectThatHoldsIt) {
    inBridge([](PluginHost& host) {
        defineErrorClass(host);
        NSError* error = someError();
        {
            const Object object = host->adopt(NewNSErrorZQM(error));
            EXPECT_EQ(object.className(), "NSErrorZQM");
            EXPECT_EQ(object.dataAs<id>(), error);
            EXPECT_EQ([error retainCount], 2U);
        }
        EXPECT_EQ([error retainCount], 1U);
    });
}

TEST(ErrorToHost, TheSameErrorIsTheSameObject) {
    inBridge([](PluginHost& host) {
        const Instances shared;
        defineErrorClass(host);
        NSError* error = someError();
        NSError* another = someError();
        const Object first = host->adopt(NewNSErrorZQM(error));
        EXPECT_EQ(CFDictionaryGetValue(instances, error), first.handle());
        const Object second = host->adopt(NewNSErrorZQM(error));
        const Object third = host->adopt(NewNSErrorZQM(another));
        EXPECT_EQ(first, second);
        EXPECT_FALSE(first == third);
        EXPECT_EQ([error retainCount], 2U); // one for the one object
        EXPECT_EQ(host->entryPoints().calls("PluginNewInstance"), 2U);
        EXPECT_EQ(CFDictionaryGetCount(instances), 2);
    });
}

TEST(ErrorToHost, WithoutADictionaryOfInstancesIsANewObjectEachTime) {
    inBridge([](PluginHost& host) {
        defineErrorClass(host);
        NSError* error = someError();
        const Object first = host->adopt(NewNSErrorZQM(error));
        const Object second = host->adopt(NewNSErrorZQM(error));
        EXPECT_FALSE(first == second);
        EXPECT_EQ([error retainCount], 3U);
    });
}

// Given without a lock it would end in the caller's hands.
TEST(ErrorToHost, WhoseObjectCantBeLockedIsNull) {
    inBridge([](PluginHost& host) {
        const Instances shared;
        defineErrorClass(host);
        NSError* error = someError();
        const Object first = host->adopt(NewNSErrorZQM(error));
        host->entryPoints().refuse("REALLockObject");
        EXPECT_EQ(NewNSErrorZQM(error), nullptr);
    });
}

TEST(ErrorToHost, OfNilIsNull) {
    inBridge([](PluginHost& host) {
        const Instances shared;
        EXPECT_EQ(NewNSErrorZQM(nil), nullptr);
        EXPECT_THAT(host->entryPoints().asked(), IsEmpty());
    });
}

TEST(ErrorToHost, WithoutTheClassIsNullAndNotHeld) {
    for (const bool refused : {false, true}) {
        inBridge([refused](PluginHost& host) {
            const Instances shared;
            if (refused) {
                defineErrorClass(host);
                host->entryPoints().refuse("PluginNewInstance");
            }
            NSError* error = someError();
            EXPECT_EQ(NewNSErrorZQM(error), nullptr);
            EXPECT_EQ([error retainCount], 1U);
            EXPECT_EQ(CFDictionaryGetCount(instances), 0);
        });
    }
}

} // namespace
