#include "tests/support/spoken_phrases.h"

#include "tests/support/sound_file.h"
#include "tests/support/spoken_file.h"
#include "tests/support/temporary_folder.h"

#include <cstddef>

namespace zqm::support {

void writeSpokenPhrases(const std::vector<std::string>& phrases, const std::filesystem::path& file) {
    const TemporaryFolder folder;
    Samples samples;
    int rate = 0;
    for (const std::string& phrase : phrases) {
        writeSpokenFile("", "flite slt", phrase, folder / "phrase.wav");
        const SoundFile spoken(folder / "phrase.wav");
        rate = spoken.rate;
        samples.resize(samples.size() + static_cast<std::size_t>(rate));
        samples.insert(samples.end(), spoken.samples.begin(), spoken.samples.end());
    }
    samples.resize(samples.size() + static_cast<std::size_t>(rate));
    writeSoundFile(file, samples, rate);
}

} // namespace zqm::support
