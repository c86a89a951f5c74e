// The Python module verra_colorconfig: the colour-configuration module and
// its toolkit for pipeline scripts.

#include "binding.h"

PYBIND11_MODULE(verra_colorconfig, m)
{
    m.doc() = "The Verra colour-configuration module and its toolkit: the OpenColorIO configuration of the "
              "process, its catalogue, conversions of colours, numpy pixel arrays (in place, without copies) "
              "and image files.\n\n"
              "Call load_ocio_config() first, as a host does. Failures raise: ValueError for an unknown name, "
              "RuntimeError for a conversion that fails, TypeError or ValueError for an array of the wrong "
              "kind, OSError for a file that cannot be read or written. The single-colour functions keep the "
              "module's own semantics and return the colour unchanged when they cannot convert it. Every call "
              "takes one lock of the module's own, so threads may call at once; pixel work runs without the "
              "GIL.";
    verra_python::registerExceptions();
    verra_python::addCatalogue(m);
    verra_python::addColors(m);
    verra_python::addPixels(m);
    verra_python::addFiles(m);
}
