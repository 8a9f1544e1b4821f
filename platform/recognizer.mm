#include "platform/recognizer.h"

#include "platform/foundation_text.h"
#include "platform/listening_file.h"
#include "platform/log_line.h"
#include "platform/retained.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zqm::platform {
namespace {

// With strings that don't change any more.
NSArray* newCopyOf(NSArray* commands) {
    if (commands == nil) {
        return nil;
    }
    if (![commands isKindOfClass:[NSArray class]]) {
        [NSException raise:NSInvalidArgumentException format:@"The commands are no array, but %@", commands];
    }
    NSMutableArray* const strings = [NSMutableArray arrayWithArray:commands];
    for (NSUInteger index = 0; index < [strings count]; ++index) {
        id const command = [strings objectAtIndex:index];
        if (![command isKindOfClass:[NSString class]]) {
            [NSException
                 raise:NSInvalidArgumentException
                format:@"Command %lu is no string, but %@", static_cast<unsigned long>(index), command];
        }
        NSString* const string = [command copy];
        [strings replaceObjectAtIndex:index withObject:string];
        [string release];
    }
    return [strings copy];
}

std::vector<std::string> textsOf(NSArray* commands) {
    std::vector<std::string> texts;
    for (NSUInteger index = 0; index < [commands count]; ++index) {
        texts.push_back(utf8Of([commands objectAtIndex:index]));
    }
    return texts;
}

std::shared_ptr<const void> shared(id object) {
    return {[object retain],
            [](const void* retained) { [static_cast<id>(const_cast<void*>(retained)) release]; }};
}

} // namespace

Recognizer::Recognizer(NSSpeechRecognizer* object) : object_(object), session_(this, logLine) {}

Recognizer::~Recognizer() {
    [commands_ release];
    [title_ release];
}

void Recognizer::start() {
    session_.start(listeningFile());
}

void Recognizer::setCommands(NSArray* commands) {
    NSArray* const copy = newCopyOf(commands);
    [commands_ autorelease];
    commands_ = copy;
    session_.setCommands(textsOf(copy), shared(copy));
}

void Recognizer::setTitle(NSString* title) {
    NSString* const copy = [title copy];
    [title_ autorelease];
    title_ = copy;
}

void Recognizer::setBlocksOthers(BOOL flag) {
    blocksOthers_ = flag;
    session_.setBlocksOthers(flag != NO);
}

// The last thing that is done with this object here is the callback, which may end it.
bool Recognizer::deliver() {
    while (const auto event = session_.nextEvent()) {
        if (std::visit([&](const auto& message) { return tell(message); }, *event)) {
            return true;
        }
    }
    return false;
}

bool Recognizer::tell(const Observation& observation) {
    return tellObserver(observation);
}

bool Recognizer::tell(const HeardCommand& command) {
    if (![delegate respondsToSelector:@selector(speechRecognizer:didRecognizeCommand:)]) {
        return false;
    }
    const Retained keep(object_);
    NSArray* const commands = static_cast<NSArray*>(const_cast<void*>(command.list->own.get()));
    [delegate speechRecognizer:object_ didRecognizeCommand:[commands objectAtIndex:command.index]];
    return true;
}

} // namespace zqm::platform
