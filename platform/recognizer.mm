#include "platform/recognizer.h"

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

} // namespace

Recognizer::~Recognizer() {
    [commands_ release];
    [title_ release];
}

void Recognizer::setCommands(NSArray* commands) {
    NSArray* const copy = newCopyOf(commands);
    [commands_ autorelease];
    commands_ = copy;
}

void Recognizer::setTitle(NSString* title) {
    NSString* const copy = [title copy];
    [title_ autorelease];
    title_ = copy;
}

} // namespace zqm::platform
