// GNUstep keeps the arguments and the environment of the process as strings, and takes them for UTF-8: in a
// process where one is not (a file name from an older system, say), the first use of Foundation raises an
// exception and leaves it half set up. This class gives GNUstep copies that it can read, before anyone
// uses it. Nothing here looks at them.

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <unicode/utf8.h>
#include <unistd.h>

#import <Foundation/Foundation.h>

@interface ZQMProcessNames : NSObject
@end

static BOOL isUtf8(const char* text) {
    const size_t length = strlen(text);
    size_t offset = 0;
    while (offset < length) {
        UChar32 codePoint = 0;
        U8_NEXT((const uint8_t*)text, offset, length, codePoint);
        if (codePoint < 0) {
            return NO;
        }
    }
    return YES;
}

static BOOL areUtf8(char** texts) {
    for (; *texts != NULL; ++texts) {
        if (!isUtf8(*texts)) {
            return NO;
        }
    }
    return YES;
}

static void makeReadable(char** texts) {
    for (; *texts != NULL; ++texts) {
        if (!isUtf8(*texts)) {
            *texts = strdup(*texts);
            for (char* character = *texts; *character != '\0'; ++character) {
                if ((*character & 0x80) != 0) {
                    *character = '?';
                }
            }
        }
    }
}

// The texts of the block, each ending in a NUL, and a null pointer. The first begins where the block does.
static char** split(char* block, size_t size, int* count) {
    *count = 0;
    for (size_t offset = 0; offset < size; ++offset) {
        *count += block[offset] == '\0';
    }
    char** texts = calloc((size_t)*count + 1, sizeof *texts);
    for (int index = 0; index < *count; ++index) {
        texts[index] = block;
        block += strlen(block) + 1;
    }
    return texts;
}

// What the process was started with; empty where that can't be read.
static char** arguments(int* count) {
    char* block = NULL;
    size_t size = 0;
    FILE* copy = open_memstream(&block, &size);
    FILE* source = fopen("/proc/self/cmdline", "re");
    for (int character = 0; source != NULL && (character = fgetc(source)) != EOF;) {
        fputc(character, copy);
    }
    if (source != NULL) {
        fclose(source);
    }
    fclose(copy);
    return split(block, size, count);
}

static char** environmentCopy(void) {
    size_t count = 0;
    while (environ[count] != NULL) {
        ++count;
    }
    char** copy = calloc(count + 1, sizeof *copy);
    memcpy(copy, environ, count * sizeof *copy);
    return copy;
}

@implementation ZQMProcessNames

// What is allocated here is GNUstep's for the life of the process.
+ (void)load {
    int count = 0;
    char** const argumentTexts = arguments(&count);
    if (areUtf8(argumentTexts) && areUtf8(environ)) {
        free(argumentTexts[0]); // the block that all of them stand in
        free(argumentTexts);
        return;
    }
    char** const environmentTexts = environmentCopy();
    makeReadable(argumentTexts);
    makeReadable(environmentTexts);
    NSAutoreleasePool* const pool = [NSAutoreleasePool new];
    @try {
        [NSProcessInfo class];
    } @catch (NSException* exception) {
        (void)exception;
        GSInitializeProcess(count, argumentTexts, environmentTexts);
    }
    [pool drain];
}

@end
