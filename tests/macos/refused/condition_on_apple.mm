// refused by: sources
// message: condition_on_apple.mm:4: asks for the platform: __APPLE__
// A comment may name __APPLE__.
#ifdef __APPLE__
#endif
