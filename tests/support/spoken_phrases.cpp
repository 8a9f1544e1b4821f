#include "tests/support/spoken_phrases.h"

#include "tests/support/sound_file.h"
#include "tests/support/spoken_file.h"
#include "tests/support/temporary_folder.h"

#include <cstddef>
#include <memory>
#include <stdexcept>

#include <sndfile.h>

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

    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    const std::unique_ptr<SNDFILE, int (*)(SNDFILE*)> output(sf_open(file.c_str(), SFM_WRITE, &info),
                                                             sf_close);
    const auto count = static_cast<sf_count_t>(samples.size());
    if (output == nullptr || sf_writef_float(output.get(), samples.data(), count) != count) {
        throw std::runtime_error(file.string() + ": " + sf_strerror(output.get()));
    }
}

} // namespace zqm::support
