#include "cli/sound/sound_formats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

#include <sndfile.h>

namespace zqm::cli {
namespace {

struct Name {
    std::string extension;
    int format; // without an encoding: the first of kEncodings that works
};

// Formats that go by several names, or share one in libsndfile's table. The others go by that.
const std::array kNames{
    Name{"aif", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
    Name{"aifc", SF_FORMAT_AIFF | SF_FORMAT_PCM_16 | SF_ENDIAN_LITTLE},
    Name{"aiff", SF_FORMAT_AIFF | SF_FORMAT_PCM_16},
    Name{"au", SF_FORMAT_AU | SF_FORMAT_PCM_16},
    Name{"mat", SF_FORMAT_MAT4 | SF_FORMAT_PCM_16},
    Name{"mat5", SF_FORMAT_MAT5 | SF_FORMAT_PCM_16},
    Name{"mp3", SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III},
    Name{"nist", SF_FORMAT_NIST | SF_FORMAT_PCM_16},
    Name{"oga", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    Name{"ogg", SF_FORMAT_OGG | SF_FORMAT_VORBIS},
    Name{"opus", SF_FORMAT_OGG | SF_FORMAT_OPUS},
    Name{"snd", SF_FORMAT_AU | SF_FORMAT_PCM_16},
    Name{"wav", SF_FORMAT_WAV | SF_FORMAT_PCM_16},
    Name{"wavex", SF_FORMAT_WAVEX | SF_FORMAT_PCM_16},
};
constexpr std::string_view kWithoutExtension = "aiff";

constexpr std::array kEncodings{SF_FORMAT_PCM_16, SF_FORMAT_DPCM_16, SF_FORMAT_ALAW, SF_FORMAT_PCM_S8};

// Some formats know these rates alone.
constexpr std::array kOtherRates{24000, 48000, 44100, 16000, 8000};

// One of a hundred is not heard; a format that can't tell a rate exactly comes much nearer.
constexpr double kRateTolerance = 0.01;

// A file in memory.
struct MemoryFile {
    static sf_count_t length(void* self) { return static_cast<sf_count_t>(of(self).bytes.size()); }
    static sf_count_t tell(void* self) { return of(self).place; }
    static sf_count_t seek(sf_count_t offset, int whence, void* self) {
        const sf_count_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? of(self).place : length(self);
        of(self).place = base + offset;
        return of(self).place;
    }
    static sf_count_t read(void* to, sf_count_t count, void* self) {
        count = std::clamp<sf_count_t>(length(self) - of(self).place, 0, count);
        std::memcpy(to, of(self).bytes.data() + of(self).place, static_cast<std::size_t>(count));
        of(self).place += count;
        return count;
    }
    static sf_count_t write(const void* from, sf_count_t count, void* self) {
        const auto end = static_cast<std::size_t>(of(self).place + count);
        of(self).bytes.resize(std::max(of(self).bytes.size(), end));
        std::memcpy(of(self).bytes.data() + of(self).place, from, static_cast<std::size_t>(count));
        of(self).place += count;
        return count;
    }

    SNDFILE* open(int mode, SF_INFO& info) {
        SF_VIRTUAL_IO functions{length, seek, read, write, tell};
        place = 0;
        return sf_open_virtual(&functions, mode, &info, this);
    }

    std::vector<char> bytes{};
    sf_count_t place = 0;

private:
    static MemoryFile& of(void* self) { return *static_cast<MemoryFile*>(self); }
};

// Whether what is written so can be read again, at the same rate: the way to learn what libsndfile's table
// doesn't say.
bool works(int format, int rate) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = format;
    MemoryFile file;
    const std::vector<std::int16_t> samples(static_cast<std::size_t>(rate) / 5);
    const auto count = static_cast<sf_count_t>(samples.size());
    SNDFILE* sound = sf_format_check(&info) != 0 ? file.open(SFM_WRITE, info) : nullptr;
    if (sound == nullptr) {
        return false;
    }
    const bool isWritten = sf_write_short(sound, samples.data(), count) == count;
    if (sf_close(sound) != 0 || !isWritten) {
        return false;
    }
    SF_INFO read{};
    if ((format & SF_FORMAT_TYPEMASK) == SF_FORMAT_RAW) {
        read = info; // it has nothing but samples
    }
    sound = file.open(SFM_READ, read);
    if (sound == nullptr) {
        return false;
    }
    sf_close(sound);
    return read.channels == 1 && read.frames >= count &&
           std::abs(read.samplerate - rate) <= rate * kRateTolerance;
}

int rateFor(int format, int rate) {
    if (works(format, rate)) {
        return rate;
    }
    const auto* const other =
        std::ranges::find_if(kOtherRates, [format](int candidate) { return works(format, candidate); });
    return other == kOtherRates.end() ? 0 : *other;
}

SF_FORMAT_INFO formatInfo(int command, int format) {
    SF_FORMAT_INFO info{};
    info.format = format;
    sf_command(nullptr, command, &info, sizeof info);
    return info;
}

std::string description(int format, int ownRate, int rate) {
    std::string text = formatInfo(SFC_GET_FORMAT_INFO, format & SF_FORMAT_TYPEMASK).name;
    text += std::string(", ") + formatInfo(SFC_GET_FORMAT_INFO, format & SF_FORMAT_SUBMASK).name;
    return ownRate == rate ? text : text + ", " + std::to_string(ownRate) + " Hz";
}

// Nothing for one that can't be written.
std::optional<SoundFormat> describe(const Name& name, int rate) {
    std::vector<int> formats{name.format};
    if ((name.format & SF_FORMAT_SUBMASK) == 0) {
        formats.clear();
        std::ranges::transform(kEncodings, std::back_inserter(formats),
                               [&](int encoding) { return name.format | encoding; });
    }
    for (const int format : formats) {
        if (const int ownRate = rateFor(format, rate); ownRate != 0) {
            return SoundFormat{name.extension, description(format, ownRate, rate), format, ownRate};
        }
    }
    return std::nullopt;
}

std::vector<Name> allNames() {
    std::vector<Name> names(kNames.begin(), kNames.end());
    int count = 0;
    sf_command(nullptr, SFC_GET_FORMAT_MAJOR_COUNT, &count, sizeof count);
    for (int index = 0; index < count; ++index) {
        const SF_FORMAT_INFO info = formatInfo(SFC_GET_FORMAT_MAJOR, index);
        // SD2 has half of itself in a second file, which libsndfile makes beside the first.
        const bool isOneFile = info.format != SF_FORMAT_SD2;
        const bool isNamed = std::ranges::any_of(
            kNames, [&](const Name& name) { return (name.format & SF_FORMAT_TYPEMASK) == info.format; });
        if (isOneFile && !isNamed) {
            names.push_back({info.extension, info.format});
        }
    }
    std::ranges::sort(names, {}, &Name::extension);
    return names;
}

} // namespace

std::optional<SoundFormat> findSoundFormat(std::string_view extension, int rate) {
    std::string wanted(extension.empty() ? kWithoutExtension : extension);
    std::ranges::transform(wanted, wanted.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    const std::vector<Name> names = allNames();
    const auto name = std::ranges::find(names, wanted, &Name::extension);
    return name == names.end() ? std::nullopt : describe(*name, rate);
}

std::vector<SoundFormat> soundFormats(int rate) {
    std::vector<SoundFormat> formats;
    for (const Name& name : allNames()) {
        if (auto format = describe(name, rate)) {
            formats.push_back(*std::move(format));
        }
    }
    return formats;
}

} // namespace zqm::cli
