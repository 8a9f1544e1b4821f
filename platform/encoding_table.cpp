#include "platform/encoding_table.h"

#include <algorithm>
#include <array>

namespace zqm::platform {
namespace {

constexpr auto kIcu = ConverterLibrary::Icu;
constexpr auto kIconv = ConverterLibrary::Iconv;

// ICU where both libraries know an encoding: its tables tell the vendors' variants apart.
constexpr auto kTable = std::to_array<EncodingRow>({
    {0x0000, kIcu, "macintosh"},
    {0x0006, kIcu, "x-mac-greek"},
    {0x0007, kIcu, "x-mac-cyrillic"},
    {0x001D, kIcu, "x-mac-centraleurroman"},
    {0x0023, kIcu, "x-mac-turkish"},
    {0x0025, kIconv, "MAC-IS"},
    {0x0098, kIconv, "MAC-UK"},
    {0x0201, kIcu, "ISO-8859-1"},
    {0x0202, kIcu, "ISO-8859-2"},
    {0x0203, kIcu, "ISO-8859-3"},
    {0x0204, kIcu, "ISO-8859-4"},
    {0x0205, kIcu, "ISO-8859-5"},
    {0x0206, kIcu, "ISO-8859-6"},
    {0x0207, kIcu, "ISO-8859-7"},
    {0x0208, kIcu, "ISO-8859-8"},
    {0x0209, kIcu, "ISO-8859-9"},
    {0x020A, kIcu, "ISO-8859-10"},
    {0x020B, kIconv, "ISO-8859-11"},
    {0x020D, kIcu, "ISO-8859-13"},
    {0x020E, kIcu, "ISO-8859-14"},
    {0x020F, kIcu, "ISO-8859-15"},
    {0x0210, kIconv, "ISO-8859-16"},
    {0x0400, kIcu, "IBM437"},
    {0x0405, kIcu, "IBM737"},
    {0x0406, kIcu, "IBM775"},
    {0x0410, kIcu, "IBM850"},
    {0x0411, kIcu, "IBM851"},
    {0x0412, kIcu, "IBM852"},
    {0x0413, kIcu, "IBM855"},
    {0x0414, kIcu, "IBM857"},
    {0x0415, kIcu, "IBM860"},
    {0x0416, kIcu, "IBM861"},
    {0x0417, kIcu, "IBM862"},
    {0x0418, kIcu, "IBM863"},
    {0x0419, kIcu, "IBM864"},
    {0x041A, kIcu, "IBM865"},
    {0x041B, kIcu, "IBM866"},
    {0x041C, kIcu, "IBM869"},
    {0x041D, kIcu, "windows-874-2000"},
    {0x0420, kIcu, "windows-31j"},
    {0x0421, kIcu, "windows-936-2000"},
    {0x0422, kIcu, "windows-949-2000"},
    {0x0423, kIcu, "windows-950-2000"},
    {0x0500, kIcu, "windows-1252"},
    {0x0501, kIcu, "windows-1250"},
    {0x0502, kIcu, "windows-1251"},
    {0x0503, kIcu, "windows-1253"},
    {0x0504, kIcu, "windows-1254"},
    {0x0505, kIcu, "windows-1255"},
    {0x0506, kIcu, "windows-1256"},
    {0x0507, kIcu, "windows-1257"},
    {0x0508, kIcu, "windows-1258"},
    {0x0510, kIconv, "CP1361"},
    {0x0600, kIcu, "US-ASCII"},
    {0x0628, kIconv, "SHIFT_JISX0213"},
    {0x0630, kIcu, "GB_2312-80"},
    {0x0631, kIcu, "GBK"},
    {0x0632, kIcu, "GB18030"},
    {0x0640, kIcu, "ibm-970"},
    {0x0641, kIconv, "JOHAB"},
    {0x0820, kIcu, "ISO-2022-JP"},
    {0x0821, kIcu, "ISO-2022-JP-2"},
    {0x0822, kIcu, "ISO-2022-JP-1"},
    {0x0823, kIconv, "ISO-2022-JP-3"},
    {0x0830, kIcu, "ISO-2022-CN"},
    {0x0831, kIcu, "ISO-2022-CN-EXT"},
    {0x0840, kIcu, "ISO-2022-KR"},
    {0x0920, kIcu, "EUC-JP"},
    {0x0930, kIcu, "EUC-CN"},
    {0x0931, kIcu, "EUC-TW"},
    {0x0940, kIcu, "EUC-KR"},
    {0x0A01, kIcu, "Shift_JIS"},
    {0x0A02, kIcu, "KOI8-R"},
    {0x0A03, kIcu, "Big5"},
    {0x0A05, kIcu, "HZ-GB-2312"},
    {0x0A06, kIcu, "Big5-HKSCS"},
    {0x0A07, kIconv, "VISCII"},
    {0x0A08, kIcu, "KOI8-U"},
    {0x0A10, kIcu, "IMAP-mailbox-name"},
    {0x0C01, kIconv, "EBCDIC-US"},
    {0x0C02, kIcu, "ibm-37"},
    {0x04000100, kIcu, "UTF-7"},
    {0x08000100, kIcu, "UTF-8"},
    {0x18000100, kIcu, "UTF-32BE"},
    {0x1C000100, kIcu, "UTF-32LE"},
});
static_assert(std::ranges::is_sorted(kTable, {}, &EncodingRow::encoding));

} // namespace

std::span<const EncodingRow> encodingTable() {
    return kTable;
}

} // namespace zqm::platform
