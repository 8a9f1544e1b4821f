#include "cli/validate/checks/exported_names.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <dlfcn.h>
#include <link.h>
#include <string_view>

namespace zqm::cli {
namespace {

constexpr std::array<std::string_view, 5> kOfLinkers{"_init", "_fini", "_edata", "_end", "__bss_start"};

struct DynamicTables {
    const ElfW(Sym) * symbols;
    const char* names;
    const std::uint32_t* hash;
    const std::uint32_t* gnuHash;
};

DynamicTables tablesOf(const link_map& library) {
    DynamicTables tables{};
    for (const ElfW(Dyn)* entry = library.l_ld; entry->d_tag != DT_NULL; ++entry) {
        const auto* address = reinterpret_cast<const void*>(entry->d_un.d_ptr); // the loader has relocated it
        switch (entry->d_tag) {
        case DT_SYMTAB:
            tables.symbols = static_cast<const ElfW(Sym)*>(address);
            break;
        case DT_STRTAB:
            tables.names = static_cast<const char*>(address);
            break;
        case DT_HASH:
            tables.hash = static_cast<const std::uint32_t*>(address);
            break;
        case DT_GNU_HASH:
            tables.gnuHash = static_cast<const std::uint32_t*>(address);
            break;
        default:
            break;
        }
    }
    return tables;
}

// The table of symbols doesn't say how many it has: the last chain of the hash table ends with the last one.
std::size_t symbolCount(const std::uint32_t* gnuHash) {
    const std::uint32_t bucketCount = gnuHash[0];
    const std::uint32_t firstHashed = gnuHash[1];
    const std::uint32_t bloomCount = gnuHash[2];
    const std::uint32_t* buckets = gnuHash + 4 + bloomCount * (sizeof(ElfW(Addr)) / sizeof(std::uint32_t));
    const std::uint32_t* chains = buckets + bucketCount;
    const std::uint32_t last = bucketCount == 0 ? 0 : *std::max_element(buckets, buckets + bucketCount);
    if (last < firstHashed) {
        return firstHashed;
    }
    std::size_t index = last;
    while ((chains[index - firstHashed] & 1U) == 0) {
        ++index;
    }
    return index + 1;
}

bool isExported(const ElfW(Sym) & symbol) {
    const unsigned binding = ELF64_ST_BIND(symbol.st_info);
    return symbol.st_shndx != SHN_UNDEF && binding != STB_LOCAL && symbol.st_name != 0;
}

} // namespace

std::optional<std::vector<ExportedName>> exportedNames(void* library) {
    link_map* map = nullptr;
    if (dlinfo(library, RTLD_DI_LINKMAP, &map) != 0) {
        return std::nullopt;
    }
    const DynamicTables tables = tablesOf(*map);
    std::size_t count = 0;
    if (tables.gnuHash != nullptr) {
        count = symbolCount(tables.gnuHash);
    } else if (tables.hash != nullptr) {
        count = tables.hash[1];
    }
    std::vector<ExportedName> names;
    for (std::size_t index = 0; index < count; ++index) {
        const std::string_view name = tables.names + tables.symbols[index].st_name;
        if (isExported(tables.symbols[index]) && std::ranges::find(kOfLinkers, name) == kOfLinkers.end()) {
            names.push_back({std::string(name), ELF64_ST_BIND(tables.symbols[index].st_info) != STB_GLOBAL});
        }
    }
    std::ranges::sort(names, {}, &ExportedName::name);
    return names;
}

} // namespace zqm::cli
