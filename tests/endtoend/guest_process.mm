// A program of Foundation that loads libraries in an order, of which one is the guest (guest.cpp), tells
// whose the class NSSpeechSynthesizer then is, and has the guest do its work:
//
//     guest_process PLUGIN FILE LIBRARY...

#import <Foundation/Foundation.h>

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <objc/runtime.h>

int main(int argc, char** argv) {
    using BeGuest = bool (*)(const char* plugin, const char* file);
    BeGuest beGuest = nullptr;
    for (int index = 3; index < argc; ++index) {
        void* const library = dlopen(argv[index], RTLD_NOW | RTLD_GLOBAL);
        if (library == nullptr) {
            std::cerr << dlerror() << '\n';
            return EXIT_FAILURE;
        }
        if (void* const function = dlsym(library, "zqmBeGuest")) {
            beGuest = reinterpret_cast<BeGuest>(function);
        }
    }
    Dl_info owner{};
    const Class type = objc_getClass("NSSpeechSynthesizer");
    std::cout << (type != Nil && dladdr(type, &owner) != 0 ? owner.dli_fname : "none") << '\n';
    return argc > 3 && beGuest != nullptr && beGuest(argv[1], argv[2]) ? EXIT_SUCCESS : EXIT_FAILURE;
}
