// A synthesizer's delegate that writes down what it hears.

#pragma once

#include "tests/platform/test_strings.h"
#include "tests/platform/waiting.h"

#import <AppKit/NSSpeechSynthesizer.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace zqm::platform::test {

struct HeardWord {
    std::size_t position;
    std::size_t length;

    bool operator==(const HeardWord&) const = default;
};

struct Heard {
    std::vector<HeardWord> words;
    std::vector<bool> finished;
    std::vector<char> order;    // 'w' and 'f'
    NSString* lastString = nil; // not retained
    bool wantsWords = true;
    bool wantsFinish = true;
    int questions = 0; // respondsToSelector: for words
    std::function<void(NSSpeechSynthesizer*)> onWord;
    std::function<void(NSSpeechSynthesizer*)> onFinish;
};

NSURL* fileUrl(const std::string& path);

} // namespace zqm::platform::test

@interface ZQMSpeechListener : NSObject <NSSpeechSynthesizerDelegate> {
@private
    void* _heard; // a Heard, whose type Objective-C can't describe
}
- (instancetype)initWithHeard:(void*)heard;
@end

namespace zqm::platform::test {

// A synthesizer with a listener, both released at the end.
class Speaker {
public:
    explicit Speaker(NSString* voice = nil);
    Speaker(const Speaker&) = delete;
    Speaker& operator=(const Speaker&) = delete;
    ~Speaker();

    // Drops the synthesizer.
    void release();

    // Takes another synthesizer, which becomes this object's, in the place of the one it has.
    void replace(NSSpeechSynthesizer* other);

    bool say(const std::string& text, const std::string& path) const;
    bool runToEnd(std::size_t finishes = 1) const;

    NSSpeechSynthesizer* synthesizer = nil;
    Heard heard;

private:
    ZQMSpeechListener* listener_ = nil;
};

} // namespace zqm::platform::test
