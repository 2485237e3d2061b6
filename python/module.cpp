// The loadable module `tarvik`: drives the screens without a window, and lets a routine work on them.
#include "python/bind_all.h"

PYBIND11_MODULE(tarvik, module) { tarvik::python::BindAll(module); }
