#include "platform/foundation_text.h"

#include "platform/surrogates.h"
#include "platform/utf8.h"

namespace zqm::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

} // namespace

NSString* stringOf(const std::string& text) {
    return [[[NSString alloc] initWithBytes:text.data() length:text.size()
                                   encoding:NSUTF8StringEncoding] autorelease];
}

std::string utf8Of(NSString* string) {
    std::u16string text([string length], u'\0');
    [string getCharacters:reinterpret_cast<unichar*>(text.data()) range:NSMakeRange(0, text.size())];
    for (std::size_t index = findLoneSurrogate(text); index < text.size();
         index = findLoneSurrogate(text, index)) {
        text[index] = kReplacement;
    }
    return encodeUtf8(text);
}

} // namespace zqm::platform
