#include "plugin/string_arrays.h"

#include "plugin/host_handles.h"
#include "plugin/host_strings.h"

#import <Foundation/Foundation.h>

void FillStringArray(REALarray array, NSArray* list) {
    if (array == nullptr || list == nil) {
        return;
    }
    NSEnumerator* elements = [list objectEnumerator];
    std::int64_t index = 0;
    while (id element = [elements nextObject]) {
        const OwnedString string{CFString2RBString(reinterpret_cast<CFStringRef>(element))};
        REALInsertArrayValueString(array, index, string.get());
        ++index;
    }
}
