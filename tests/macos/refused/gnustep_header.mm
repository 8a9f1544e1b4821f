// refused by: compiler
// message: 'Foundation/NSDebug.h' file not found
#import <Foundation/NSDebug.h>
