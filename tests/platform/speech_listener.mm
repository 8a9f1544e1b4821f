#include "tests/platform/speech_listener.h"

using zqm::platform::test::Heard;

namespace {

Heard* of(void* heard) {
    return static_cast<Heard*>(heard);
}

} // namespace

@implementation ZQMSpeechListener

- (instancetype)initWithHeard:(void*)heard {
    self = [super init];
    if (self != nil) {
        _heard = heard;
    }
    return self;
}

- (BOOL)respondsToSelector:(SEL)selector {
    if (sel_isEqual(selector, @selector(speechSynthesizer:willSpeakWord:ofString:))) {
        ++of(_heard)->questions;
        return of(_heard)->wantsWords;
    }
    if (sel_isEqual(selector, @selector(speechSynthesizer:didFinishSpeaking:))) {
        return of(_heard)->wantsFinish;
    }
    return [super respondsToSelector:selector];
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender
            willSpeakWord:(NSRange)range
                 ofString:(NSString*)string {
    of(_heard)->words.push_back({range.location, range.length});
    of(_heard)->order.push_back('w');
    of(_heard)->lastString = string;
    if (of(_heard)->onWord) {
        of(_heard)->onWord(sender);
    }
}

- (void)speechSynthesizer:(NSSpeechSynthesizer*)sender didFinishSpeaking:(BOOL)finished {
    of(_heard)->finished.push_back(finished != NO);
    of(_heard)->order.push_back('f');
    if (of(_heard)->onFinish) {
        of(_heard)->onFinish(sender);
    }
}

@end

namespace zqm::platform::test {

NSURL* fileUrl(const std::string& path) {
    return [NSURL fileURLWithPath:stringOf(path)];
}

Speaker::Speaker(NSString* voice)
    : synthesizer([[NSSpeechSynthesizer alloc] initWithVoice:voice]),
      listener_([[ZQMSpeechListener alloc] initWithHeard:&heard]) {
    [synthesizer setDelegate:listener_];
}

Speaker::~Speaker() {
    release();
    [listener_ release];
}

void Speaker::release() {
    [synthesizer release];
    synthesizer = nil;
}

void Speaker::replace(NSSpeechSynthesizer* other) {
    release();
    synthesizer = other;
    [synthesizer setDelegate:listener_];
}

bool Speaker::say(const std::string& text, const std::string& path) const {
    return [synthesizer startSpeakingString:stringOf(text) toURL:fileUrl(path)] != NO;
}

bool Speaker::runToEnd(std::size_t finishes) const {
    return runUntil([&] { return heard.finished.size() >= finishes; });
}

} // namespace zqm::platform::test
