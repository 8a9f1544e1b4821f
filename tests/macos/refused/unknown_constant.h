// refused by: declarations
// message: kCFPlantedStyle: the record has no such constant
enum { kCFPlantedStyle = 2 };
