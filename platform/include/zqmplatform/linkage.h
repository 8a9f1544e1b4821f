// How the platform library's own functions are declared, for C and C++.

#ifndef ZQM_LINKAGE_H
#define ZQM_LINKAGE_H

#ifdef __cplusplus
#define ZQM_EXTERN_C_BEGIN extern "C" {
#define ZQM_EXTERN_C_END }
#else
#define ZQM_EXTERN_C_BEGIN
#define ZQM_EXTERN_C_END
#endif
#define ZQM_EXPORT extern __attribute__((visibility("default")))

#endif
