// Procedencia: whom a file of the deployer's routines comes from, and whether the program may run it.
// What it runs works with the operator's rights, so nobody else may be able to slip something in. It
// reads files and runs nothing; it knows no interpreter.
#pragma once

#include <sys/types.h>

#include <string>

namespace tarvik::python {

// What decides. The folder is the one where the file really is.
struct Procedencia {
  uid_t usuario = 0;  // who the program works for: the process's effective one
  uid_t dueno = 0;
  mode_t modo = 0;
  uid_t dueno_de_carpeta = 0;
  mode_t modo_de_carpeta = 0;
};

// Why such a file is not run, for an operator; empty if it may be. It has to belong to the user, to
// root or to the owner of its folder, and not everybody may write it or put another in its place (a
// folder where everybody writes but nobody touches what is another's is none such).
std::string PorQueNoSeCarga(const Procedencia& facts);

// What the file holds. A link counts as the file that it leads to; the folder in which the link stands
// must not be everybody's either. Owner and mode are those of the very file that is read, so that it
// can't be exchanged in between. Throws data::Error with the reason alone.
std::string LeeRutina(const std::string& path);

}  // namespace tarvik::python
