// The extension module zqm._zqm: the reference host's C++ API, as the package zqm needs it.

#include "conversion.h"
#include "exceptions.h"
#include "handle.h"
#include "listening.h"
#include "run_loop.h"
#include "runtime.h"

#include <zqmhost/class_description.h>

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

namespace py = pybind11;

namespace zqm::python {

namespace {

py::object call(Handle& handle, const std::string& method, const py::tuple& values,
                const ExpectedTypes& expected) {
    enter();
    PassedArguments arguments(values, expected);
    try {
        const host::Value result = handle.object().callWith(method, arguments.values());
        arguments.takeBack();
        return toPython(result);
    } catch (const host::HostException&) {
        arguments.takeBack();
        throw;
    }
}

py::object callShared(const std::string& className, const std::string& method, const py::tuple& values,
                      const ExpectedTypes& expected) {
    enter();
    PassedArguments arguments(values, expected);
    try {
        const host::Value result = runtime().callSharedWith(className, method, arguments.values());
        arguments.takeBack();
        return toPython(result);
    } catch (const host::HostException&) {
        arguments.takeBack();
        throw;
    }
}

void setHandler(Handle& handle, const std::string& event, const py::object& handler) {
    enter();
    handle.object().on(event, [handler](const host::Arguments& arguments) {
        py::tuple values(arguments.size());
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            values[index] = toPython(arguments[index]);
        }
        handler(*values);
    });
}

void bindDescriptions(py::module_& module) {
    using namespace host;
    py::class_<TypeDescription>(module, "TypeDescription")
        .def_readonly("name", &TypeDescription::name)
        .def_readonly("is_array", &TypeDescription::isArray);
    py::class_<ParameterDescription>(module, "ParameterDescription")
        .def_readonly("name", &ParameterDescription::name)
        .def_readonly("type", &ParameterDescription::type)
        .def_readonly("by_ref", &ParameterDescription::byRef)
        .def_readonly("default", &ParameterDescription::defaultValue);
    py::class_<MethodDescription>(module, "MethodDescription")
        .def_readonly("name", &MethodDescription::name)
        .def_readonly("parameters", &MethodDescription::parameters)
        .def_readonly("result", &MethodDescription::result)
        .def_readonly("is_callable", &MethodDescription::isCallable)
        .def_property_readonly("declaration", [](const MethodDescription& one) { return declaration(one); });
    py::class_<PropertyDescription>(module, "PropertyDescription")
        .def_readonly("name", &PropertyDescription::name)
        .def_readonly("type", &PropertyDescription::type)
        .def_readonly("is_readable", &PropertyDescription::isReadable)
        .def_readonly("is_writable", &PropertyDescription::isWritable)
        .def_property_readonly("declaration",
                               [](const PropertyDescription& one) { return declaration(one); });
    py::class_<EventDescription>(module, "EventDescription")
        .def_readonly("name", &EventDescription::name)
        .def_readonly("parameters", &EventDescription::parameters)
        .def_readonly("result", &EventDescription::result)
        .def_property_readonly("declaration", [](const EventDescription& one) { return declaration(one); });
    py::class_<ConstantDescription>(module, "ConstantDescription")
        .def_readonly("name", &ConstantDescription::name)
        .def_readonly("value", &ConstantDescription::value);
    py::class_<ClassDescription>(module, "ClassDescription")
        .def_readonly("name", &ClassDescription::name)
        .def_readonly("super", &ClassDescription::super)
        .def_readonly("methods", &ClassDescription::methods)
        .def_readonly("shared_methods", &ClassDescription::sharedMethods)
        .def_readonly("properties", &ClassDescription::properties)
        .def_readonly("events", &ClassDescription::events)
        .def_readonly("constants", &ClassDescription::constants);
}

void bindObjects(py::module_& module) {
    py::class_<ExpectedTypes>(module, "ExpectedTypes").def(py::init<std::vector<std::vector<std::string>>>());
    py::class_<Handle>(module, "Handle")
        .def_property_readonly("address", &Handle::address)
        .def_property_readonly("class_name",
                               [](Handle& handle) {
                                   enter();
                                   return handle.object().className();
                               })
        .def("check",
             [](Handle& handle) {
                 enter();
                 handle.object();
             })
        .def("call", call)
        .def("get",
             [](Handle& handle, const std::string& property) {
                 enter();
                 return toPython(handle.object().get(property));
             })
        .def("set",
             [](Handle& handle, const std::string& property, const py::object& value,
                const std::vector<std::string>& expected) {
                 enter();
                 handle.object().set(property, toHost(value, expected));
             })
        .def("on", setHandler)
        .def("off", [](Handle& handle, const std::string& event) {
            enter();
            handle.object().off(event);
        });
}

void bindRuntime(py::module_& module) {
    module.def("enter", enter);
    module.def("after_fork", afterFork);
    module.def("load", [](const std::string& plugin) {
        enter();
        runtime().load(plugin);
    });
    module.def("describe_classes", [] {
        enter();
        return runtime().describeClasses();
    });
    module.def("create", [](const std::string& className) {
        enter();
        return std::make_unique<Handle>(runtime().create(className));
    });
    module.def("call_shared", callShared);
    module.def("reports", [] {
        enter();
        std::vector<std::string> lines;
        for (const host::Report& report : runtime().reports()) {
            lines.push_back(nameOf(report.kind) + (": " + report.text));
        }
        return lines;
    });
    module.def("object_count", [] {
        enter();
        return runtime().ledger().objects.handles;
    });
    module.def("end_runtime", endRuntime);
    module.def("deliver", deliver);
    module.def("event_descriptor", eventDescriptor);
    module.def("wait_for_events", waitForEvents);
    module.def("platform_folder", platformFolder);
    module.def("listen_to_file", listenToFile);
}

} // namespace

} // namespace zqm::python

PYBIND11_MODULE(_zqm, module) {
    using namespace zqm::python;
    findMainThread();
    translateExceptions();
    bindDescriptions(module);
    bindObjects(module);
    bindRuntime(module);
}
