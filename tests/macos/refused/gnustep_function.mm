// refused by: linker
// message: undefined symbol: _GSPlanted
extern "C" int GSPlanted();

int answer() {
    return GSPlanted();
}
