// A library with a block of variables for each thread, small enough that the sanitizer's allocator puts
// blocks of its size at any 16 bytes of a page.

#include <stdlib.h>

enum { kKept = 32 };

// Nothing but this block says where what is kept is.
static __thread struct {
    void* kept;
    char rest[kKept];
} block;

__attribute__((visibility("default"))) const void* blockOfThisThread(void);

const void* blockOfThisThread(void) {
    if (block.kept == NULL) {
        block.kept = malloc(sizeof block.rest);
    }
    return &block;
}
