// A recognizer with a delegate that writes down what it hears.

#pragma once

#include "tests/platform/test_strings.h"
#include "tests/platform/waiting.h"

#import <AppKit/NSSpeechRecognizer.h>

#include <functional>
#include <string>
#include <vector>

namespace zqm::platform::test {

struct HeardCommands {
    std::vector<std::string> texts; // UTF-8; empty what has no such form
    NSString* last = nil;           // retained
    bool wantsCommands = true;
    std::function<void(NSSpeechRecognizer*)> onCommand;
};

} // namespace zqm::platform::test

@interface ZQMRecognizerListener : NSObject <NSSpeechRecognizerDelegate> {
@private
    void* _heard; // HeardCommands, whose type Objective-C can't describe
}
- (instancetype)initWithHeard:(void*)heard;
@end

namespace zqm::platform::test {

NSArray* arrayOf(const std::vector<std::string>& texts);

// Both are released at the end.
class Listener {
public:
    explicit Listener(NSSpeechRecognizer* own = [[NSSpeechRecognizer alloc] init]);
    explicit Listener(const std::vector<std::string>& texts);
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener();

    // Drops the recognizer.
    void release();

    // Runs the run loop until so many commands were heard; false: they were not.
    bool runUntilHeard(std::size_t count) const;

    NSSpeechRecognizer* recognizer;
    HeardCommands heard;

private:
    ZQMRecognizerListener* delegate_;
};

} // namespace zqm::platform::test
