#include "builtin_classes.h"
#include "builtin_function.h"
#include "date_content.h"

#include <ctime>

namespace zqm::host {

namespace {

std::int64_t field(Core& /*core*/, DateContent& date, std::int64_t index) {
    return date.fields.at(static_cast<std::size_t>(index));
}

void setField(Core& /*core*/, DateContent& date, std::int64_t index, std::int64_t value) {
    date.fields.at(static_cast<std::size_t>(index)) = value;
}

void construct(Core& /*core*/, DateContent& date, std::int64_t year, std::int64_t month, std::int64_t day,
               std::int64_t hour, std::int64_t minute, std::int64_t second) {
    date.fields = {year, month, day, hour, minute, second};
}

BuiltinProperty fieldProperty(std::string_view name, std::int64_t index) {
    return {.name = name,
            .type = "Integer",
            .getter = memberFunction<"property of a Date", field>(),
            .setter = memberFunction<"property of a Date", setField>(),
            .parameter = index};
}

} // namespace

std::unique_ptr<ObjectContent> DateContent::now() {
    const std::time_t seconds = std::time(nullptr);
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return std::make_unique<DateContent>(Fields{parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday,
                                                parts.tm_hour, parts.tm_min, parts.tm_sec});
}

std::vector<BuiltinClass> dateClasses() {
    return {
        {.name = kDateClass,
         .properties = {fieldProperty("Year", 0), fieldProperty("Month", 1), fieldProperty("Day", 2),
                        fieldProperty("Hour", 3), fieldProperty("Minute", 4), fieldProperty("Second", 5)},
         .methods = {{.declaration = "Constructor(year as Integer, month as Integer = 1, day as Integer = 1, "
                                     "hour as Integer = 0, minute as Integer = 0, second as Integer = 0)",
                      .function = memberFunction<"constructor of Date", construct>()}},
         .makeContent = DateContent::now},
    };
}

} // namespace zqm::host
