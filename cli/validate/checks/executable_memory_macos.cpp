#include "cli/validate/checks/executable_memory.h"

#include <mach/mach.h>
#include <mach/mach_vm.h>

namespace zqm::cli {

std::optional<bool> isExecutable(const void* address) {
    const auto wanted = reinterpret_cast<mach_vm_address_t>(address);
    mach_vm_address_t begin = wanted; // becomes that of the region there, or of the next one
    mach_vm_size_t size = 0;
    vm_region_basic_info_data_64_t info{};
    mach_msg_type_number_t count = VM_REGION_BASIC_INFO_COUNT_64;
    mach_port_t object = MACH_PORT_NULL;
    return mach_vm_region(mach_task_self(), &begin, &size, VM_REGION_BASIC_INFO_64,
                          reinterpret_cast<vm_region_info_t>(&info), &count, &object) == KERN_SUCCESS &&
           begin <= wanted && (info.protection & VM_PROT_EXECUTE) != 0;
}

} // namespace zqm::cli
