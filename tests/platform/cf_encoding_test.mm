// Every CoreFoundation encoding number with a name in iconv or ICU. The expected converters and samples are
// typed in here, not taken from the library's table.

#include <CoreFoundation/CoreFoundation.h>
#import <Foundation/Foundation.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <gtest/gtest.h>
#include <iconv.h>
#include <set>
#include <string>
#include <string_view>
#include <unicode/ucnv.h>
#include <vector>

namespace {

using namespace std::string_view_literals;

enum class By { Icu, Iconv };

struct EncodingCase {
    CFStringEncoding number;
    const char* name; // CoreFoundation's, after kCFStringEncoding
    By by;
    const char* converter;
    std::u16string_view sample;
};

constexpr auto kLatin = u"caf\u00E9 \u00E5"sv;
constexpr auto kCyrillic = u"\u041F\u0440\u0438\u0432\u0435\u0442"sv;
constexpr auto kGreek = u"\u0393\u03B5\u03B9\u03AC"sv;
constexpr auto kHebrew = u"\u05E9\u05DC\u05D5\u05DD"sv;
constexpr auto kArabic = u"\u0633\u0644\u0627\u0645"sv;
constexpr auto kThai = u"\u0E2A\u0E27\u0E31\u0E2A"sv;
constexpr auto kBaltic = u"\u0105\u010D\u0119\u0117"sv;
constexpr auto kTurkish = u"\u015F\u011F\u0131"sv;
constexpr auto kCentral = u"\u0159\u010D\u017E\u0142"sv;
constexpr auto kJapanese = u"\u65E5\u672C\u8A9E\u30C6\u30B9\u30C8"sv;
constexpr auto kChinese = u"\u4F60\u597D\u4E16\u754C"sv;
constexpr auto kTraditional = u"\u4F60\u597D\u4E2D\u570B"sv;
constexpr auto kKorean = u"\uC548\uB155\uD558\uC138\uC694"sv;
constexpr auto kAll = u"\u65E5\u00E9\U0001F600\u0416"sv;

const EncodingCase kCases[] = {
    {0x0000, "MacRoman", By::Icu, "macos-0_2-10.2", u"caf\u00E9 \u2026 \u20AC"},
    {0x0006, "MacGreek", By::Icu, "macos-6_2-10.4", kGreek},
    {0x0007, "MacCyrillic", By::Icu, "macos-7_3-10.2", kCyrillic},
    {0x001D, "MacCentralEurRoman", By::Icu, "macos-29-10.2", kCentral},
    {0x0023, "MacTurkish", By::Icu, "macos-35-10.2", kTurkish},
    {0x0025, "MacIcelandic", By::Iconv, "MAC-IS", u"\u00DE\u00FE\u00F6"},
    {0x0098, "MacUkrainian", By::Iconv, "MAC-UK", u"\u0491\u0456\u0457"},
    {0x0201, "ISOLatin1", By::Iconv, "ISO-8859-1", kLatin},
    {0x0202, "ISOLatin2", By::Iconv, "ISO-8859-2", kCentral},
    {0x0203, "ISOLatin3", By::Iconv, "ISO-8859-3", u"\u0109\u0125\u016D"},
    {0x0204, "ISOLatin4", By::Iconv, "ISO-8859-4", u"\u0101\u0113\u0173"},
    {0x0205, "ISOLatinCyrillic", By::Iconv, "ISO-8859-5", kCyrillic},
    {0x0206, "ISOLatinArabic", By::Iconv, "ISO-8859-6", kArabic},
    {0x0207, "ISOLatinGreek", By::Iconv, "ISO-8859-7", kGreek},
    {0x0208, "ISOLatinHebrew", By::Iconv, "ISO-8859-8", kHebrew},
    {0x0209, "ISOLatin5", By::Iconv, "ISO-8859-9", kTurkish},
    {0x020A, "ISOLatin6", By::Iconv, "ISO-8859-10", u"\u0111\u0161\u0173"},
    {0x020B, "ISOLatinThai", By::Iconv, "ISO-8859-11", kThai},
    {0x020D, "ISOLatin7", By::Iconv, "ISO-8859-13", kBaltic},
    {0x020E, "ISOLatin8", By::Iconv, "ISO-8859-14", u"\u0175\u0177\u1E03"},
    {0x020F, "ISOLatin9", By::Iconv, "ISO-8859-15", u"\u20AC\u0153"},
    {0x0210, "ISOLatin10", By::Iconv, "ISO-8859-16", u"\u0219\u021B\u20AC"},
    {0x0400, "DOSLatinUS", By::Iconv, "CP437", u"\u00E9\u2502\u03B1"},
    {0x0405, "DOSGreek", By::Iconv, "CP737", kGreek},
    {0x0406, "DOSBalticRim", By::Iconv, "CP775", kBaltic},
    {0x0410, "DOSLatin1", By::Iconv, "CP850", kLatin},
    {0x0411, "DOSGreek1", By::Icu, "ibm-851_P100-1995", kGreek},
    {0x0412, "DOSLatin2", By::Iconv, "CP852", kCentral},
    {0x0413, "DOSCyrillic", By::Iconv, "CP855", kCyrillic},
    {0x0414, "DOSTurkish", By::Iconv, "CP857", kTurkish},
    {0x0415, "DOSPortuguese", By::Iconv, "CP860", u"\u00E3\u00F5\u00E7"},
    {0x0416, "DOSIcelandic", By::Iconv, "CP861", u"\u00FE\u00F0"},
    {0x0417, "DOSHebrew", By::Iconv, "CP862", kHebrew},
    {0x0418, "DOSCanadianFrench", By::Iconv, "CP863", u"\u00EA\u00CB"},
    {0x0419, "DOSArabic", By::Icu, "ibm-864_X110-1999", u"\u0660\u0661\uFE8D"},
    {0x041A, "DOSNordic", By::Iconv, "CP865", u"\u00F8\u00E5"},
    {0x041B, "DOSRussian", By::Iconv, "CP866", kCyrillic},
    {0x041C, "DOSGreek2", By::Iconv, "CP869", kGreek},
    {0x041D, "DOSThai", By::Iconv, "CP874", kThai},
    {0x0420, "DOSJapanese", By::Iconv, "CP932", kJapanese},
    {0x0421, "DOSChineseSimplif", By::Iconv, "CP936", kChinese},
    {0x0422, "DOSKorean", By::Iconv, "CP949", u"\uC548\uB620\uBDC1"},
    {0x0423, "DOSChineseTrad", By::Iconv, "CP950", kTraditional},
    {0x0500, "WindowsLatin1", By::Iconv, "CP1252", u"caf\u00E9 \u20AC \u2122"},
    {0x0501, "WindowsLatin2", By::Iconv, "CP1250", kCentral},
    {0x0502, "WindowsCyrillic", By::Iconv, "CP1251", kCyrillic},
    {0x0503, "WindowsGreek", By::Iconv, "CP1253", kGreek},
    {0x0504, "WindowsLatin5", By::Iconv, "CP1254", kTurkish},
    {0x0505, "WindowsHebrew", By::Iconv, "CP1255", kHebrew},
    {0x0506, "WindowsArabic", By::Iconv, "CP1256", kArabic},
    {0x0507, "WindowsBalticRim", By::Iconv, "CP1257", kBaltic},
    {0x0508, "WindowsVietnamese", By::Iconv, "CP1258", u"\u0103\u01B0\u20AB"},
    {0x0510, "WindowsKoreanJohab", By::Iconv, "CP1361", kKorean},
    {0x0600, "ASCII", By::Iconv, "US-ASCII", u"plain ~"},
    {0x0628, "ShiftJIS_X0213", By::Iconv, "SHIFT_JISX0213", kJapanese},
    {0x0630, "GB_2312_80", By::Icu, "ibm-5478_P100-1995", kChinese},
    {0x0631, "GBK_95", By::Iconv, "GBK", kChinese},
    {0x0632, "GB_18030_2000", By::Iconv, "GB18030", kAll},
    {0x0640, "KSC_5601_87", By::Iconv, "EUC-KR", kKorean},
    {0x0641, "KSC_5601_92_Johab", By::Iconv, "JOHAB", kKorean},
    {0x0820, "ISO_2022_JP", By::Iconv, "ISO-2022-JP", kJapanese},
    {0x0821, "ISO_2022_JP_2", By::Iconv, "ISO-2022-JP-2", kJapanese},
    {0x0822, "ISO_2022_JP_1", By::Icu, "ISO-2022-JP-1", kJapanese},
    {0x0823, "ISO_2022_JP_3", By::Iconv, "ISO-2022-JP-3", kJapanese},
    {0x0830, "ISO_2022_CN", By::Iconv, "ISO-2022-CN", kChinese},
    {0x0831, "ISO_2022_CN_EXT", By::Iconv, "ISO-2022-CN-EXT", kChinese},
    {0x0840, "ISO_2022_KR", By::Iconv, "ISO-2022-KR", kKorean},
    {0x0920, "EUC_JP", By::Iconv, "EUC-JP", kJapanese},
    {0x0930, "EUC_CN", By::Iconv, "EUC-CN", kChinese},
    {0x0931, "EUC_TW", By::Iconv, "EUC-TW", kTraditional},
    {0x0940, "EUC_KR", By::Iconv, "EUC-KR", kKorean},
    {0x0A01, "ShiftJIS", By::Iconv, "SHIFT_JIS", kJapanese},
    {0x0A02, "KOI8_R", By::Iconv, "KOI8-R", kCyrillic},
    {0x0A03, "Big5", By::Iconv, "BIG5", kTraditional},
    {0x0A05, "HZ_GB_2312", By::Icu, "HZ", kChinese},
    {0x0A06, "Big5_HKSCS_1999", By::Iconv, "BIG5-HKSCS", kTraditional},
    {0x0A07, "VISCII", By::Iconv, "VISCII", u"Ti\u1EBFng Vi\u1EC7t"},
    {0x0A08, "KOI8_U", By::Iconv, "KOI8-U", u"\u0491\u0456\u0457"},
    {0x0A10, "UTF7_IMAP", By::Iconv, "UTF-7-IMAP", kAll},
    {0x0C01, "EBCDIC_US", By::Iconv, "EBCDIC-US", u"Hello 42"},
    {0x0C02, "EBCDIC_CP037", By::Iconv, "CP037", kLatin},
    {0x04000100, "UTF7", By::Iconv, "UTF-7", kAll},
    {0x08000100, "UTF8", By::Iconv, "UTF-8", kAll},
    {0x0C000100, "UTF32", By::Iconv, "UTF-32LE", kAll},
    {0x18000100, "UTF32BE", By::Iconv, "UTF-32BE", kAll},
    {0x1C000100, "UTF32LE", By::Iconv, "UTF-32LE", kAll},
    {0x0100, "UTF16", By::Iconv, "UTF-16LE", kAll},
    {0x10000100, "UTF16BE", By::Iconv, "UTF-16BE", kAll},
    {0x14000100, "UTF16LE", By::Iconv, "UTF-16LE", kAll},
};

std::string byIcu(const char* converter, std::u16string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter* const handle = ucnv_open(converter, &status);
    ucnv_setFromUCallBack(handle, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    std::array<char, 256> buffer{};
    const auto length =
        ucnv_fromUChars(handle, buffer.data(), 256, text.data(), static_cast<int32_t>(text.size()), &status);
    EXPECT_TRUE(U_SUCCESS(status)) << converter << ": " << u_errorName(status);
    ucnv_close(handle);
    return {buffer.data(), static_cast<std::size_t>(length)};
}

std::string byIconv(const char* converter, std::u16string_view text) {
    iconv_t const handle = iconv_open(converter, "UTF-16LE");
    std::array<char, 256> buffer{};
    char* source = reinterpret_cast<char*>(const_cast<char16_t*>(text.data()));
    std::size_t left = text.size() * 2;
    char* target = buffer.data();
    std::size_t room = buffer.size();
    EXPECT_NE(static_cast<std::size_t>(-1), iconv(handle, &source, &left, &target, &room)) << converter;
    EXPECT_NE(static_cast<std::size_t>(-1), iconv(handle, nullptr, nullptr, &target, &room)) << converter;
    iconv_close(handle);
    return {buffer.data(), buffer.size() - room};
}

class Encodings : public testing::TestWithParam<EncodingCase> {
protected:
    static std::string expectedBytes() {
        return GetParam().by == By::Icu ? byIcu(GetParam().converter, GetParam().sample)
                                        : byIconv(GetParam().converter, GetParam().sample);
    }
};

TEST_P(Encodings, ReadBytes) {
    const std::string bytes = expectedBytes();
    for (const Boolean external : {Boolean{0}, Boolean{1}}) {
        CFStringRef const string =
            CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                                    static_cast<CFIndex>(bytes.size()), GetParam().number, external);
        ASSERT_NE(nullptr, string);
        std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
        CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                              reinterpret_cast<UniChar*>(units.data()));
        EXPECT_EQ(GetParam().sample, units);
        CFRelease(string);
    }
}

TEST_P(Encodings, WriteBytes) {
    const auto sample = GetParam().sample;
    CFStringRef const string = CFStringCreateWithCharacters(
        nullptr, reinterpret_cast<const UniChar*>(sample.data()), static_cast<CFIndex>(sample.size()));
    std::array<UInt8, 256> buffer{};
    CFIndex used = 0;
    EXPECT_EQ(static_cast<CFIndex>(sample.size()),
              CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)), GetParam().number, 0, 0,
                               buffer.data(), 256, &used));
    EXPECT_EQ(expectedBytes(),
              std::string_view(reinterpret_cast<char*>(buffer.data()), static_cast<std::size_t>(used)));
    CFRelease(string);
}

TEST_P(Encodings, HaveNoPlaceForALoneSurrogateUnlessTheyAreUtf16) {
    const UniChar units[] = {0xD83D};
    CFStringRef const string = CFStringCreateWithCharacters(nullptr, units, 1);
    CFIndex used = 0;
    const CFIndex expected = std::string_view(GetParam().name).starts_with("UTF16") ? 1 : 0;
    EXPECT_EQ(expected,
              CFStringGetBytes(string, CFRangeMake(0, 1), GetParam().number, 0, 0, nullptr, 0, &used));
    CFRelease(string);
}

std::u16string textOf(std::string_view bytes, CFStringEncoding encoding) {
    CFStringRef const string = CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(bytes.data()),
                                                       static_cast<CFIndex>(bytes.size()), encoding, 0);
    std::u16string units(static_cast<std::size_t>(CFStringGetLength(string)), u'\0');
    CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)),
                          reinterpret_cast<UniChar*>(units.data()));
    CFRelease(string);
    return units;
}

// The converters' own ways leave out what shows nothing, and leave the bytes shifted where they stop.
TEST_P(Encodings, WriteACharacterOrEndBeforeIt) {
    for (const std::u16string_view character : {u"\u00AD"sv, u"\u034F"sv, u"\U000E0041"sv, u"\U0001F600"sv}) {
        const std::u16string text = std::u16string(GetParam().sample).append(character);
        CFStringRef const string = CFStringCreateWithCharacters(
            nullptr, reinterpret_cast<const UniChar*>(text.data()), static_cast<CFIndex>(text.size()));
        std::array<UInt8, 256> buffer{};
        CFIndex used = 0;
        const CFIndex written = CFStringGetBytes(string, CFRangeMake(0, CFStringGetLength(string)),
                                                 GetParam().number, 0, 0, buffer.data(), 256, &used);
        const std::string_view bytes(reinterpret_cast<char*>(buffer.data()), static_cast<std::size_t>(used));
        if (written == static_cast<CFIndex>(text.size())) {
            EXPECT_EQ(text, textOf(bytes, GetParam().number));
        } else {
            EXPECT_EQ(static_cast<CFIndex>(GetParam().sample.size()), written);
            EXPECT_EQ(expectedBytes(), bytes);
        }
        CFRelease(string);
    }
}

// As text of a shifted encoding they would change how what follows is read.
TEST_P(Encodings, HaveNoPlaceForAShiftWhereItIsNoText) {
    if (!std::string_view(GetParam().converter).starts_with("ISO-2022-")) {
        return;
    }
    for (const UniChar shift : {UniChar{0x1B}, UniChar{0x0E}, UniChar{0x0F}}) {
        const UniChar units[] = {'a', shift, '$', 'B'};
        CFStringRef const string = CFStringCreateWithCharacters(nullptr, units, 4);
        std::array<UInt8, 16> buffer{};
        CFIndex used = 0;
        EXPECT_EQ(1, CFStringGetBytes(string, CFRangeMake(0, 4), GetParam().number, 0, 0, buffer.data(), 16,
                                      &used));
        EXPECT_EQ('a', buffer[static_cast<std::size_t>(used) - 1]);
        CFRelease(string);
    }
}

INSTANTIATE_TEST_SUITE_P(All, Encodings, testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

TEST(EncodingNumbers, AllOthersAreUnknown) {
    std::set<CFStringEncoding> known;
    for (const EncodingCase& row : kCases) {
        known.insert(row.number);
    }
    for (CFStringEncoding number = 0; number < 0x10000; ++number) {
        const UInt8 letters[] = {'a', 'b', 'c', 'd'};
        CFStringRef const string = CFStringCreateWithBytes(nullptr, letters, 4, number, 0);
        if (string != nullptr) {
            EXPECT_TRUE(known.contains(number)) << number;
            CFRelease(string);
        }
    }
}

} // namespace
