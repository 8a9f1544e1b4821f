#include "platform/text_converter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <iconv.h>

namespace zqm::platform {
namespace {

constexpr std::size_t kChunk = 4096;
constexpr const char* kUtf16 = "UTF-16LE"; // the machine's, without a byte-order mark
constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

const iconv_t kNone = reinterpret_cast<iconv_t>(-1); // NOLINT(performance-no-int-to-ptr): iconv's own way

// Escape, Shift Out and Shift In change how the bytes behind them are read, where an encoding has that; as
// characters of a text they have no place there. ICU refuses them, iconv writes them.
constexpr std::u16string_view kShifts = u"\u001B\u000E\u000F";
constexpr std::string_view kShifted = "ISO-2022-";

// glibc leaves out the tags, U+E0000 to U+E007F, which no encoding here has.
std::size_t findTag(std::u16string_view text) {
    constexpr char16_t kLead = 0xDB40;
    constexpr char16_t kFirstTrail = 0xDC00;
    constexpr char16_t kLastTrail = 0xDC7F;
    const auto tag = std::ranges::adjacent_find(text, [](char16_t first, char16_t second) {
        return first == kLead && second >= kFirstTrail && second <= kLastTrail;
    });
    return static_cast<std::size_t>(tag - text.begin());
}

class IconvConverter : public TextConverter {
public:
    IconvConverter(iconv_t decoder, iconv_t encoder, bool isShifted)
        : decoder_(decoder), encoder_(encoder), isShifted_(isShifted) {}
    IconvConverter(const IconvConverter&) = delete;
    IconvConverter& operator=(const IconvConverter&) = delete;
    ~IconvConverter() override {
        iconv_close(decoder_);
        iconv_close(encoder_);
    }

    std::optional<std::u16string> decode(std::string_view bytes) override {
        std::string units;
        if (run(decoder_, bytes, units) != bytes.size()) {
            return std::nullopt;
        }
        std::u16string text(units.size() / sizeof(char16_t), u'\0');
        std::memcpy(text.data(), units.data(), text.size() * sizeof(char16_t));
        return text;
    }

    EncodedText encode(std::u16string_view text) override {
        EncodedText result;
        text = text.substr(0, findTag(text));
        if (isShifted_) {
            text = text.substr(0, text.find_first_of(kShifts));
        }
        const std::string_view units(reinterpret_cast<const char*>(text.data()),
                                     text.size() * sizeof(char16_t));
        result.consumed = run(encoder_, units, result.bytes) / sizeof(char16_t);
        return result;
    }

private:
    // Converts as far as possible, returns how many bytes of the input that was.
    static std::size_t run(iconv_t converter, std::string_view input, std::string& output) {
        iconv(converter, nullptr, nullptr, nullptr, nullptr);
        char* source = const_cast<char*>(input.data()); // iconv's signature; it does not write
        std::size_t left = input.size();
        bool whole = convert(converter, &source, &left, output);
        whole = convert(converter, nullptr, nullptr, output) && whole;
        const std::size_t done = input.size() - left;
        return whole || done < input.size() ? done : 0;
    }

    static bool convert(iconv_t converter, char** source, std::size_t* left, std::string& output) {
        std::array<char, kChunk> chunk{};
        for (;;) {
            char* target = chunk.data();
            std::size_t room = chunk.size();
            const std::size_t answer = iconv(converter, source, left, &target, &room);
            const int error = answer == kFailed ? errno : 0;
            output.append(chunk.data(), target);
            if (error != E2BIG) {
                return error == 0;
            }
        }
    }

    iconv_t decoder_;
    iconv_t encoder_;
    bool isShifted_;
};

} // namespace

std::unique_ptr<TextConverter> openIconvConverter(const char* name) {
    iconv_t const decoder = iconv_open(kUtf16, name);
    if (decoder == kNone) {
        return nullptr;
    }
    iconv_t const encoder = iconv_open(name, kUtf16);
    if (encoder == kNone) {
        iconv_close(decoder);
        return nullptr;
    }
    return std::make_unique<IconvConverter>(decoder, encoder, std::string_view(name).starts_with(kShifted));
}

} // namespace zqm::platform
