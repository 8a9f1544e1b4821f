// refused by: declarations
// message: NSNotFound: is 4294967295, recorded is 9223372036854775807
#define NSNotFound 0xFFFFFFFFU
