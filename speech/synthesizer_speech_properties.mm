// The platform's speech properties, which are known by name.

#include "bridge/cocoa_to_variant.h"
#include "bridge/errors.h"
#include "bridge/variant_to_cocoa.h"
#include "plugin/guard.h"
#include "plugin/host_handles.h"
#include "plugin/platform_strings.h"
#include "speech/synthesizer_data.h"
#include "speech/synthesizer_members.h"

#include <utility>

namespace {

// An argument "byref error as NSErrorZQM". Where the host gives no address it is neither read nor written.
class ErrorArgument {
public:
    explicit ErrorArgument(REALobject* error) : error_(error) {
        if (error_ != nullptr && *error_ != nullptr) {
            REALUnlockObject(std::exchange(*error_, nullptr));
        }
    }

    void set(NSError* error) const {
        if (error_ != nullptr) {
            *error_ = NewNSErrorZQM(error);
        }
    }

private:
    REALobject* error_;
};

void logName(NSString* name) {
    NSLog(@"k: %@\n", name);
}

void logValue(id value) {
    NSLog(@"v: %@ %llx\n", value, reinterpret_cast<unsigned long long>(value));
}

void logError(NSError* error) {
    NSLog(@"e: %@\n", error);
}

} // namespace

REALobject objectForProperty(REALobject self, REALstring propertyName, REALobject* error) {
    return guarded([&]() -> REALobject {
        const ErrorArgument argument(error);
        NSString* name = platformString(propertyName);
        NSError* failure = nil;
        id value = [synthesizerOf(self) objectForProperty:name error:&failure];
        logName(name);
        logValue(value);
        logError(failure);
        OwnedObject variant{NewVariantFromNSObject(value)};
        argument.set(failure);
        return variant.release();
    });
}

bool setObjectForProperty(REALobject self, REALobject value, REALstring propertyName, REALobject* error) {
    return guarded([&]() -> bool {
        const ErrorArgument argument(error);
        NSString* name = platformString(propertyName);
        id object = GetVariantAsNSObject(value);
        logName(name);
        logValue(object);
        NSError* failure = nil;
        const BOOL done = [synthesizerOf(self) setObject:object forProperty:name error:&failure];
        argument.set(failure);
        logError(failure);
        return done;
    });
}
