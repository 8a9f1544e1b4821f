#import <AppKit/NSSpeechRecognizer.h>

#include "platform/recognizer.h"

using zqm::platform::Recognizer;

namespace {

Recognizer& of(void* recognition) {
    return *static_cast<Recognizer*>(recognition);
}

} // namespace

@implementation ZQMSpeechRecognizer

- (instancetype)init {
    self = [super init];
    if (self != nil) {
        _recognition = new Recognizer(self);
    }
    return self;
}

- (void)dealloc {
    delete static_cast<Recognizer*>(_recognition);
    [super dealloc];
}

- (void)startListening {
    of(_recognition).start();
}

- (void)stopListening {
    of(_recognition).stop();
}

- (id<NSSpeechRecognizerDelegate>)delegate {
    return of(_recognition).delegate;
}

- (void)setDelegate:(id<NSSpeechRecognizerDelegate>)delegate {
    of(_recognition).delegate = delegate;
}

- (NSArray*)commands {
    return of(_recognition).commands();
}

- (void)setCommands:(NSArray*)commands {
    of(_recognition).setCommands(commands);
}

- (NSString*)displayedCommandsTitle {
    return of(_recognition).title();
}

- (void)setDisplayedCommandsTitle:(NSString*)title {
    of(_recognition).setTitle(title);
}

- (BOOL)listensInForegroundOnly {
    return of(_recognition).listensInForegroundOnly;
}

- (void)setListensInForegroundOnly:(BOOL)flag {
    of(_recognition).listensInForegroundOnly = flag;
}

- (BOOL)blocksOtherRecognizers {
    return of(_recognition).blocksOthers();
}

- (void)setBlocksOtherRecognizers:(BOOL)flag {
    of(_recognition).setBlocksOthers(flag);
}

@end
