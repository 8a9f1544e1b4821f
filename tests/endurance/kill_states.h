// The states in which engines are killed.

#pragma once

#include "tests/endurance/kill_scene.h"

#include <map>
#include <span>
#include <string_view>

namespace zqm::endurance {

// What the host program saw of one.
enum class Sight {
    Nothing,   // nothing was due, and nothing came
    Served,    // what it asked for, by the next engine
    Refused,   // false or nil, at once
    EndFalse,  // the speech ended with false
    EndTrue,   // the speech ended with true: all of it was spoken before the kill, which came before its end
               // was told
    NotKilled, // the moment was over before the kill; nothing is counted
};
inline constexpr std::size_t kSights = 5; // those that are counted

using Sights = std::map<Sight, std::size_t>;

struct KillState {
    std::string_view name;
    std::size_t share; // of all kills, as a part of the sum of all shares
    // Kills once, or several times, and checks. Throws std::runtime_error with what is wrong.
    Sights (*run)(KillScene& scene);
};

std::span<const KillState> killStates();

// In a process of its own, which asks for its voices for the first time: kills the engines that are asked
// until one has answered, and prints how many requests were refused. An exit code.
int killAskedForVoices(const std::string& plugin, std::uint64_t seed);

} // namespace zqm::endurance
