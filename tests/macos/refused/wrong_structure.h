// refused by: declarations
// message: CFSwappedFloat32: holds int v; recorded is UInt32 v
typedef struct {
    int v;
} CFSwappedFloat32;
