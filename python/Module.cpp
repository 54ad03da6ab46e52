// The native part of the Python package: runs, figures and lists; kxscenes/ gives them their Python form.
#include "python/Conversion.h"
#include "reading/base/HostError.h"

namespace py = pybind11;

PYBIND11_MODULE(_native, module) {
    module.attr("version") = PACKAGE_VERSION;
    py::register_exception<scenedetect::HostError>(module, "Error", PyExc_RuntimeError).attr("__module__") =
        "kxscenes";
    scenedetect::BindRuns(module);
    scenedetect::BindFigures(module);
    scenedetect::BindFrames(module);
    scenedetect::BindLists(module);
}
