// Runs a random host program, and prints samples of what it holds as comma-separated values:
//
//     soak_host SECONDS SEED INTERVAL [--leak memory|descriptors|handles]
//
// INTERVAL seconds lie between two samples; it goes on until there are enough of them to judge. With --leak
// each episode leaves something behind, to show that it is found. SIGTERM and SIGINT end it after the episode
// that it is at.

#include "tests/soak/episode_log.h"
#include "tests/soak/random_program.h"
#include "tests/soak/sampler.h"
#include "tests/support/number.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <optional>
#include <string_view>

namespace {

using namespace zqm;
using support::numberOf;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kLeastSamples = 12;
constexpr std::size_t kUnsampled = 5; // episodes at first, in which caches fill

void leak(std::string_view what, host::Runtime& runtime) {
    constexpr std::size_t kBytes = 50'000;
    if (what == "memory") {
        static std::vector<std::string> kept;
        kept.emplace_back(kBytes, 'x');
    } else if (what == "descriptors") {
        [[maybe_unused]] const int leaked = open("/dev/null", O_RDONLY | O_CLOEXEC);
    } else if (what == "handles") {
        static_cast<void>(runtime.string("left behind").release());
    }
}

// So that nothing is left: what was begun has ended, and folders are removed.
volatile std::sig_atomic_t isToldToEnd = 0;

void endAfterEpisode(int /*signal*/) {
    isToldToEnd = 1;
}

void tellFailure(soak::RandomProgram& program, const std::string& words) {
    for (const std::string& line : soak::withoutProperties(program.log().take())) {
        program.log().print("    log: " + line);
    }
    program.log().print(words);
}

// Answers whether nothing failed.
bool run(double seconds, std::uint64_t seed, double interval, std::string_view leaked) {
    soak::RandomProgram program(ZQM_PLUGIN, seed);
    soak::Sampler sampler(std::cout, program.runtime());
    const auto begin = Clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
    std::size_t episodes = 0;
    std::size_t samples = 0;
    double next = 0;
    try {
        while (isToldToEnd == 0 && (elapsed() < seconds || samples < kLeastSamples)) {
            program.episode();
            ++episodes;
            leak(leaked, program.runtime());
            if (episodes > kUnsampled && elapsed() >= next) {
                sampler.sample(
                    {program.speakingEngine(), program.listeningEngine(), program.processes(), episodes});
                ++samples;
                next = elapsed() + interval;
            }
        }
    } catch (const std::exception& error) {
        tellFailure(program, "seed " + std::to_string(seed) + ", episode " + std::to_string(episodes + 1) +
                                 ": " + error.what());
        return false;
    }
    for (const auto& [name, count] : program.done()) {
        std::cout << "# " << name << ": " << count << '\n';
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    const bool isComplete = arguments.size() == 3 || (arguments.size() == 5 && arguments[3] == "--leak");
    const auto seconds = isComplete ? numberOf<double>(arguments[0]) : std::nullopt;
    const auto seed = isComplete ? numberOf<std::uint64_t>(arguments[1]) : std::nullopt;
    const auto interval = isComplete ? numberOf<double>(arguments[2]) : std::nullopt;
    if (!seconds || !seed || !interval) {
        std::cerr << "usage: soak_host SECONDS SEED INTERVAL [--leak memory|descriptors|handles]\n";
        return EXIT_FAILURE;
    }
    try {
        for (const int number : {SIGTERM, SIGINT}) {
            std::signal(number, endAfterEpisode);
        }
        return run(*seconds, *seed, *interval, arguments.size() == 5 ? arguments[4] : "") ? EXIT_SUCCESS
                                                                                          : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
