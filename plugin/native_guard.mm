#include "plugin/native_guard.h"

#include "plugin/host_errors.h"

#include <cxxabi.h>
#include <exception>
#include <new>
#include <stdexcept>
#include <typeinfo>

namespace {

// Raising builds a string, which may fail in the same way: that failure is not raised in its turn.
bool isRaising = false;

void raise(const char* className, const char* message) {
    if (isRaising) {
        return;
    }
    struct Raising {
        Raising() { isRaising = true; }
        Raising(const Raising&) = delete;
        Raising& operator=(const Raising&) = delete;
        ~Raising() { isRaising = false; }
    } const raising;
    RaiseException(className, message, 0, 0);
}

} // namespace

void raiseCurrentNativeException() {
    if (abi::__cxa_current_exception_type() == nullptr) {
        throw;
    }
    try {
        throw;
    } catch (const std::bad_alloc&) {
        raise("OutOfMemoryException", "Failed to allocate memory.");
    } catch (const std::range_error& error) {
        raise("OutOfBoundsException", error.what());
    } catch (const std::out_of_range& error) {
        raise("OutOfBoundsException", error.what());
    } catch (const std::overflow_error& error) {
        raise("OutOfBoundsException", error.what());
    } catch (const std::underflow_error& error) {
        raise("OutOfBoundsException", error.what());
    } catch (const std::logic_error& error) {
        raise("RuntimeException", error.what());
    } catch (const std::runtime_error& error) {
        raise("RuntimeException", error.what());
    } catch (const std::bad_cast& error) {
        raise("IllegalCastException", error.what());
    } catch (const std::exception& error) {
        raise("RuntimeException", error.what());
    } catch (...) {
        raise("RuntimeException", "Sorry, but there was an unnamed C++ Exception.");
    }
}
