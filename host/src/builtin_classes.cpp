#include "builtin_classes.h"

#include "text.h"
#include "zqmhost/errors.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace zqm::host {

namespace {

Property propertyOf(const BuiltinProperty& builtin) {
    Property property;
    property.name = builtin.name;
    property.type = parseType(builtin.type);
    property.parameter = builtin.parameter;
    property.getter = builtin.getter;
    property.setter = builtin.setter;
    property.kept = builtin.getter == nullptr && builtin.setter == nullptr;
    addFunctionTypes(property);
    return property;
}

Method methodOf(const BuiltinMethod& builtin) {
    Method method;
    method.declaration = parseDeclaration(builtin.declaration);
    method.function = builtin.function;
    method.type = std::make_unique<FunctionType>(true, method.declaration);
    return method;
}

// The members that are left out, each to be met at least once.
class LeftOut {
public:
    explicit LeftOut(const std::vector<std::string>& members) {
        for (const std::string& member : members) {
            members_.insert(lowered(member));
        }
        unmet_ = members_;
    }

    bool contains(std::string_view ofClass, std::string_view name) {
        const std::string member = lowered(ofClass) + '.' + lowered(name);
        unmet_.erase(member);
        return members_.contains(member);
    }

    void requireAllMet() const {
        if (!unmet_.empty()) {
            throw CallError("no built-in class has a member " + inQuotes(*unmet_.begin()));
        }
    }

private:
    std::set<std::string> members_;
    std::set<std::string> unmet_;
};

void add(std::deque<HostClass>& classes, const BuiltinClass& builtin, LeftOut& leftOut) {
    const auto super = std::ranges::find(classes, builtin.super, &HostClass::name);
    const HostClass* superClass = super == classes.end() ? nullptr : &*super;
    HostClass& type = classes.emplace_back();
    type.name = builtin.name;
    type.super = superClass;
    type.creatable = builtin.creatable;
    type.dataSize = builtin.dataSize;
    type.makeContent = builtin.makeContent;
    for (const BuiltinProperty& property : builtin.properties) {
        if (!leftOut.contains(builtin.name, property.name)) {
            type.properties.push_back(propertyOf(property));
        }
    }
    for (const BuiltinMethod& one : builtin.methods) {
        Method method = methodOf(one);
        if (!leftOut.contains(builtin.name, method.declaration.name)) {
            type.methods.push_back(std::move(method));
        }
    }
}

} // namespace

void addBuiltinClasses(std::deque<HostClass>& classes, const std::vector<std::string>& without) {
    LeftOut leftOut(without);
    for (const auto& area : {exceptionClasses(), variantClasses(), arrayClasses(), dictionaryClasses(),
                             dateClasses(), memoryBlockClasses(), folderItemClasses()}) {
        for (const BuiltinClass& builtin : area) {
            add(classes, builtin, leftOut);
        }
    }
    leftOut.requireAllMet();
}

} // namespace zqm::host
