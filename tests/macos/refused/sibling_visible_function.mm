// refused by: golden
// message: leaks_without_export_list.txt does not list: _plantedHelper
// library: ZQMFoundation
extern "C" __attribute__((visibility("default"))) int plantedHelper() {
    return 1;
}
