// Errors raised into the host. Raising does not unwind: the host notes the exception, these functions
// return, and the host throws once the plugin function that it called has returned.

#pragma once

#include <cstdint>

@class NSException;

// Raises an exception of the host class, or a "RuntimeException" where the host has no such class. The
// message may be null. Both numbers are ignored: "ErrorNumber" is always 0.
void RaiseException(const char* className, const char* message, std::uint32_t errorNumber,
                    std::int64_t extra);

// Raises "OutOfBoundsException" for an index `value` that the caller found to be outside 0 to count - 1.
// The names may be null.
void RaiseOutOfBoundsException(std::int64_t value, std::int64_t count, const char* parameterName,
                               const char* methodName);

// Logs a platform exception and raises the host object that a sibling library makes of it; without one
// the line in the log is all.
void RaiseNSExceptionZQM(NSException* exception);

// Raises what a platform guard caught, if anything; answers whether it did. A platform exception on the
// way, such as from a description, goes no further.
bool raiseIfCaught(NSException* exception);
