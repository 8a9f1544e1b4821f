// A synthesizer's properties, by their keys: which there are, what values they have and take.

#pragma once

#include "engine/protocol/manner.h"
#include "platform/speech_session.h"

#import <Foundation/Foundation.h>

namespace zqm::platform {

// What has the properties.
class PropertyOwner {
public:
    PropertyOwner() = default;
    PropertyOwner(const PropertyOwner&) = delete;
    PropertyOwner& operator=(const PropertyOwner&) = delete;
    virtual ~PropertyOwner() = default;

    virtual bool isSpeaking() = 0;
    virtual SpeechStatus status() = 0;
    virtual Problems takeProblems() = 0;
    virtual std::uint32_t recentSync() = 0;
    virtual protocol::Manner manner() const = 0; // all of it is given
    virtual void change(const protocol::Manner& manner) = 0;
    virtual bool setVoice(NSString* identifier) = 0;
    virtual void setDelimiters(const protocol::Delimiters& delimiters) = 0;
    virtual void setOutput(NSURL* url) = 0;
    virtual void reset() = 0;
};

// nil with an error, or NO with an error and nothing changed, when it can't be done. `error` may be null, and
// what it points to is left alone when all is well.
id readProperty(PropertyOwner& owner, NSString* key, NSError** error);
BOOL writeProperty(PropertyOwner& owner, NSString* key, id value, NSError** error);

} // namespace zqm::platform
