#include "bench/recognition/run.h"

#include "bench/recognition/engine.h"
#include "tests/support/process_table.h"
#include "tests/support/sound_file.h"

#include <stdexcept>

namespace zqm::recognition {

namespace {

constexpr host::Seconds kPatience{120};
constexpr double kSilence =
    1; // seconds before and after each: as with a microphone, which hears more than phrases

} // namespace

FileRun::FileRun(host::Runtime& runtime, const std::vector<std::string>& commands)
    : runtime_(runtime), listener_(runtime, commands) {}

void FileRun::hear(const Phrase& phrase) {
    // The first one starts the engine; what that costs is no part of listening.
    const double spent = outcomes_.empty() ? 0 : support::processorSecondsOf(theEngine());
    listener_.forget();
    const std::size_t ends = listener_.timesEnded();
    const support::SoundFile sound(phrase.file);
    const std::size_t silence = static_cast<std::size_t>(kSilence * sound.rate);
    support::Samples samples(silence);
    samples.insert(samples.end(), sound.samples.begin(), sound.samples.end());
    samples.resize(samples.size() + silence);
    const std::filesystem::path file = folder_ / "phrase.wav";
    support::writeSoundFile(file, samples, sound.rate);
    ZQMPlatformListenToFile(file.c_str());
    listener_.start();
    if (!runtime_.runUntil([&] { return listener_.timesEnded() > ends || !listener_.failures().empty(); },
                           kPatience) ||
        !listener_.failures().empty()) {
        throw std::runtime_error(phrase.file.string() + " isn't heard to its end");
    }
    listener_.stop();
    Outcome outcome{.way = "offline", .phrase = phrase, .heard = listener_.commands()};
    if (!outcomes_.empty()) {
        outcome.seconds = sound.seconds() + 2 * kSilence;
        outcome.processorSeconds = support::processorSecondsOf(theEngine()) - spent;
    }
    outcomes_.push_back(outcome);
}

} // namespace zqm::recognition
