// Where a host object keeps the instance data of its class.

#pragma once

#include "plugin/host_interface.h"

// The instance data of an object whose class declares `Data`. Borrowed: it lives as long as the object.
template <typename Data>
Data& instanceData(REALobject object) {
    return *reinterpret_cast<Data*>(reinterpret_cast<char*>(object) + kInstanceDataOffset);
}
