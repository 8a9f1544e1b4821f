// A host program that is given Cocoa objects. It ends with every lock given back and every counted object
// gone.

#pragma once

#include "bridge/cocoa_to_variant.h"
#include "plugin/autorelease_pool.h"
#include "plugin/set_up.h"
#include "tests/bridge/counted_objects.h"
#include "tests/plugin/plugin_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace code {
inline constexpr std::int32_t kNil = 0;
inline constexpr std::int32_t kInteger = 2;
inline constexpr std::int32_t kInt64 = 3;
inline constexpr std::int32_t kSingle = 4;
inline constexpr std::int32_t kDouble = 5;
inline constexpr std::int32_t kString = 8;
inline constexpr std::int32_t kBoolean = 11;
} // namespace code

class ToHostTest : public testing::Test {
public:
    ~ToHostTest() override {
        pool.reset();
        EXPECT_THAT(host->reports(), testing::IsEmpty());
        EXPECT_EQ(host->ledger(), expectedLedger);
        EXPECT_EQ(countedAlive(), 0);
        EXPECT_EQ(CFDictionaryGetCount(instances), 0);
        CFRelease(instances);
        instances = nullptr;
    }

protected:
    explicit ToHostTest(double hostVersion = zqm::host::kDefaultVersion) : host(hostVersion) {
        instances = CFDictionaryCreateMutable(nullptr, 0, nullptr, nullptr);
        pool.emplace();
    }

    zqm::host::Object converted(id object) { return host->adopt(NewVariantFromNSObject(object)); }

    // A class as a sibling library would bring it: its objects begin with an object that they retain and
    // have entered into the instances dictionary, or not.
    void defineWrapper(const std::string& name, const std::string& super = {}) {
        zqm::host::ClassDefinition definition{.name = name, .super = super, .dataSize = 32};
        if (super.empty()) {
            definition.dispose = [](void* data) {
                id object = *static_cast<id*>(data);
                CFDictionaryRemoveValue(instances, object);
                [object release];
            };
        }
        host->defineClass(definition);
    }

    static bool isKnown(id object) { return CFDictionaryGetValue(instances, object) != nullptr; }

    std::optional<AutoreleasePool> pool;
    PluginHost host;
    zqm::host::Ledger expectedLedger; // at the end
};
