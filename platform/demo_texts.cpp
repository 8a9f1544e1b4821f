#include "platform/demo_texts.h"

#include <algorithm>
#include <array>

namespace zqm::platform {
namespace {

struct DemoText {
    std::string_view language;
    std::string_view text;
};

// In ascending order of the tags. Written as the engine reads the language: Japanese without
// ideographs, Cherokee and Hakka in Latin letters.
constexpr auto kTexts = std::to_array<DemoText>({
    {"af", "Hallo! Ek praat Afrikaans."},
    {"am", "ሰላም! አማርኛ እናገራለሁ።"},
    {"an", "Ola! Yo charro aragonés."},
    {"ar", "مرحبًا! أنا أتكلم العربية."},
    {"as", "নমস্কাৰ! মই অসমীয়া কওঁ।"},
    {"az", "Salam! Mən azərbaycanca danışıram."},
    {"ba", "Һаумыһығыҙ! Мин башҡортса һөйләшәм."},
    {"be", "Вітаю! Я размаўляю па-беларуску."},
    {"bg", "Здравейте! Аз говоря български."},
    {"bn", "নমস্কার! আমি বাংলায় কথা বলি।"},
    {"bpy", "নমস্কার!"},
    {"bs", "Zdravo! Ja govorim bosanski."},
    {"ca", "Hola! Parlo català."},
    {"chr", "Osiyo!"},
    {"cmn", "你好！我说普通话。"},
    {"cmn-Latn", "Ni3 hao3! Wo3 shuo1 pu3tong1hua4."},
    {"cs", "Dobrý den! Mluvím česky."},
    {"cv", "Салам! Эпӗ чӑвашла калаҫатӑп."},
    {"cy", "Helo! Rydw i'n siarad Cymraeg."},
    {"da", "Hej! Jeg taler dansk."},
    {"de", "Hallo! Ich spreche Deutsch."},
    {"el", "Γεια σας! Μιλάω ελληνικά."},
    {"en", "Hello! I speak English."},
    {"eo", "Saluton! Mi parolas Esperanton."},
    {"es", "¡Hola! Hablo español."},
    {"et", "Tere! Ma räägin eesti keelt."},
    {"eu", "Kaixo! Euskaraz hitz egiten dut."},
    {"fa", "سلام! من فارسی صحبت می‌کنم."},
    {"fa-Latn", "Salam! Man farsi sohbat mikonam."},
    {"fi", "Hei! Puhun suomea."},
    {"fr", "Bonjour ! Je parle français."},
    {"ga", "Dia duit! Labhraím Gaeilge."},
    {"gd", "Halò! Tha mi a' bruidhinn Gàidhlig."},
    {"gn", "Mba'éichapa! Che añe'ẽ guaraníme."},
    {"grc", "Χαῖρε, ὦ φίλε."},
    {"gu", "નમસ્તે! હું ગુજરાતી બોલું છું."},
    {"hak", "Ngì-hó!"},
    {"haw", "Aloha! ʻŌlelo Hawaiʻi au."},
    {"he", "שלום! אני מדבר עברית."},
    {"hi", "नमस्ते! मैं हिन्दी बोलता हूँ।"},
    {"hr", "Dobar dan! Govorim hrvatski."},
    {"ht", "Bonjou! Mwen pale kreyòl ayisyen."},
    {"hu", "Jó napot! Magyarul beszélek."},
    {"hy", "Բարև ձեզ։ Ես խոսում եմ հայերեն։"},
    {"hyw", "Բարեւ ձեզ։ Ես հայերէն կը խօսիմ։"},
    {"ia", "Salute! Io parla interlingua."},
    {"id", "Halo! Saya berbicara bahasa Indonesia."},
    {"io", "Saluto! Me parolas Ido."},
    {"is", "Halló! Ég tala íslensku."},
    {"it", "Ciao! Parlo italiano."},
    {"ja", "こんにちは。わたしは にほんごを はなします。"},
    {"jbo", "coi. mi tavla fo la lojban."},
    {"ka", "გამარჯობა! მე ვლაპარაკობ ქართულად."},
    {"kk", "Сәлеметсіз бе! Мен қазақша сөйлеймін."},
    {"kl", "Aluu!"},
    {"kn", "ನಮಸ್ಕಾರ! ನಾನು ಕನ್ನಡ ಮಾತನಾಡುತ್ತೇನೆ."},
    {"ko", "안녕하세요! 저는 한국어를 합니다."},
    {"kok", "नमस्कार! हांव कोंकणी उलयतां."},
    {"ku", "Silav! Ez bi kurmancî diaxivim."},
    {"ky", "Саламатсызбы! Мен кыргызча сүйлөйм."},
    {"la", "Salve! Latine loquor."},
    {"lb", "Moien! Ech schwätze Lëtzebuergesch."},
    {"lfn", "Bon dia! Me parla elefen."},
    {"lt", "Sveiki! Aš kalbu lietuviškai."},
    {"ltg", "Vasali! Es runoju latgaliski."},
    {"lv", "Sveiki! Es runāju latviski."},
    {"mi", "Kia ora! E kōrero Māori ana au."},
    {"mk", "Здраво! Зборувам македонски."},
    {"ml", "നമസ്കാരം! ഞാൻ മലയാളം സംസാരിക്കുന്നു."},
    {"mr", "नमस्कार! मी मराठी बोलतो."},
    {"ms", "Helo! Saya bercakap bahasa Melayu."},
    {"mt", "Bonġu! Jien nitkellem bil-Malti."},
    {"my", "မင်္ဂလာပါ။ ကျွန်တော် မြန်မာစကား ပြောပါတယ်။"},
    {"nb", "Hei! Jeg snakker norsk."},
    {"nci", "Niltze! Ninahuatlahtoa."},
    {"ne", "नमस्ते! म नेपाली बोल्छु।"},
    {"nl", "Hallo! Ik spreek Nederlands."},
    {"nog", "Салам!"},
    {"om", "Akkam! Ani Afaan Oromoo nan dubbadha."},
    {"or", "ନମସ୍କାର! ମୁଁ ଓଡ଼ିଆ କହେ।"},
    {"pa", "ਸਤ ਸ੍ਰੀ ਅਕਾਲ! ਮੈਂ ਪੰਜਾਬੀ ਬੋਲਦਾ ਹਾਂ।"},
    {"pap", "Bon dia! Mi ta papia Papiamentu."},
    {"piqd", "nuqneH! tlhIngan Hol vIjatlh."},
    {"pl", "Dzień dobry! Mówię po polsku."},
    {"pt", "Olá! Falo português."},
    {"pt-BR", "Olá! Eu falo português."},
    {"qdb", "Oye, beltalowda!"},
    {"qu", "Allillanchu! Runasimita rimani."},
    {"quc", "Saqarik!"},
    {"qya", "Aiya!"},
    {"ro", "Bună ziua! Vorbesc românește."},
    {"ru", "Здравствуйте! Я говорю по-русски."},
    {"sd", "سلام! مان سنڌي ڳالهايان ٿو."},
    {"shn", "မႂ်ႇသုင်ၶႃႈ"},
    {"si", "ආයුබෝවන්! මම සිංහල කතා කරනවා."},
    {"sjn", "Mae govannen!"},
    {"sk", "Dobrý deň! Hovorím po slovensky."},
    {"sl", "Dober dan! Govorim slovensko."},
    {"smj", "Buoris!"},
    {"sq", "Përshëndetje! Unë flas shqip."},
    {"sr", "Здраво! Ја говорим српски."},
    {"sv", "Hej! Jag talar svenska."},
    {"sw", "Habari! Ninazungumza Kiswahili."},
    {"ta", "வணக்கம்! நான் தமிழ் பேசுகிறேன்."},
    {"te", "నమస్కారం! నేను తెలుగు మాట్లాడతాను."},
    {"th", "สวัสดีครับ ผมพูดภาษาไทย"},
    {"tk", "Salam! Men türkmençe gürleýärin."},
    {"tn", "Dumela! Ke bua Setswana."},
    {"tr", "Merhaba! Türkçe konuşuyorum."},
    {"tt", "Исәнмесез! Мин татарча сөйләшәм."},
    {"ug", "ياخشىمۇسىز! مەن ئۇيغۇرچە سۆزلەيمەن."},
    {"uk", "Вітаю! Я розмовляю українською."},
    {"ur", "السلام علیکم! میں اردو بولتا ہوں۔"},
    {"uz", "Salom! Men oʻzbekcha gapiraman."},
    {"vi", "Xin chào! Tôi nói tiếng Việt."},
    {"yue", "你好！我講廣東話。"},
});
static_assert(std::ranges::is_sorted(kTexts, {}, &DemoText::language));

} // namespace

std::string_view demoText(std::string_view language) {
    for (;;) {
        const auto found = std::ranges::lower_bound(kTexts, language, {}, &DemoText::language);
        if (found != kTexts.end() && found->language == language) {
            return found->text;
        }
        const std::size_t end = language.rfind('-');
        if (end == std::string_view::npos) {
            return {};
        }
        language = language.substr(0, end);
    }
}

} // namespace zqm::platform
