#include "tests/engine/engine_process.h"

#include "engine/text/words.h"
#include "tests/support/generated_text.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/utf16.h"
#include "tests/support/word_check.h"
#include "tests/support/word_fixtures.h"

#include <array>
#include <cmath>
#include <espeak-ng/speak_lib.h>
#include <fcntl.h>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <poll.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace zqm::protocol;
using namespace zqm::support;
using namespace zqm::test;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// No sound server is needed for any of this, and none is there.
const Environment kNoServer{{"PULSE_SERVER", "unix:/nonexistent/pulse"}};

constexpr const char* kText = "Hello world. It costs $25.50, don't you see?";

std::string manyWords(std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += index % 10 == 9 ? "end.\n" : "word ";
    }
    return text;
}

Descriptor openDevice(const char* path, int flags) {
    Descriptor device(::open(path, flags | O_CLOEXEC));
    EXPECT_TRUE(device) << path;
    return device;
}

// A pipe that nobody reads yet.
struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        reading.reset(ends[0]);
        writing.reset(ends[1]);
    }

    [[nodiscard]] Descriptor copyOfWriting() const {
        return Descriptor(::fcntl(writing.get(), F_DUPFD_CLOEXEC, 0));
    }

    // Waits until there is no room in it.
    [[nodiscard]] bool fillsUp() const {
        pollfd watched{writing.get(), POLLOUT, 0};
        for (int tries = 0; tries < EngineProcess::kDeadlineMilliseconds / 10; ++tries) {
            if (::poll(&watched, 1, 0) == 0) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return false;
    }

    Descriptor reading;
    Descriptor writing;
};

Speak speakIntoPipe(std::uint64_t utterance, std::size_t words) {
    Speak request = speak(utterance, manyWords(words));
    request.output = zqm::protocol::Output{"ogg", "", ""};
    return request;
}

std::vector<Descriptor> one(Descriptor descriptor) {
    std::vector<Descriptor> list;
    list.push_back(std::move(descriptor));
    return list;
}

// ---- espeak-ng, asked without an engine

int directRate() {
    static const int rate =
        espeak_Initialize(AUDIO_OUTPUT_SYNCHRONOUS, 0, nullptr, espeakINITIALIZE_DONT_EXIT);
    return rate;
}

double directSeconds(const std::string& text) {
    static long samples = 0;
    samples = 0;
    const int rate = directRate();
    // NOLINTNEXTLINE(readability-non-const-parameter): the type is espeak-ng's
    espeak_SetSynthCallback([](short* sound, int count, espeak_EVENT*) {
        samples += sound == nullptr ? 0 : count;
        return 0;
    });
    espeak_SetVoiceByName("gmw/en-US");
    espeak_SetParameter(espeakRATE, 175, 0);
    espeak_Synth(text.c_str(), text.size() + 1, 0, POS_CHARACTER, 0, espeakCHARS_UTF8 | espeakENDPAUSE,
                 nullptr, nullptr);
    return static_cast<double>(samples) / rate;
}

class FileSpeech : public testing::Test {
protected:
    std::vector<Event> write(Speak request, Target& target) {
        request.output = target.output;
        const std::uint64_t utterance = request.utterance;
        engine.send(request, std::move(target.descriptors));
        return engine.untilEnd(utterance);
    }

    std::vector<Event> writeInPlace(Speak request, Descriptor file, const char* extension) {
        request.output = Output{extension, "", ""};
        const std::uint64_t utterance = request.utterance;
        engine.send(request, one(std::move(file)));
        return engine.untilEnd(utterance);
    }

    double secondsOf(const Speak& request) {
        Target target(folder.path(), std::to_string(request.utterance) + ".wav");
        EXPECT_TRUE(finished(write(request, target))->completed);
        return SoundFile(target.file).seconds();
    }

    TemporaryFolder folder;
    EngineProcess engine{kNoServer};
};

// ---- formats

struct Format {
    const char* name;
    const char* majorFormat;
};

class FileSpeechFormat : public FileSpeech, public testing::WithParamInterface<Format> {};

TEST_P(FileSpeechFormat, isValidAndHoldsTheSpeech) {
    Target target(folder.path(), GetParam().name);
    const std::vector<Event> events = write(speak(1, kText), target);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_EQ(startError(events), "");
    ASSERT_TRUE(finished(events));
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(cutOut(kText, events),
                ElementsAre("Hello", "world", "It", "costs", "$25.50", "don't", "you", "see"));

    EXPECT_FALSE(std::filesystem::exists(target.temporary));
    const SoundFile sound(target.file);
    EXPECT_THAT(sound.format, HasSubstr(GetParam().majorFormat));
    EXPECT_EQ(sound.channels, 1);
    EXPECT_GT(rms(sound.samples), 0.02);

    EXPECT_EQ(sound.rate, directRate());
    EXPECT_NEAR(sound.seconds(), directSeconds(kText), 0.1 * directSeconds(kText));
}

TEST_P(FileSpeechFormat, ofNothingIsValidAndEmpty) {
    Target target(folder.path(), GetParam().name);
    const std::vector<Event> events = write(speak(1, ""), target);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_THAT(wordsIn(events), IsEmpty());
    const SoundFile sound(target.file);
    EXPECT_THAT(sound.format, HasSubstr(GetParam().majorFormat));
    EXPECT_LE(sound.frames(), 1U); // a FLAC file of none can't be read
    EXPECT_EQ(rms(sound.samples), 0);
}

TEST_P(FileSpeechFormat, ofATextWithoutWordsIsValid) {
    Target target(folder.path(), GetParam().name);
    const std::vector<Event> events = write(speak(1, " ...\n\t \xEF\xBF\xBD"), target);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_NO_THROW(SoundFile{target.file});
}

TEST_P(FileSpeechFormat, isValidWhenStopped) {
    const std::string text = manyWords(100'000);
    Target target(folder.path(), GetParam().name);
    Speak request = speak(1, text);
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.flush();
    ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
    ASSERT_TRUE(engine.nextOf<Word>());
    engine.send(Stop{1});
    const std::vector<Event> rest = engine.untilEnd(1);
    ASSERT_TRUE(finished(rest));
    EXPECT_FALSE(finished(rest)->completed);
    EXPECT_EQ(finished(rest)->error, "");
    EXPECT_LT(wordsIn(rest).size(), 99'000U);
    EXPECT_FALSE(std::filesystem::exists(target.temporary));
    const SoundFile sound(target.file);
    EXPECT_GT(sound.frames(), 0U);
    EXPECT_GT(rms(sound.samples), 0.02);
}

INSTANTIATE_TEST_SUITE_P(Formats, FileSpeechFormat,
                         testing::Values(Format{"a.wav", "WAV"}, Format{"b.WAV", "WAV"},
                                         Format{"c.aiff", "AIFF"}, Format{"d.AIF", "AIFF"},
                                         Format{"e.aifc", "AIFF"}, Format{"f.flac", "FLAC"},
                                         Format{"g.Ogg", "OGG"}, Format{"no extension", "AIFF"}),
                         [](const auto& test) {
                             std::string name = test.param.name;
                             for (char& letter : name) {
                                 letter =
                                     std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
                             }
                             return name;
                         });

// ---- sound

TEST_F(FileSpeech, volumeIsLinear) {
    std::array<double, 3> loudness{};
    const std::array<double, 3> volumes{1, 0.5, 0};
    for (std::size_t index = 0; index < volumes.size(); ++index) {
        Speak request = speak(index + 1, kText);
        request.manner.volume = volumes[index];
        Target target(folder.path(), std::to_string(index) + ".wav");
        write(request, target);
        loudness[index] = rms(SoundFile(target.file).samples);
    }
    EXPECT_NEAR(loudness[1] / loudness[0], 0.5, 0.02);
    EXPECT_EQ(loudness[2], 0);
}

TEST_F(FileSpeech, volumeOutOfRangeIsTheNearestInIt) {
    std::uint64_t utterance = 0;
    const auto loudness = [&](double volume) {
        Speak request = speak(++utterance, kText);
        request.manner.volume = volume;
        Target target(folder.path(), std::to_string(utterance) + ".wav");
        write(request, target);
        return rms(SoundFile(target.file).samples);
    };
    const double full = loudness(1);
    EXPECT_NEAR(loudness(7), full, 0.02 * full);
    EXPECT_NEAR(loudness(std::nan("")), full, 0.02 * full);
    EXPECT_EQ(loudness(-1), 0);
}

TEST_F(FileSpeech, rateMakesSpeechFaster) {
    std::uint64_t utterance = 0;
    const auto seconds = [&](double rate) {
        Speak request = speak(++utterance, manyWords(100));
        request.manner.rate = rate;
        return secondsOf(request);
    };
    const double slow = seconds(100);
    const double fast = seconds(200);
    EXPECT_NEAR(slow / fast, 2, 0.4);
    const double normal = seconds(175);
    EXPECT_NEAR(seconds(std::nan("")), normal, 0.02 * normal);
    const double slowest = seconds(80);
    EXPECT_NEAR(seconds(0), slowest, 0.02 * slowest);
    EXPECT_NEAR(seconds(-std::numeric_limits<double>::infinity()), slowest, 0.02 * slowest);
    const double fastest = seconds(450);
    EXPECT_NEAR(seconds(1e9), fastest, 0.02 * fastest);
}

// What a synthesizer chokes on must not take the rest of the text with it.
class FileSpeechOddity : public FileSpeech, public testing::WithParamInterface<std::string> {};

TEST_P(FileSpeechOddity, doesNotSilenceWhatFollows) {
    const std::string rest = " this is what follows, and it is long enough to be heard.";
    const double alone = secondsOf(speak(1, rest));
    Target target(folder.path(), "odd.wav");
    const std::vector<Event> events = write(speak(2, "Word" + GetParam() + rest), target);
    EXPECT_THAT(faults(events, 2), IsEmpty());
    EXPECT_THAT(cutOut("Word" + GetParam() + rest, events), testing::Contains("heard"));
    EXPECT_GT(SoundFile(target.file).seconds(), alone);
    EXPECT_LT(SoundFile(target.file).seconds(), alone + 6);
}

INSTANTIATE_TEST_SUITE_P(Texts, FileSpeechOddity,
                         testing::Values(std::string("\xEF\xBF\xBD"), std::string("\xEF\xBF\xBD x"),
                                         std::string("\0", 1), std::string("\x01\x02\x1B[0m\x7F"),
                                         std::string("\xEE\x80\x80\xEE\x81\xBF"), std::string("<speak>"),
                                         std::string("[[h@l'oU]]"), std::string("&amp;"),
                                         std::string("\xE2\x80\x8B\xEF\xBB\xBF"),
                                         std::string("\xCC\x81\xCC\x81\xCC\x81")));

// ---- words

TEST_F(FileSpeech, everyTextMarkedByHandIsToldWordByWord) {
    std::uint64_t utterance = 0;
    for (const WordFixture& fixture : wordFixtures()) {
        Speak request = speak(++utterance, fixture.text);
        request.voice = fixture.voice;
        const std::vector<Event> events = writeInPlace(request, openDevice("/dev/null", O_WRONLY), "flac");
        EXPECT_THAT(faults(events, utterance), IsEmpty()) << fixture.place;
        EXPECT_EQ(startError(events), "") << fixture.place;
        EXPECT_EQ(cutOut(fixture.text, events), fixture.cutOut) << fixture.place;
    }
}

TEST_F(FileSpeech, wordsOfGeneratedTextsAreWholeAndNoneIsLost) {
    for (std::uint64_t seed = 1; seed <= 12; ++seed) {
        const std::string text = toUtf8(TextGenerator(seed).next(1000));
        const std::vector<Event> events =
            writeInPlace(speak(seed, text), openDevice("/dev/null", O_WRONLY), "flac");
        EXPECT_THAT(faults(events, seed), IsEmpty()) << "seed " << seed;
        std::vector<WordRange> ranges;
        for (const Word& word : wordsIn(events)) {
            ranges.push_back({word.position, word.length});
        }
        EXPECT_THAT(wordFaults(toUtf16(text), ranges), IsEmpty()) << "seed " << seed;
    }
}

TEST_F(FileSpeech, twentyThousandWordsAreEachToldOnce) {
    constexpr std::size_t kWords = 20'000;
    Target target(folder.path(), "long.flac");
    const std::vector<Event> events = write(speak(1, manyWords(kWords)), target);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    const std::vector<Word> words = wordsIn(events);
    ASSERT_EQ(words.size(), kWords);
    for (std::size_t index = 0; index < kWords; ++index) {
        ASSERT_EQ(words[index].position, index * 5);
        ASSERT_EQ(words[index].length, index % 10 == 9 ? 3U : 4U);
    }
}

TEST_F(FileSpeech, aTextOfTenMegabytesBegins) {
    constexpr std::size_t kBytes = 10'000'000;
    Target target(folder.path(), "huge.flac");
    Speak request = speak(1, manyWords(kBytes / 5));
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.flush();
    ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
    for (std::size_t count = 0; count < 1000; ++count) {
        ASSERT_TRUE(engine.nextOf<Word>());
    }
    engine.send(Stop{1});
    EXPECT_FALSE(finished(engine.untilEnd(1))->completed);
}

TEST_F(FileSpeech, aWordOfAMegabyteIsToldOnce) {
    constexpr std::size_t kLength = 1'000'000;
    Target target(folder.path(), "word.flac");
    Speak request = speak(1, "The " + std::string(kLength, 'a') + " end");
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.flush();
    ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
    EXPECT_THAT(engine.nextOf<Word>(), testing::Optional(testing::FieldsAre(1U, 0U, 3U, testing::_)));
    EXPECT_THAT(engine.nextOf<Word>(), testing::Optional(testing::FieldsAre(1U, 4U, kLength, testing::_)));
    engine.send(Stop{1});
    EXPECT_THAT(wordsIn(engine.untilEnd(1)).size(), testing::Le(1U));
}

TEST_F(FileSpeech, aHostThatDoesNotReadStillGetsItsFileAndLaterEveryWord) {
    constexpr std::size_t kWords = 20'000;
    Target target(folder.path(), "unread.flac");
    Speak request = speak(1, manyWords(kWords));
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.flush();
    for (int tries = 0; tries < EngineProcess::kDeadlineMilliseconds / 10; ++tries) {
        if (std::filesystem::exists(target.file)) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_NO_THROW(SoundFile{target.file});
    const std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_EQ(wordsIn(events).size(), kWords);
}

// A host that stops doesn't have to read its way through all that it missed.
TEST_F(FileSpeech, aStopDropsWhatIsNotOnItsWay) {
    constexpr std::size_t kWords = 20'000;
    Target target(folder.path(), "unread.flac");
    Speak request = speak(1, manyWords(kWords));
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.flush();
    for (int tries = 0; tries < EngineProcess::kDeadlineMilliseconds / 10; ++tries) {
        if (std::filesystem::exists(target.file)) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    engine.send(Stop{1});
    engine.send(ListVoices{});
    engine.flush();
    std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_LT(wordsIn(events).size(), kWords / 2);
    EXPECT_TRUE(engine.nextOf<Voices>());
}

// ---- one utterance after another

TEST_F(FileSpeech, aNewOneEndsTheOneBefore) {
    Target first(folder.path(), "first.wav");
    Target second(folder.path(), "second.wav");
    Speak request = speak(1, manyWords(100'000));
    request.output = first.output;
    engine.send(request, std::move(first.descriptors));
    engine.flush();
    ASSERT_TRUE(std::holds_alternative<Started>(*engine.next()));
    request = speak(2, kText);
    request.output = second.output;
    engine.send(request, std::move(second.descriptors));
    const std::vector<Event> rest = engine.untilEnd(1);
    EXPECT_FALSE(finished(rest)->completed);
    const std::vector<Event> events = engine.untilEnd(2);
    EXPECT_THAT(faults(events, 2), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
    EXPECT_NO_THROW(SoundFile{first.file});
    EXPECT_NO_THROW(SoundFile{second.file});
}

TEST_F(FileSpeech, stopsAndChangesOfOtherUtterancesAreIgnored) {
    engine.send(Stop{1});
    engine.send(Adjust{1, {.rate = 100, .volume = 0}});
    Target target(folder.path(), "a.wav");
    Speak request = speak(2, kText);
    request.output = target.output;
    engine.send(request, std::move(target.descriptors));
    engine.send(Stop{1});
    engine.send(Stop{3});
    EXPECT_TRUE(finished(engine.untilEnd(2))->completed);
}

TEST_F(FileSpeech, aChangeOfVolumeTakesEffect) {
    Target target(folder.path(), "a.wav");
    Speak request = speak(1, manyWords(1000));
    request.output = target.output;
    engine.queue(request, std::move(target.descriptors));
    engine.send(Adjust{1, {.volume = 0}});
    EXPECT_THAT(finished(engine.untilEnd(1))->error, "");
    const SoundFile sound(target.file);
    EXPECT_GT(rms(std::span(sound.samples).first(sound.samples.size() / 500)), 0) << "what was made before";
    EXPECT_EQ(rms(std::span(sound.samples).last(sound.samples.size() / 10)), 0);
}

TEST_F(FileSpeech, emptyTextNeedsNoSoundServer) {
    engine.send(speak(1, ""));
    const std::vector<Event> events = engine.untilEnd(1);
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_TRUE(finished(events)->completed);
}

TEST_F(FileSpeech, hundredsInARowLeaveNoDescriptorOpen) {
    const std::filesystem::path descriptors = "/proc/" + std::to_string(engine.pid()) + "/fd";
    const auto open = [&] {
        // When it answers, it is done with what it was told before.
        engine.send(ListVoices{});
        EXPECT_TRUE(std::holds_alternative<Voices>(*engine.next()));
        return std::distance(std::filesystem::directory_iterator(descriptors),
                             std::filesystem::directory_iterator());
    };
    const auto before = open();
    for (std::uint64_t utterance = 1; utterance < 300; ++utterance) {
        secondsOf(speak(utterance, "a"));
    }
    EXPECT_EQ(open(), before);
}

// ---- failures

TEST_F(FileSpeech, anUnknownVoiceIsAnError) {
    Target target(folder.path(), "a.wav");
    Speak request = speak(1, kText);
    for (const char* const voice : {"", "gmw/xx", "../../etc/passwd", "en-us-nope", "mb/mb-us1"}) {
        request.voice = voice;
        Target attempt(folder.path(), "a" + std::to_string(++request.utterance) + ".wav");
        EXPECT_THAT(startError(write(request, attempt)), HasSubstr("no voice")) << voice;
        EXPECT_FALSE(std::filesystem::exists(attempt.temporary));
        EXPECT_FALSE(std::filesystem::exists(attempt.file));
    }
}

TEST_F(FileSpeech, anUnknownExtensionIsAnError) {
    Target target(folder.path(), "a.mp4");
    const std::string error = startError(write(speak(1, kText), target));
    EXPECT_THAT(error, HasSubstr("mp4"));
    EXPECT_THAT(error, HasSubstr("aiff, aif, aifc, wav, flac, ogg"));
    EXPECT_FALSE(std::filesystem::exists(target.temporary));
}

TEST_F(FileSpeech, aFileThatCanNotBeWrittenIsAnError) {
    std::uint64_t utterance = 0;
    for (const char* const name : {"a.wav", "b.aiff", "c.flac", "d.ogg"}) {
        Target target(folder.path(), name);
        target.descriptors[0] = openDevice(target.temporary.c_str(), O_RDONLY);
        const std::vector<Event> events = write(speak(++utterance, kText), target);
        const auto end = finished(events);
        EXPECT_THAT(end ? end->error : startError(events), HasSubstr("Bad file descriptor")) << name;
        // What an engine may not write it doesn't remove either: it may be anybody's.
        EXPECT_TRUE(std::filesystem::exists(target.temporary)) << name;
        EXPECT_FALSE(std::filesystem::exists(target.file)) << name;
    }
}

TEST_F(FileSpeech, aFullDeviceIsAnError) {
    std::uint64_t utterance = 0;
    for (const char* const extension : {"wav", "aiff", "flac", "ogg"}) {
        const std::vector<Event> events =
            writeInPlace(speak(++utterance, kText), openDevice("/dev/full", O_WRONLY), extension);
        const auto end = finished(events);
        EXPECT_THAT(end ? end->error : startError(events), HasSubstr("No space left")) << extension;
        EXPECT_FALSE(end && end->completed);
    }
}

TEST_F(FileSpeech, aDiskThatFillsUpIsAnErrorAndLeavesNothing) {
    constexpr rlim_t kBytes = 100'000;
    const rlimit limit{kBytes, kBytes};
    ASSERT_EQ(::prlimit(engine.pid(), RLIMIT_FSIZE, &limit, nullptr), 0);
    std::uint64_t utterance = 0;
    for (const char* const name : {"a.wav", "b.aiff", "c.flac", "d.ogg"}) {
        Target target(folder.path(), name);
        const std::vector<Event> events = write(speak(++utterance, manyWords(2000)), target);
        EXPECT_THAT(faults(events, utterance), IsEmpty());
        ASSERT_TRUE(finished(events));
        EXPECT_FALSE(finished(events)->completed);
        EXPECT_THAT(finished(events)->error, HasSubstr("File too large")) << name;
        EXPECT_FALSE(std::filesystem::exists(target.temporary));
        EXPECT_FALSE(std::filesystem::exists(target.file));
    }
}

TEST_F(FileSpeech, aFileThatCanNotBeRenamedIsAnError) {
    Target target(folder.path(), "a.wav");
    std::filesystem::create_directory(target.file);
    const std::vector<Event> events = write(speak(1, kText), target);
    ASSERT_TRUE(finished(events));
    EXPECT_FALSE(finished(events)->completed);
    EXPECT_THAT(finished(events)->error, HasSubstr("directory"));
    EXPECT_FALSE(std::filesystem::exists(target.temporary));
}

TEST_F(FileSpeech, anExistingFileIsReplacedWhole) {
    Target target(folder.path(), "a.wav");
    std::ofstream(target.file) << "something else";
    EXPECT_TRUE(finished(write(speak(1, kText), target))->completed);
    EXPECT_GT(SoundFile(target.file).seconds(), 1);
}

// ---- in place

TEST_F(FileSpeech, inPlaceTheFileIsNeitherRenamedNorRemoved) {
    const std::filesystem::path file = folder / "place";
    constexpr mode_t kMode = 0600;
    EXPECT_TRUE(
        finished(writeInPlace(speak(1, kText),
                              Descriptor(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kMode)), "flac"))
            ->completed);
    EXPECT_GT(SoundFile(file).seconds(), 1);
    EXPECT_THAT(startError(writeInPlace(speak(2, kText), openDevice(file.c_str(), O_RDWR), "nope")),
                HasSubstr("nope"));
    EXPECT_TRUE(std::filesystem::exists(file));
}

TEST_F(FileSpeech, aPipeTakesWhatNeedsNoSeeking) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const Descriptor reading(ends[0]);
    const std::filesystem::path file = folder / "piped.ogg";
    std::thread copy([&] {
        std::ofstream output(file, std::ios::binary);
        std::array<char, 4096> bytes{};
        ssize_t count = 0;
        while ((count = ::read(reading.get(), bytes.data(), bytes.size())) > 0) {
            output.write(bytes.data(), count);
        }
    });
    const std::vector<Event> events = writeInPlace(speak(1, kText), Descriptor(ends[1]), "ogg");
    copy.join();
    ASSERT_TRUE(finished(events)) << startError(events);
    EXPECT_TRUE(finished(events)->completed) << finished(events)->error;
    EXPECT_GT(SoundFile(file).seconds(), 1);
}

TEST_F(FileSpeech, aPipeThatIsReadLateGetsEverything) {
    constexpr std::size_t kWords = 300;
    Pipe pipe;
    engine.send(speakIntoPipe(1, kWords), one(pipe.copyOfWriting()));
    ASSERT_TRUE(pipe.fillsUp());
    pipe.writing.reset();
    const std::filesystem::path file = folder / "late.ogg";
    std::thread copy([&] {
        std::ofstream output(file, std::ios::binary);
        std::array<char, 1000> bytes{};
        ssize_t count = 0;
        while ((count = ::read(pipe.reading.get(), bytes.data(), bytes.size())) > 0) {
            output.write(bytes.data(), count);
        }
    });
    const std::vector<Event> events = engine.untilEnd(1);
    copy.join();
    EXPECT_THAT(faults(events, 1), IsEmpty());
    EXPECT_EQ(wordsIn(events).size(), kWords);
    EXPECT_TRUE(finished(events)->completed) << finished(events)->error;

    EngineProcess other(kNoServer); // one that spoke before speaks a little differently
    Target target(folder.path(), "whole.ogg");
    Speak request = speak(1, manyWords(kWords));
    request.output = target.output;
    other.send(request, std::move(target.descriptors));
    EXPECT_TRUE(finished(other.untilEnd(1))->completed);
    EXPECT_EQ(SoundFile(file).frames(), SoundFile(target.file).frames());
}

TEST_F(FileSpeech, aPipeThatNobodyReadsHoldsUpNoStop) {
    Pipe pipe;
    engine.send(speakIntoPipe(1, 300), one(pipe.copyOfWriting()));
    ASSERT_TRUE(pipe.fillsUp());
    engine.send(Stop{1});
    const std::vector<Event> events = engine.untilEnd(1);
    ASSERT_TRUE(finished(events));
    EXPECT_FALSE(finished(events)->completed);
    EXPECT_EQ(finished(events)->error, "");
}

TEST_F(FileSpeech, aPipeThatNobodyReadsHoldsUpNoOtherSpeech) {
    Pipe pipe;
    engine.send(speakIntoPipe(1, 300), one(pipe.copyOfWriting()));
    ASSERT_TRUE(pipe.fillsUp());
    Pipe other;
    engine.send(speakIntoPipe(2, 0), one(std::move(other.writing)));
    EXPECT_FALSE(finished(engine.untilEnd(1))->completed);
    EXPECT_TRUE(finished(engine.untilEnd(2))->completed);
}

TEST_F(FileSpeech, aPipeWhoseReaderLeavesWhenItIsFullIsAnError) {
    Pipe pipe;
    engine.send(speakIntoPipe(1, 300), one(pipe.copyOfWriting()));
    ASSERT_TRUE(pipe.fillsUp());
    pipe.reading.reset();
    EXPECT_THAT(finished(engine.untilEnd(1))->error, HasSubstr("Broken pipe"));
}

TEST_F(FileSpeech, aPipeThatNobodyReadsHoldsUpNoEnd) {
    Pipe pipe;
    engine.send(speakIntoPipe(1, 300), one(pipe.copyOfWriting()));
    ASSERT_TRUE(pipe.fillsUp());
    engine.hangUp();
    EXPECT_EQ(engine.wait(), 0);
}

TEST_F(FileSpeech, aPipeWhoseReaderIsGoneIsAnError) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    ::close(ends[0]);
    const std::vector<Event> events = writeInPlace(speak(1, kText), Descriptor(ends[1]), "ogg");
    EXPECT_THAT(finished(events) ? finished(events)->error : startError(events), HasSubstr("Broken pipe"));
}

TEST_F(FileSpeech, aPipeIsRefusedByFormatsThatSeek) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const Descriptor reading(ends[0]);
    const std::vector<Event> events = writeInPlace(speak(1, "a"), Descriptor(ends[1]), "wav");
    EXPECT_THAT(finished(events) ? finished(events)->error : startError(events), HasSubstr("Illegal seek"));
}

} // namespace
