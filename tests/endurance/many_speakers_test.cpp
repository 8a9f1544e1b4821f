// Many objects that speak at once: none disturbs another, and none leaves anything behind.

#include "tests/endurance/holdings.h"
#include "tests/support/process_table.h"
#include "tests/support/sibling_library.h"
#include "tests/support/sound_file.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/told_events.h"
#include "tests/support/word_fixtures.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace zqm::endurance {
namespace {

using support::ToldEvents;
using support::WordFixture;

#if defined(__SANITIZE_ADDRESS__)
constexpr std::size_t kSpeakers = 8; // each has an engine, and these take several times as long to start
#else
constexpr std::size_t kSpeakers = 64;
#endif
constexpr host::Seconds kPatience{300};
// Of the host, for a cache that grew.
constexpr std::size_t kBytesOfSpeaker = 256;

class ManySpeakers : public testing::Test {
protected:
    struct Speaker {
        Speaker(host::Runtime& runtime, const WordFixture& paragraph)
            : object(runtime.construct("NSSpeechSynthesizerZQM", paragraph.voice)) {
            told.listenTo(object);
        }
        Speaker(const Speaker&) = delete;
        Speaker& operator=(const Speaker&) = delete;

        bool start(const WordFixture& paragraph, const std::filesystem::path& file) {
            return object.call("startSpeakingString", paragraph.text, "file://" + file.string()).asBool();
        }

        ToldEvents told;
        host::Object object;
    };
    struct Alone {
        ToldEvents told;
        support::Samples sound;
    };

    ManySpeakers() { support::loadPlugin(runtime, ZQM_PLUGIN); }
    void TearDown() override { EXPECT_TRUE(runtime.reports().empty()); }

    const WordFixture& paragraphOf(std::size_t speaker) const {
        return paragraphs[speaker % paragraphs.size()];
    }
    std::filesystem::path fileOf(std::size_t speaker) const {
        return folder / (std::to_string(speaker) + ".wav");
    }

    // All at once, each in its language, and as it does alone.
    void speakAtOnce() {
        std::vector<std::unique_ptr<Speaker>> speakers;
        for (std::size_t index = 0; index < kSpeakers; ++index) {
            speakers.push_back(std::make_unique<Speaker>(runtime, paragraphOf(index)));
        }
        for (std::size_t index = 0; index < kSpeakers; ++index) {
            EXPECT_TRUE(speakers[index]->start(paragraphOf(index), fileOf(index)));
        }
        EXPECT_TRUE(runtime.runUntil(
            [&] {
                return std::ranges::none_of(speakers,
                                            [](const auto& each) { return each->told.ends.empty(); });
            },
            kPatience));
        for (std::size_t index = 0; index < kSpeakers; ++index) {
            SCOPED_TRACE(paragraphOf(index).voice);
            const ToldEvents& told = speakers[index]->told;
            const Alone& expected = alone[index % paragraphs.size()];
            EXPECT_EQ(told.words, paragraphOf(index).words);
            EXPECT_EQ(told.phonemes, expected.told.phonemes);
            EXPECT_THAT(told.ends, testing::ElementsAre(true));
            EXPECT_TRUE(support::SoundFile(fileOf(index)).samples == expected.sound);
        }
    }

    const std::vector<WordFixture> paragraphs = support::wordFixtureParagraphs();
    support::TemporaryFolder folder;
    host::Runtime runtime;
    std::vector<Alone> alone; // what a paragraph is when nobody else speaks
};

TEST_F(ManySpeakers, LoseNoEventAndGiveEverythingBack) {
    for (std::size_t index = 0; index < std::min(kSpeakers, paragraphs.size()); ++index) {
        const WordFixture& paragraph = paragraphs[index];
        Speaker speaker(runtime, paragraph);
        ASSERT_TRUE(speaker.start(paragraph, fileOf(index)));
        ASSERT_TRUE(runtime.runUntil([&] { return !speaker.told.ends.empty(); }, kPatience));
        alone.push_back({std::move(speaker.told), support::SoundFile(fileOf(index)).samples});
    }
    const auto round = [&] {
        speakAtOnce();
        EXPECT_TRUE(waitForEngines(runtime, kPatience));
    };
    round();
    const Holdings once;
    const auto ledger = runtime.ledger();
    round();
    const Holdings twice;
    EXPECT_EQ(twice.descriptors, once.descriptors);
    EXPECT_EQ(runtime.ledger(), ledger);
    RecordProperty("hostBytes", std::to_string(once.bytes) + ", then " + std::to_string(twice.bytes));
    EXPECT_LT(twice.bytes, once.bytes + kSpeakers * kBytesOfSpeaker);
}

} // namespace
} // namespace zqm::endurance
