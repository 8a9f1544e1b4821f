// refused by: declarations
// message: kCFNumberSInt8Type: is 2, recorded is 1
enum { kCFNumberSInt8Type = 2 };
