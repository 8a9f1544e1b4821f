#include "tests/soak/sampler.h"

#include "tests/endurance/holdings.h"
#include "tests/support/process_table.h"

#include <string>
#include <unistd.h>

namespace zqm::soak {
namespace {

// Under a sanitizer, which keeps what was freed, memory says nothing: then it stays empty.
std::string memory([[maybe_unused]] std::size_t bytes) {
#if defined(__SANITIZE_ADDRESS__)
    return {};
#else
    return std::to_string(bytes);
#endif
}

std::string residentMemoryOf(pid_t process) {
    return memory(endurance::residentPagesOf(process) * static_cast<std::size_t>(sysconf(_SC_PAGESIZE)));
}

} // namespace

Sampler::Sampler(std::ostream& out, const host::Runtime& runtime) : out_(out), runtime_(runtime) {
    out_ << "seconds,episodes,host heap,host resident,speaking engine resident,listening engine resident,"
            "host descriptors,engine descriptors,processes,ledger handles,ledger locks\n";
}

void Sampler::sample(const Alive& alive) {
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin_;
    const host::Ledger ledger = runtime_.ledger();
    const auto sum = [&](std::int64_t host::Ledger::Count::*count) {
        return ledger.objects.*count + ledger.strings.*count + ledger.texts.*count + ledger.stringData.*count;
    };
    out_ << time.count() << ',' << alive.episodes << ',' << memory(endurance::allocatedBytes()) << ','
         << memory(support::residentMemory()) << ',' << residentMemoryOf(alive.speaking) << ','
         << residentMemoryOf(alive.listening) << ',' << support::openDescriptors() << ','
         << support::openDescriptorsOf(alive.speaking) + support::openDescriptorsOf(alive.listening) << ','
         << alive.processes << ',' << sum(&host::Ledger::Count::handles) << ','
         << sum(&host::Ledger::Count::locks) << std::endl;
}

} // namespace zqm::soak
