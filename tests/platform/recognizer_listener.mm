#include "tests/platform/recognizer_listener.h"

using zqm::platform::test::HeardCommands;

namespace {

HeardCommands& of(void* heard) {
    return *static_cast<HeardCommands*>(heard);
}

} // namespace

@implementation ZQMRecognizerListener

- (instancetype)initWithHeard:(void*)heard {
    self = [super init];
    if (self != nil) {
        _heard = heard;
    }
    return self;
}

- (BOOL)respondsToSelector:(SEL)selector {
    if (sel_isEqual(selector, @selector(speechRecognizer:didRecognizeCommand:))) {
        return of(_heard).wantsCommands;
    }
    return [super respondsToSelector:selector];
}

- (void)speechRecognizer:(NSSpeechRecognizer*)sender didRecognizeCommand:(NSString*)command {
    of(_heard).texts.push_back(zqm::platform::test::utf8Of(command));
    [of(_heard).last release];
    of(_heard).last = [command retain];
    if (of(_heard).onCommand) {
        of(_heard).onCommand(sender);
    }
}

@end

namespace zqm::platform::test {

NSArray* arrayOf(const std::vector<std::string>& texts) {
    NSMutableArray* const strings = [NSMutableArray array];
    for (const std::string& text : texts) {
        [strings addObject:stringOf(text)];
    }
    return strings;
}

Listener::Listener(NSSpeechRecognizer* own)
    : recognizer(own), delegate_([[ZQMRecognizerListener alloc] initWithHeard:&heard]) {
    [recognizer setDelegate:delegate_];
}

Listener::Listener(const std::vector<std::string>& texts) : Listener() {
    [recognizer setCommands:arrayOf(texts)];
}

Listener::~Listener() {
    release();
    [delegate_ release];
    [heard.last release];
}

void Listener::release() {
    [recognizer release];
    recognizer = nil;
}

bool Listener::runUntilHeard(std::size_t count) const {
    return runUntil([&] { return heard.texts.size() >= count; });
}

} // namespace zqm::platform::test
