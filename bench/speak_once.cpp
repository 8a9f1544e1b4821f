// speak_once TEXT FILE: a host program that writes one speech to a file and ends.

#include "bench/support/speaking_host.h"

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: speak_once TEXT FILE\n", stderr);
        return 2;
    }
    try {
        std::ifstream input(argv[1], std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(input), std::istreambuf_iterator<char>()};
        zqm::host::Object synthesizer = zqm::bench::newSynthesizer();
        zqm::bench::startFile(synthesizer, text, argv[2]);
        zqm::bench::waitForEnd(synthesizer);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "speak_once: %s\n", error.what());
        return 1;
    }
}
