// refused by: rules
// message: the library holds the symbol "_GSPlantedThing", which is none of macOS
extern "C" int GSPlantedThing() {
    return 1;
}
