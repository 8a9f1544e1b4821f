// Kills engines in every state they can be in, and sees that each is replaced and nothing is lost or left:
//
//     engine_kills KILLS [SEED]
//
// Prints a table with tabs between its columns: the state, and how often the host program saw what.

#include "tests/endurance/kill_states.h"
#include "tests/support/number.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <optional>
#include <random>
#include <string_view>

namespace {

using namespace zqm::endurance;
using zqm::support::numberOf;

constexpr std::size_t kMostFailures = 10;
constexpr std::size_t kMostTries = 1'000; // in a row that come too late for their state
constexpr auto kColumns =
    std::to_array<std::string_view>({"nothing", "served", "refused", "ended false", "ended true"});
static_assert(kColumns.size() == kSights);

// The shares of so many kills, at least one each, in an order of their own.
std::vector<std::size_t> orderOf(std::size_t kills, std::uint64_t seed) {
    const auto states = killStates();
    std::size_t shares = 0;
    for (const KillState& state : states) {
        shares += state.share;
    }
    std::vector<std::size_t> order;
    for (std::size_t state = 0; state < states.size(); ++state) {
        order.insert(order.end(),
                     std::max<std::size_t>(1, (kills * states[state].share + shares - 1) / shares), state);
    }
    std::mt19937_64 random(seed);
    std::ranges::shuffle(order, random);
    return order;
}

class Kills {
public:
    Kills(std::size_t kills, std::uint64_t seed)
        : kills_(kills), seed_(seed), scene_(ZQM_PLUGIN, seed), counts_(killStates().size()),
          seconds_(counts_.size()) {}

    bool run() {
        std::vector<std::size_t> owed(counts_.size());
        std::size_t number = 0;
        for (const std::size_t state : orderOf(kills_, seed_)) {
            // Some runs kill more than once: those that follow are owed less.
            if (owed[state] > 0) {
                --owed[state];
                continue;
            }
            ++number;
            try {
                owed[state] += runOne(state) - 1;
            } catch (const std::exception& error) {
                tell(killStates()[state].name, number, error.what());
                for (const std::string& line : scene_.log().take()) {
                    scene_.log().print("    log: " + line);
                }
                if (++failures_ == kMostFailures || !recover()) {
                    break;
                }
            }
        }
        return failures_ == 0;
    }

    void print() const {
        std::cout << std::fixed << std::setprecision(2) << "state\tkills\tseconds";
        for (const std::string_view column : kColumns) {
            std::cout << '\t' << column;
        }
        std::cout << '\n';
        for (std::size_t state = 0; state < counts_.size(); ++state) {
            std::size_t sum = 0;
            for (const std::size_t count : counts_[state]) {
                sum += count;
            }
            std::cout << killStates()[state].name << '\t' << sum << '\t' << seconds_[state];
            for (const std::size_t count : counts_[state]) {
                std::cout << '\t' << count;
            }
            std::cout << '\n';
        }
    }

private:
    // How many were killed.
    std::size_t runOne(std::size_t state) {
        for (std::size_t attempt = 0; attempt < kMostTries; ++attempt) {
            std::size_t killed = 0;
            const auto begin = std::chrono::steady_clock::now();
            const Sights sights = killStates()[state].run(scene_);
            seconds_[state] +=
                std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
            for (const auto& [sight, count] : sights) {
                if (sight != Sight::NotKilled) {
                    counts_[state].at(static_cast<std::size_t>(sight)) += count;
                    killed += count;
                }
            }
            if (killed > 0) {
                return killed;
            }
        }
        throw std::runtime_error("its moment is always over before the kill");
    }

    // What one failure left is not held against the others.
    bool recover() {
        try {
            scene_.recover();
            return true;
        } catch (const std::exception& error) {
            tell("after that", 0, error.what());
            return false;
        }
    }

    void tell(std::string_view state, std::size_t number, const std::string& what) {
        scene_.log().print(std::string(state) + ", kill " + std::to_string(number) + " of seed " +
                           std::to_string(seed_) + ": " + what);
    }

    std::size_t kills_;
    std::uint64_t seed_;
    KillScene scene_;
    std::vector<std::array<std::size_t, kSights>> counts_;
    std::vector<double> seconds_;
    std::size_t failures_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    if (arguments.size() == 2 && arguments[0] == "--voices") {
        return killAskedForVoices(ZQM_PLUGIN, numberOf<std::uint64_t>(arguments[1]).value_or(0));
    }
    const auto kills = arguments.empty() ? std::nullopt : numberOf<std::uint64_t>(arguments[0]);
    const auto seed =
        arguments.size() < 2 ? std::optional<std::uint64_t>(1) : numberOf<std::uint64_t>(arguments[1]);
    if (arguments.size() > 2 || !kills || *kills == 0 || !seed) {
        std::cerr << "usage: engine_kills KILLS [SEED]\n";
        return EXIT_FAILURE;
    }
    try {
        Kills run(*kills, *seed);
        const bool isRight = run.run();
        run.print();
        return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
