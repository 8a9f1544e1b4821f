#include "exceptions.h"

#include "conversion.h"
#include "runtime.h"

#include <pybind11/pybind11.h>

namespace py = pybind11;

namespace zqm::python {

namespace {

py::object errors(const char* name) {
    return py::module_::import("zqm._errors").attr(name);
}

void raise(const char* name, const host::Error& error) {
    PyErr_SetString(errors(name).ptr(), error.what());
}

void raise(const host::HostException& exception) {
    py::list raised;
    for (const host::RaisedException& one : exception.all()) {
        raised.append(py::make_tuple(one.className, one.message, one.errorNumber, toPython(one.object)));
    }
    const py::object made = errors("host_exception")(raised);
    PyErr_SetObject(py::type::handle_of(made).ptr(), made.ptr());
}

} // namespace

void translateExceptions() {
    py::register_local_exception_translator([](std::exception_ptr thrown) {
        try {
            std::rethrow_exception(std::move(thrown));
        } catch (const host::HostException& exception) {
            raise(exception);
        } catch (const host::LoadError& error) {
            raise("LoadError", error);
        } catch (const ThreadError& error) {
            raise("ThreadError", error);
        } catch (const host::CallError& error) {
            raise("CallError", error);
        } catch (const host::Error& error) {
            raise("Error", error);
        }
    });
}

} // namespace zqm::python
