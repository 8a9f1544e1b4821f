// Lists of platform strings as arrays of host strings.

#pragma once

#include "plugin/host_handles.h"

@class NSArray;

// Inserts each element of the list, which are strings, at the index that it has there. Either may be null.
void FillStringArray(REALarray array, NSArray* list);

// A new array of the strings that `list` answers, with one lock that is the caller's; null where the host
// makes none. What `list` raises leaves no array behind.
template <typename List>
REALarray newStringArray(List&& list) {
    const REALarray array = REALCreateArray(kArrayElementString, -1);
    OwnedObject owner{reinterpret_cast<REALobject>(array)};
    FillStringArray(array, list());
    owner.release();
    return array;
}
