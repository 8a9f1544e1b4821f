#include "plugin/class_records.h"

#include "siblings/foundation/records.h"

#include <vector>

const char* const kPartName = "Foundation";

std::span<ClassRecord* const> classRecords() {
    static const std::vector<ClassRecord*> records = [] {
        std::vector<ClassRecord*> all{&NSExceptionClass, &NSErrorClass};
        for (const auto& group : {cfObjectClasses(), valueClasses(), wrapperClasses()}) {
            for (ClassRecord& record : group) {
                all.push_back(&record);
            }
        }
        return all;
    }();
    return records;
}
