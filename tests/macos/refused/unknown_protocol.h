// refused by: declarations
// message: NSPlanted: the record has no such protocol
@protocol NSPlanted
@end
