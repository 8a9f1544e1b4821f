// refused by: compiler
// message: no template named 'vector' in namespace 'std'
#include <cstdint>

unsigned long three() {
    std::vector<int> numbers(3);
    return numbers.size();
}
