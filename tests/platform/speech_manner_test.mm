// What the properties do to the sound.

#include "tests/platform/speech_listener.h"
#include "tests/support/fundamental_frequency.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"

#include <array>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <poll.h>
#include <span>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace zqm::platform::test;
using zqm::support::SoundFile;

constexpr const char* kVoiced = "Many young men are now learning Roman law. We really will remain all year. ";

// Of what should be the same: no two sounds of a voice are quite.
constexpr double kTolerance = 0.15;

double loudness(std::span<const float> samples) {
    return zqm::support::rms(samples);
}

NSNumber* number(double value) {
    return [NSNumber numberWithDouble:value];
}

struct Sound {
    std::span<const float> samples;
    int rate;

    double seconds() const { return static_cast<double>(samples.size()) / rate; }
    double volume() const { return loudness(samples); }
    double frequency() const { return zqm::support::medianFrequency(samples, rate); }
    double spread() const { return zqm::support::frequencySpread(samples, rate); }
};

class SpeechManner : public testing::Test {
protected:
    bool set(NSString* property, id value) const {
        return [speaker_.synthesizer setObject:value forProperty:property error:nullptr] == YES;
    }

    SoundFile speak(const std::string& text) {
        EXPECT_TRUE(speaker_.say(text, path("a.wav")) && speaker_.runToEnd(++spoken_));
        return SoundFile(path("a.wav"));
    }

    std::string path(const char* name) const { return (folder_ / name).string(); }

    zqm::support::TemporaryFolder folder_;
    Speaker speaker_{@"gmw/en-US"};
    std::size_t spoken_ = 0;
};

struct Effect {
    const char* name;
    NSString* property;
    double value;
    std::function<double(const Sound&)> measure;
    double least; // of what is measured; as a part of what it was before when it is relative
    double greatest;
    bool isRelative;
};

const std::vector<Effect>& effects() {
    static const std::vector<Effect> all{
        {"fast", NSSpeechRateProperty, 350, &Sound::seconds, 0.4, 0.6, true},
        {"slow", NSSpeechRateProperty, 100, &Sound::seconds, 1.5, 2.0, true},
        {"low", NSSpeechVolumeProperty, 0.25, &Sound::volume, 0.23, 0.27, true},
        {"silent", NSSpeechVolumeProperty, 0, &Sound::volume, 0, 0.0001, false},
        {"deep", NSSpeechPitchBaseProperty, 35, &Sound::frequency, 81, 99, false},
        {"high", NSSpeechPitchBaseProperty, 60, &Sound::frequency, 270, 330, false},
        {"monotone", NSSpeechPitchModProperty, 0, &Sound::spread, 0, 1, false},
        {"lively", NSSpeechPitchModProperty, 127, &Sound::spread, 1.5, 10, true},
    };
    return all;
}

TEST_F(SpeechManner, IsHeard) {
    for (const Effect& each : effects()) {
        ASSERT_TRUE(set(NSSpeechResetProperty, nil));
        const SoundFile before = speak(kVoiced);
        const double usual = each.measure({before.samples, before.rate});
        ASSERT_TRUE(set(each.property, number(each.value)));
        const SoundFile after = speak(kVoiced);
        const double changed = each.measure({after.samples, after.rate}) / (each.isRelative ? usual : 1);
        EXPECT_GE(changed, each.least) << each.name;
        EXPECT_LE(changed, each.greatest) << each.name;
        ASSERT_TRUE(set(NSSpeechResetProperty, nil));
        const SoundFile again = speak(kVoiced);
        EXPECT_NEAR(each.measure({again.samples, again.rate}), usual, kTolerance * usual) << each.name;
    }
}

// Speech into a pipe that is read when told, so that it can't be over before.
class HeldSpeech : public SpeechManner {
protected:
    void SetUp() override {
        ASSERT_EQ(0, ::mkfifo(path("a.ogg").c_str(), 0600));
        reader_ = ::open(path("a.ogg").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ASSERT_GE(reader_, 0);
    }
    void TearDown() override { ::close(reader_); }

    // Until nothing more goes into the pipe.
    bool begin(const std::string& text) {
        const int writer = ::open(path("a.ogg").c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        const bool isFull = speaker_.say(text, path("a.ogg")) && waitUntil([&] {
                                pollfd watched{writer, POLLOUT, 0};
                                return ::poll(&watched, 1, 0) == 0;
                            });
        ::close(writer);
        return isFull;
    }

    SoundFile finish() {
        std::ofstream copy(path("copy.ogg"), std::ios::binary);
        EXPECT_TRUE(runUntil([&] {
            std::array<char, 4096> buffer{};
            for (ssize_t count = 0; (count = ::read(reader_, buffer.data(), buffer.size())) > 0;) {
                copy.write(buffer.data(), count);
            }
            return speaker_.heard.finished.size() > spoken_;
        }));
        ++spoken_;
        copy.close();
        return SoundFile(path("copy.ogg"));
    }

    // A pipe that is full holds more than the one, and a text is longer by far than both.
    static Sound beginning(const SoundFile& file) {
        return {std::span(file.samples).first(4 * static_cast<std::size_t>(file.rate)), file.rate};
    }
    static Sound end(const SoundFile& file) {
        return {std::span(file.samples).last(10 * static_cast<std::size_t>(file.rate)), file.rate};
    }

private:
    int reader_ = -1;
};

TEST_F(HeldSpeech, IsHeardFromThenOn) {
    std::string text;
    for (int count = 0; count < 10; ++count) {
        text += kVoiced;
    }
    ASSERT_TRUE(begin(text));
    const SoundFile usual = finish();
    for (const Effect& each : effects()) {
        if (each.property == NSSpeechRateProperty) {
            continue; // which shows in the length of the whole
        }
        ASSERT_TRUE(set(NSSpeechResetProperty, nil));
        ASSERT_TRUE(begin(text));
        ASSERT_TRUE(set(each.property, number(each.value)));
        const SoundFile sound = finish();
        EXPECT_NEAR(each.measure(beginning(sound)), each.measure(beginning(usual)),
                    kTolerance * each.measure(beginning(usual)))
            << each.name;
        const double changed = each.measure(end(sound)) / (each.isRelative ? each.measure(end(usual)) : 1);
        EXPECT_GE(changed, each.least) << each.name;
        EXPECT_LE(changed, each.greatest) << each.name;
    }
}

} // namespace
