// refused by: rules
// message: the library exports more than _REALPluginMain: _plantedHelper
// library: ZQMFoundation
// link option: -Wl,-exported_symbol,_plantedHelper
extern "C" __attribute__((visibility("default"))) int plantedHelper() {
    return 1;
}
