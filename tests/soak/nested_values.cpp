#include "tests/soak/nested_values.h"

#include <algorithm>
#include <functional>

namespace zqm::soak {
namespace {

using host::ElementType;
using host::Runtime;
using host::Value;
using Random = std::mt19937_64;

constexpr std::size_t kMostElements = 6;

std::vector<Value> several(Random& random, const std::function<Value()>& make) {
    std::vector<Value> values(random() % kMostElements);
    std::ranges::generate(values, make);
    return values;
}

Value text(Runtime& runtime, Random& random) {
    std::u16string units(random() % 40, u'a');
    for (char16_t& unit : units) {
        unit = static_cast<char16_t>(random() % 5 == 0 ? 0x3B1 + random() % 24 : u'a' + random() % 26);
    }
    const std::string_view bytes(reinterpret_cast<const char*>(units.data()), units.size() * 2);
    return runtime.string(bytes, host::encoding::kUtf16);
}

Value array(Runtime& runtime, Random& random, int depth) {
    switch (random() % 4) {
    case 0:
        return runtime.array(ElementType::String, several(random, [&] { return text(runtime, random); }));
    case 1:
        return runtime.array(ElementType::Double,
                             several(random, [&] { return Value(static_cast<double>(random() % 1000)); }));
    case 2:
        return runtime.array(ElementType::Integer,
                             several(random, [&] { return Value(static_cast<int>(random() % 1000)); }));
    default:
        return runtime.array(ElementType::Object, several(random, [&] {
                                 return Value(runtime.variant(nestedValue(runtime, random, depth - 1)));
                             }));
    }
}

Value dictionary(Runtime& runtime, Random& random, int depth) {
    host::Dictionary dictionary = runtime.dictionary();
    for (std::size_t count = random() % kMostElements; count > 0; --count) {
        dictionary.setValue(text(runtime, random), nestedValue(runtime, random, depth - 1));
    }
    return dictionary;
}

} // namespace

Value nestedValue(Runtime& runtime, Random& random, int depth) {
    switch (random() % (depth > 0 ? 8 : 6)) {
    case 0:
        return static_cast<std::int64_t>(random());
    case 1:
        return static_cast<double>(random() % 100'000) / 7;
    case 2:
        return random() % 2 == 0;
    case 3:
        return text(runtime, random);
    case 4:
        return runtime.date(1970 + static_cast<int>(random() % 100), 1 + static_cast<int>(random() % 12),
                            1 + static_cast<int>(random() % 28));
    case 5:
        return runtime.memoryBlock(std::string(1 + random() % 1000, 'x')); // an empty one is nil: no element
    case 6:
        return array(runtime, random, depth);
    default:
        return dictionary(runtime, random, depth);
    }
}

} // namespace zqm::soak
