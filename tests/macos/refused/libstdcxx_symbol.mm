// refused by: linker
// message: undefined symbol: std::__cxx11::
namespace std::__cxx11 {
void planted();
}

void call() {
    std::__cxx11::planted();
}
