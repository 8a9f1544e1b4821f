// recognition_sounds FOLDER: writes what is heard besides the voices as sound files there, and prints a list
// of them: people's recordings (Debian's pocketsphinx-testdata), music-like tones, noise and silence.

#include "tests/support/sound_file.h"

#include <cmath>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <numbers>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using zqm::support::Samples;

constexpr int kRate = 16000;
constexpr const char* kRecordings = ZQM_RECORDINGS;

// What somebody says in a recording; those in .raw are samples without a header.
struct Recording {
    const char* file;
    const char* text;
};

constexpr Recording kPeople[] = {
    {"goforward.raw", "go forward ten meters"},
    {"something.raw", "go somewhere and do something"},
    {"numbers.raw", "(numbers)"},
    {"tidigits/dhd.2934z.raw", "two nine three four zero"},
    {"cards/001.wav", "ten of clubs"},
    {"cards/002.wav", "four queen of clubs"},
    {"cards/003.wav", "seven of clubs"},
    {"cards/004.wav", "five five"},
    {"cards/005.wav", "eight of spades four of clubs seven of hearts"},
    {"librivox/sense_and_sensibility_01_austen_64kb-0870.wav",
     "and mister john dashwood had then leisure to consider how much there might be prudently in his power "
     "to do for "
     "them"},
    {"librivox/sense_and_sensibility_01_austen_64kb-0880.wav", "he was not an ill disposed young man"},
    {"librivox/sense_and_sensibility_01_austen_64kb-0890.wav",
     "unless to be rather cold hearted and rather selfish is to be ill disposed"},
    {"librivox/sense_and_sensibility_01_austen_64kb-0920.wav",
     "had he married a more amiable woman he might have been made still more respectable than he was"},
    {"librivox/sense_and_sensibility_01_austen_64kb-0930.wav",
     "he might even have been made amiable himself"},
};

Samples rawSamples(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(in), {}};
    Samples samples;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        const auto low = static_cast<unsigned char>(bytes[at]);
        const auto high = static_cast<unsigned char>(bytes[at + 1]);
        samples.push_back(static_cast<float>(static_cast<std::int16_t>(low | high << 8)) / 32768.0F);
    }
    if (samples.empty()) {
        throw std::runtime_error(path.string() + " can't be read");
    }
    return samples;
}

using Sound = std::function<float(double seconds)>; // called once for each sample, in order

std::mt19937& generator() {
    static std::mt19937 one(1);
    return one;
}

double random(double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(generator());
}

double sine(double frequency, double seconds) {
    return std::sin(2 * std::numbers::pi * frequency * seconds);
}

// A note that is struck and fades, as of a plucked string.
double note(double frequency, double seconds, double fading) {
    double value = 0;
    for (int harmonic = 1; harmonic <= 6; ++harmonic) {
        value += sine(frequency * harmonic, seconds) / harmonic * std::exp(-seconds * fading * harmonic);
    }
    return value;
}

double semitones(double base, int count) {
    return base * std::pow(2, count / 12.0);
}

// Notes one after the other, from a scale.
Sound melody(double base, double noteSeconds, double fading) {
    return [=](double seconds) {
        constexpr int kScale[] = {0, 4, 7, 12, 9, 5, 2, 7, 11, 4};
        const auto number = static_cast<std::size_t>(seconds / noteSeconds);
        return static_cast<float>(0.2 * note(semitones(base, kScale[number % std::size(kScale)]),
                                             std::fmod(seconds, noteSeconds), fading));
    };
}

Sound chords(double base) {
    return [=](double seconds) {
        constexpr double kChordSeconds = 1.2;
        constexpr int kRoots[] = {0, 5, 7, 0, 9, 5};
        const int root = kRoots[static_cast<std::size_t>(seconds / kChordSeconds) % std::size(kRoots)];
        const double since = std::fmod(seconds, kChordSeconds);
        double value = 0;
        for (const int step : {0, 4, 7}) {
            value += note(semitones(base, root + step), since, 1.5);
        }
        return static_cast<float>(0.1 * value);
    };
}

// A vibrating tone between two pitches, with the harmonics of a voice but nothing said.
Sound gliding(double low, double high) {
    return [=, phase = 0.0](double seconds) mutable {
        const double frequency =
            low + (high - low) * (0.5 + 0.5 * sine(0.4, seconds)) + 4 * sine(5.5, seconds);
        phase += frequency / kRate;
        double value = 0;
        for (int harmonic = 1; harmonic <= 12; ++harmonic) {
            value += sine(harmonic, phase) / harmonic;
        }
        return static_cast<float>(0.08 * value);
    };
}

Sound beeps(double frequency) {
    return [=](double seconds) {
        return static_cast<float>(std::fmod(seconds, 0.9) < 0.3 ? 0.3 * sine(frequency, seconds) : 0);
    };
}

Sound whiteNoise(double loudness) {
    return [=](double) { return static_cast<float>(random(-loudness, loudness)); };
}

// Softer towards high frequencies, as of wind or an engine.
Sound brownNoise(double loudness) {
    return [=, value = 0.0](double) mutable {
        value = 0.98 * value + random(-loudness, loudness);
        return static_cast<float>(value);
    };
}

// Bursts of noise, such as of steps, keys or things put down.
Sound knocks(double pause) {
    return [=, next = 0.3, since = 1.0](double seconds) mutable {
        since += 1.0 / kRate;
        if (seconds >= next) {
            next += pause * random(0.4, 1.6);
            since = 0;
        }
        return static_cast<float>(0.5 * std::exp(-since * 60) * random(-1, 1));
    };
}

// Noise that swells and fades about as often as syllables do.
Sound babbling(double loudness) {
    return [=, value = 0.0](double seconds) mutable {
        value = 0.9 * value + random(-loudness, loudness);
        const double swelling = std::max(0.0, sine(3.1, seconds)) * std::max(0.0, sine(0.43, seconds) + 0.6);
        return static_cast<float>(value * swelling);
    };
}

struct Synthetic {
    const char* kind;
    const char* text;
    Sound sound;
};

std::vector<Synthetic> synthetics() {
    return {{"tones", "a melody, low", melody(110, 0.4, 3)},
            {"tones", "a melody, high", melody(440, 0.25, 5)},
            {"tones", "slow notes", melody(220, 1.1, 1)},
            {"tones", "chords", chords(196)},
            {"tones", "chords, low", chords(98)},
            {"tones", "a tone that glides like a man's voice", gliding(90, 160)},
            {"tones", "a tone that glides like a woman's voice", gliding(180, 300)},
            {"tones", "beeps", beeps(1000)},
            {"noise", "white, loud", whiteNoise(0.3)},
            {"noise", "white, soft", whiteNoise(0.02)},
            {"noise", "brown, loud", brownNoise(0.1)},
            {"noise", "brown, soft", brownNoise(0.01)},
            {"noise", "knocks", knocks(0.7)},
            {"noise", "quick knocks", knocks(0.2)},
            {"noise", "noise in the rhythm of speech", babbling(0.1)},
            {"silence", "silence", [](double) { return 0.0F; }},
            {"silence", "what a quiet room sounds like", whiteNoise(0.0008)}};
}

Samples rendered(const Sound& sound) {
    constexpr int kSeconds = 10;
    Samples samples;
    for (int sample = 0; sample < kSeconds * kRate; ++sample) {
        samples.push_back(sound(static_cast<double>(sample) / kRate));
    }
    return samples;
}

void print(const std::string& kind, const std::string& text, const fs::path& file) {
    std::cout << kind << "\tother\t" << text << '\t' << file.string() << '\n';
}

void write(const fs::path& folder) {
    for (const Recording& recording : kPeople) {
        const fs::path source = fs::path(kRecordings) / recording.file;
        fs::path file = source;
        if (source.extension() == ".raw") {
            file = folder / source.filename().replace_extension(".wav");
            zqm::support::writeSoundFile(file, rawSamples(source), kRate);
        }
        print("people", recording.text, file);
    }
    for (const Synthetic& synthetic : synthetics()) {
        const fs::path file = folder / (std::string(synthetic.text) + ".wav");
        zqm::support::writeSoundFile(file, rendered(synthetic.sound), kRate);
        print(synthetic.kind, synthetic.text, file);
    }
}

} // namespace

int main(int count, char** values) {
    if (count != 2) {
        std::cerr << "recognition_sounds FOLDER\n";
        return 2;
    }
    try {
        write(values[1]);
    } catch (const std::exception& exception) {
        std::cerr << "recognition_sounds: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
