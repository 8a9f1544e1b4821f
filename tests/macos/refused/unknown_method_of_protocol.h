// refused by: declarations
// message: -[NSMutableCopying copyMutably]: the record has no such method
@protocol NSMutableCopying
- (id)copyMutably;
@end
