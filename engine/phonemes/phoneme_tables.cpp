#include "engine/phonemes/phoneme_tables.h"

namespace zqm::engine {

namespace {

// Parts of phonemes count too: what isn't listed is taken apart, "uI" into "u" and "I", and a sign behind a
// letter ("t;", "i2", "a:") that no row knows changes nothing.
constexpr PhonemeRow kCommon[] = {
    // Pauses; the shorter ones part words that no listener hears as parted.
    {"_:", "%"},
    {"_::", "%"},
    {"_!", "%"},
    {"_", ""},
    {"_|", ""},
    {"||", ""},
    {"_^_", ""},
    {"_;_", ""},
    {"_X1", ""},
    // Signs that change the phoneme before or after them.
    {":", ""},
    {";", ""},
    {"-", ""},
    {">", ""},
    {"!", ""},
    {"~", ""},
    {"#", ""},
    {"1", ""},
    {"#cFR", ""},
    // Consonants
    {"b", "b"},
    {"B", "b"},
    {"tS", "C"},
    {"tS;", "C"},
    {"ts;", "C"},
    {"ts.", "C"},
    {"t_s\\", "C"},
    {"tS;h", "C"},
    {"ts.h", "C"},
    {"c", "C"},
    {"d", "d"},
    {"D", "D"},
    {"f", "f"},
    {"pF", "pf"},
    {"p\\", "f"},
    {"g", "g"},
    {"Q", "g"},
    {"Q\"", "g"},
    {"G", "g"},
    {"gH", "g"},
    {"h", "h"},
    {"H", "h"},
    {"x", "h"},
    {"X", "h"},
    {"<h>", "h"},
    {"#X", "h"},
    {"dZ", "J"},
    {"dZ;", "J"},
    {"dz;", "J"},
    {"dz.", "J"},
    {"d_z\\", "J"},
    {"J", "J"},
    {"k", "k"},
    {"q", "k"},
    {"?", "k"},
    {"kh", "k"},
    {"k_h", "k"},
    {"l", "l"},
    {"L", "l"},
    {"l.", "l"},
    {"ll", "l"},
    {"K", "l"},
    {"l-", ">l"},
    {"m", "m"},
    {"m-", ">m"},
    {"n", "n"},
    {"n-", ">n"},
    {"N", "N"},
    {"N\\", "N"},
    {"N-", ">N"},
    {"ng", "N"},
    {"p", "p"},
    {"ph", "p"},
    {"p_h", "p"},
    {"P", "p"},
    {"r", "r"},
    {"R", "r"},
    {"*", "r"},
    {"**", "r"},
    {"rR", "r"},
    {"r-", "UXr"},
    {"R^", "rZ"},
    {"s", "s"},
    {"ss", "s"},
    {"hs", "s"},
    {"S", "S"},
    {"S;", "S"},
    {"s.", "S"},
    {"s;", "S"},
    {"s\\", "S"},
    {"sx", "S"},
    {"C", "S"},
    {"t", "t"},
    {"th", "t"},
    {"ht", "t"},
    {"t_h", "t"},
    {"ts", "ts"},
    {"t_s", "ts"},
    {"tsh", "ts"},
    {"tz", "ts"},
    {"TS", "ts"},
    {"T", "T"},
    {"v", "v"},
    {"w", "w"},
    {"w#", "hw"},
    {"j", "y"},
    {"_j", "y"},
    {"J^", "y"},
    {"z", "z"},
    {"z#", "s"},
    {"Z", "Z"},
    {"z.", "Z"},
    {"z;", "Z"},
    {"Z;", "Z"},
    {"l^", "ly"},
    {"n^", "ny"},
    // Vowels
    {"i", "IY"},
    {"i:", "IY"},
    {"I", "IH"},
    {"I#", "IX"},
    {"i\"", "IX"},
    {"i.", "IX"},
    {"i[", "IX"},
    {"e", "EH"},
    {"e:", "EY"},
    {"E", "EH"},
    {"&", "AE"},
    {"a", "AA"},
    {"a:", "AA"},
    {"A", "AA"},
    {"A:", "AA"},
    {"aa", "AA"},
    {"a#", "UX"},
    {"V", "UX"},
    {"@", "AX"},
    {"@-", "AX"},
    {"3", "AX"},
    {"3:", "UX"},
    {"0", "AO"},
    {"O", "AO"},
    {"O:", "AO"},
    {"o", "OW"},
    {"o:", "OW"},
    {"o-", "UX"},
    {"o-:", "UX"},
    {"U", "UH"},
    {"u", "UW"},
    {"u:", "UW"},
    {"u-", "UW"},
    {"u-:", "UW"},
    {"y", "UW"},
    {"Y", "UH"},
    {"8", "UH"},
    {"W", "UX"},
    {"ee", "EH"},
    {"@r", "UXr"},
    // Diphthongs
    {"aI", "AY"},
    {"ai", "AY"},
    {"AI", "AY"},
    {"AY", "AY"},
    {"aY", "AY"},
    {"eI", "EY"},
    {"ei", "EY"},
    {"EI", "EY"},
    {"OI", "OY"},
    {"OY", "OY"},
    {"oI", "OY"},
    {"oi", "OY"},
    {"Oi", "OY"},
    {"aU", "AW"},
    {"au", "AW"},
    {"AU", "AW"},
    {"Au", "AW"},
    {"oU", "OW"},
    {"OU", "OW"},
    {"ou", "OW"},
    {"@U", "OW"},
    {"VU", "AW"},
    {"e[u", "EHUH"},
    {"VI", "AY"},
    // Vowels through the nose, as English takes them over
    {"a~", "AAN"},
    {"A~", "AAN"},
    {"&~", "UXN"},
    {"0~", "AON"},
    {"E~", "AEN"},
    {"e~", "EYN"},
    {"i~", "IYN"},
    {"I~", "IHN"},
    {"O~", "AON"},
    {"o~", "OWN"},
    {"u~", "UWN"},
    {"U~", "UHN"},
    {"V~", "UXN"},
    {"W~", "UXN"},
    {"y~", "IXN"},
    {"aI~", "AYN"},
    {"aU~", "AWN"},
    {"oI~", "OYN"},
    {"&U~", "AWN"},
};

constexpr PhonemeRow kEnglish[] = {
    {"r", "r"},       {"r-", "<r"},   {";", ""},       {"j", "y"},      {"?", ">>t"},   {"t", "t"},
    {"t#", "t"},      {"t2", "<<t"},  {"t[", ">t"},    {"d#", "t"},     {"x", ">h"},    {"l#", ">>l"},
    {"a", "AE"},      {"a2", "AE"},   {"aa", ">AE"},   {"a#", ">AX"},   {"@", "AX"},    {"@2", "<AX"},
    {"@-", "<<AX"},   {"3", ">>AX"},  {"@L", "AXl"},   {"@5", "<UH"},   {"U", "UH"},    {"V", "UX"},
    {"3:", ">UX"},    {"VR", ">UXr"}, {"IR", ">AXr"},  {"I", "IH"},     {"I2", "IX"},   {"I#", "<IX"},
    {"I2#", ">IX"},   {"i", "<IY"},   {"i:", "IY"},    {"E", "EH"},     {"e#", "EH"},   {"e:", ">EY"},
    {"e", "<EH"},     {"A:", "AA"},   {"A#", "AA"},    {"A@", ">AA"},   {"A~", "AAn"},  {"0", "AO"},
    {"02", "AO"},     {"O2", "<AO"},  {"O", "<<AO"},   {"O:", ">AO"},   {"O@", ">>AO"}, {"o@", ">>>AO"},
    {"O~", "AOn"},    {"o:", ">OW"},  {"o", "<OW"},    {"oU", "OW"},    {"oU#", "OW"},  {"u:", "UW"},
    {"u", "<UW"},     {"e@", "EHAX"}, {"i@", "IYAX"},  {"i@3", "IHAX"}, {"U@", "UHAX"}, {"aI@", "AYAX"},
    {"aI3", "<AYAX"}, {"aI2", "<AY"}, {"aU@", "AWAX"},
};

// America says the r that Britain drops.
constexpr PhonemeRow kAmerican[] = {
    {"3", "AXr"},  {"3:", "UXr"},  {"A@", "AAr"}, {"O@", "AOr"},    {"o@", "OWr"},
    {"e@", "EHr"}, {"i@3", "IHr"}, {"U@", "UHr"}, {"aI3", "AYAXr"}, {"aU@", "AWAXr"},
    {"I#", "IX"},  {"I2", "<IX"},  {"02", "UX"},  {"@2", "<IX_"},
};

// A schwa at the end of a word turns into another vowel, but for this one.
constexpr PhonemeRow kScottish[] = {{"@2", "AX"}, {"@2", "IX_"}};

// "the", which ends in another vowel before a vowel. These sets have no other word that ends so.
constexpr PhonemeRow kReceived[] = {{"@2", "IX_"}, {"aa", "<AA"}};
constexpr PhonemeRow kNewYork[] = {{"I#", "IX"}, {"I2", "<IX"}, {"02", "UX"}, {"@2", "<IX_"}};

// Languages with a close and an open e.
constexpr PhonemeRow kCloseE[] = {{"e", "EY"}};

// Where "y" is a vowel in the middle of the mouth, not at its front.
constexpr PhonemeRow kCentralY[] = {{"y", "IX"}};

constexpr PhonemeRow kPolish[] = {{"y", "IX"}, {"E~", "EHN"}, {"a#", "AA"}};
constexpr PhonemeRow kPortuguese[] = {{"e", "EY"}, {"y", "IX"}, {"&", "UX"}, {"s#", "S"}, {"r-", "r"}};
constexpr PhonemeRow kRomanian[] = {{"y", "IX"}, {"s;", "s"}, {"z;", "z"}, {"ts;", "ts"}, {"I^", "IH"}};
constexpr PhonemeRow kRussian[] = {
    {"y", "IX"}, {"s;", "s"}, {"l^", "l"}, {"I#", "IH"}, {"a#", "AA"}, {"ja", "yAA"}, {"ju", "yUW"},
};
constexpr PhonemeRow kBelarusian[] = {{"ts;", "ts"}, {"dz;", "dz"}};

// Turkic languages write with "@", "V" or "I" the vowel that is u without round lips.
constexpr PhonemeRow kTurkish[] = {{"@", "IX"}, {"c", "k"}, {"J", "g"}};
constexpr PhonemeRow kTatar[] = {{"V", "IX"}};
constexpr PhonemeRow kKyrgyz[] = {{"I", "IX"}, {"I:", "IX"}, {"O", "UH"}, {"O:", "UH"}};

// "c" and "J" are k and g before a front vowel.
constexpr PhonemeRow kFrontedK[] = {{"c", "k"}, {"J", "g"}};

constexpr PhonemeRow kAfrikaans[] = {{"I", "AX"}, {"e@", "IYAX"}, {"o@", "UWAX"}, {"oI", "UWIH"}};
constexpr PhonemeRow kArabic[] = {{"A", "h"}, {"Z", "D"}};
constexpr PhonemeRow kBengali[] = {{"V", "AO"}};
constexpr PhonemeRow kCherokee[] = {{"0", "AA"}, {"0~", "AAN"}};
constexpr PhonemeRow kDanish[] = {{"?", ""}, {"e", "EY"}, {"r", "AX"}, {"r\"", "r"}, {"r.", "r"}};
constexpr PhonemeRow kImplosives[] = {{"d", "d"}, {"D", "d"}};
constexpr PhonemeRow kLatvian[] = {{"d", "d"}, {"D", "d"}, {"E", "AE"}, {"E:", "AE"}};
constexpr PhonemeRow kBasque[] = {{"s", "s"}, {"z", "s"}};
constexpr PhonemeRow kBrazilian[] = {{"e", "EY"}, {"r-", "r"}};
constexpr PhonemeRow kGaelic[] = {{"u-", "UH"}, {"u-:", "UH"}, {"t;", "C"}, {"d;", "J"}};
constexpr PhonemeRow kKonkani[] = {{"w#", "w"}};
constexpr PhonemeRow kNorwegian[] = {{"a#", "AA"}};
constexpr PhonemeRow kOdia[] = {{"V", "UX"}};
constexpr PhonemeRow kSerbian[] = {{"&", "UX"}};
constexpr PhonemeRow kSwedish[] = {{"E-", "AX"}};
constexpr PhonemeRow kTswana[] = {{"e@", "IYAX"}, {"r-", "r"}};
constexpr PhonemeRow kJapanese[] = {{"C", "h"}};
constexpr PhonemeRow kKorean[] = {{"@", "UX"}, {"u-", "UH"}};
constexpr PhonemeRow kPersian[] = {{"a", "AE"}};
constexpr PhonemeRow kTamil[] = {{"z.", "r"}};
constexpr PhonemeRow kMalayalam[] = {{"z.", "r"}, {"y", "IX"}};
constexpr PhonemeRow kThai[] = {{"W", "IX"}};
constexpr PhonemeRow kWelsh[] = {
    {"I", "IH"}, {"Y", "IX"}, {"y:", "IX"}, {"V", "AX"}, {"uY", "UWIX"}, {"@Y", "AY"}, {"Yu", "IXUW"},
};
constexpr PhonemeRow kLuxembourgish[] = {
    {"E", "AE"},   {"eI", "AY"},  {"J", "Z"},   {"X", "S"},     {"eA", "AAN"},
    {"iA", "AEN"}, {"oA", "OWN"}, {"OU", "UX"}, {"eU", "OY"},   {"OI", "EY"},
    {"aE", "EH"},  {"@E", "AX"},  {"eR", "AX"}, {"uE", "UWAX"}, {"iE", "IYAX"},
};
constexpr PhonemeRow kVietnamese[] = {{"e", "EY"}, {"u-", "IX"}, {"y", "IX"}, {"kh", "h"}, {"cr", "C"}};

// What breath tells apart in Chinese, voice does in English.
constexpr PhonemeRow kMandarin[] = {
    {"p", "b"}, {"t", "d"}, {"k", "g"}, {"ts", "dz"}, {"tS;", "J"}, {"ts.", "J"}, {"e", "EY"}, {"ong", "UHN"},
};
constexpr PhonemeRow kHakka[] = {{"p", "b"}, {"t", "d"}, {"k", "g"}, {"ts", "dz"}, {"tS;", "J"}};
constexpr PhonemeRow kCantonese[] = {
    {"oe", "UX"},    {"eo", "UH"},    {"c", "ts"},    {"z", "dz"},     {"a", "UX"},    {"o", "AO"},
    {"ang", "UXN"},  {"aang", "AAN"}, {"aai", "AY"},  {"aau", "AW"},   {"eng", "EHN"}, {"ing", "IHN"},
    {"oeng", "UXN"}, {"ong", "AON"},  {"ung", "UHN"}, {"eoi", "UHIY"}, {"yu", "UW"},
};
constexpr PhonemeRow kBurmese[] = {{"x", "l"}, {"th", "T"}, {"ky", "C"}, {"j", "y"}};

constexpr PhonemeTable kTables[] = {
    {"en", "", kEnglish},       {"en-n", "en", {}},         {"en-rp", "en", kReceived},
    {"en-sc", "en", kScottish}, {"en-us", "en", kAmerican}, {"en-us-nyc", "en", kNewYork},
    {"en-wi", "en", {}},        {"en-wm", "en", {}},        {"qdb", "en", {}},
    {"af", "", kAfrikaans},     {"am", "", kCentralY},      {"ar", "", kArabic},
    {"as", "bn", {}},           {"az", "tr", {}},           {"ba", "", kTatar},
    {"be", "ru", kBelarusian},  {"bg", "pl", {}},           {"bn", "", kBengali},
    {"bpy", "bn", {}},          {"ca", "", kCloseE},        {"chr", "", kCherokee},
    {"cmn", "", kMandarin},     {"cs", "sk", {}},           {"cv", "tr", kTatar},
    {"cy", "", kWelsh},         {"da", "", kDanish},        {"el", "", kFrontedK},
    {"eu", "", kBasque},        {"fa", "", kPersian},       {"fr", "", kCloseE},
    {"gd", "", kGaelic},        {"gn", "", kCentralY},      {"hak", "", kHakka},
    {"hr", "pl", {}},           {"ht", "fr", {}},           {"is", "", kFrontedK},
    {"it", "", kCloseE},        {"ja", "", kJapanese},      {"ko", "", kKorean},
    {"kok", "", kKonkani},      {"ku", "", kFrontedK},      {"ky", "", kKyrgyz},
    {"lb", "", kLuxembourgish}, {"lv", "", kLatvian},       {"mk", "hr", {}},
    {"ml", "", kMalayalam},     {"my", "", kBurmese},       {"no", "", kNorwegian},
    {"om", "", kImplosives},    {"or", "bn", kOdia},        {"piqd", "", kImplosives},
    {"pl", "", kPolish},        {"pt", "", kBrazilian},     {"pt-pt", "", kPortuguese},
    {"ro", "", kRomanian},      {"ru", "", kRussian},       {"ru-lv", "ru", {}},
    {"shn", "", kThai},         {"sk", "pl", {}},           {"sl", "pl", {}},
    {"sr", "hr", kSerbian},     {"sv", "", kSwedish},       {"ta", "", kTamil},
    {"th", "shn", {}},          {"tk", "tr", {}},           {"tn", "", kTswana},
    {"tr", "", kTurkish},       {"tt", "", kTatar},         {"ug", "tr", {}},
    {"uk", "ru", {}},           {"vi", "", kVietnamese},    {"vi-hue", "vi", {}},
    {"vi-sgn", "vi", {}},       {"yue", "", kCantonese},
};

constexpr PhonemeRow kSubstitutes[] = {
    {"z", "z"},
    {"D", "d"},
    {"@", "_:"},
    {"AE", "& E a"},
    {"EY", "eI ei e: e"},
    {"AO", "O O: 0 o"},
    {"AX", "@ V a"},
    {"IY", "i: i"},
    {"EH", "E e"},
    {"IH", "I i"},
    {"AY", "aI ai a+i"},
    {"IX", "I i"},
    {"AA", "A: a: A a"},
    {"UW", "u: u"},
    {"UH", "U u"},
    {"UX", "V a# @ a"},
    {"OW", "oU ou o: o"},
    {"AW", "aU au a+u"},
    {"OY", "OI oI oi o+i"},
};

} // namespace

std::span<const PhonemeTable> phonemeTables() {
    return kTables;
}

std::span<const PhonemeRow> commonPhonemes() {
    return kCommon;
}

std::span<const PhonemeRow> symbolSubstitutes() {
    return kSubstitutes;
}

} // namespace zqm::engine
