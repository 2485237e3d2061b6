// Loading the folder of routines: its files in name order, and what of them bears the name of a key.
#include "python/rutinas.h"

#include <algorithm>
#include <string_view>

#include "data/error.h"
#include "data/text.h"
#include "service/contract/claves.h"

namespace tarvik::python {

namespace {

bool PareceClave(std::string_view name) {
  for (const std::string_view stem :
       {"ENTRADAS", "ENTRADA", "SALIDAS", "SALIDA", "MOVESTACIONES", "TALLASYCOLORES"}) {
    if (!name.starts_with(stem) || name.size() == stem.size()) continue;
    const std::string_view number = name.substr(stem.size());
    if (std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; })) return true;
  }
  return false;
}

bool EsClave(std::string_view name) {
  return std::any_of(service::kClaves.begin(), service::kClaves.end(),
                     [&](const auto& key) { return key.clave == name; });
}

}  // namespace

void Rutinas::Interior::Anota(Fallo failure) {
  if (opciones.bitacora) {
    opciones.bitacora("rutinas", LugarDe(failure.archivo, failure.linea) + ": " + failure.texto);
  }
  fallos.push_back(std::move(failure));
}

void Rutinas::Interior::CargaArchivo(const fs::path& path) {
  const RutinaCargada file{{}, path.string(), 1};
  Plazo limit(*this, file);
  std::string name = path.stem().string();
  py::module_ sys = py::module_::import("sys");
  py::object modules = sys.attr("modules");
  try {
    py::object module;
    if (modules.contains(name) && Atributo(modules[py::str(name)], "__file__") == path.string()) {
      module = modules[py::str(name)];  // an earlier file has imported it
    } else {
      if (modules.contains(name) || sys.attr("stdlib_module_names").contains(name)) name = "ganchos." + name;
      module = confianza->Ejecuta(name, path.string());
    }
    TomaFunciones(module, path.string());
  } catch (py::error_already_set& raised) {
    limit.Obedecido();
    if (const auto why = confianza->Rehusado(path.string())) {
      Anota({path.string(), 0, *why});
    } else {
      Anota(FalloDeCarga(raised, carpeta, path.string(), py::make_tuple(detenida, confianza->Excepcion())));
    }
    modules.attr("pop")(name, py::none());
  }
}

void Rutinas::Interior::TomaFunciones(const py::object& module, const std::string& path) {
  const py::module_ inspect = py::module_::import("inspect");
  for (const auto& item : module.attr("__dict__").cast<py::dict>()) {
    const std::string name = TextOf(item.first);
    py::object function = py::reinterpret_borrow<py::object>(item.second);
    if (!PyCallable_Check(function.ptr())) continue;
    RutinaCargada routine{name, path, 0};
    if (py::hasattr(function, "__code__")) {
      routine.archivo = TextOf(function.attr("__code__").attr("co_filename"));
      routine.linea = function.attr("__code__").attr("co_firstlineno").cast<int>();
    }
    if (!EsClave(name)) {
      if (PareceClave(name))
        Anota({routine.archivo, routine.linea, name + " no es ninguna clave: no se llamará nunca"});
      continue;
    }
    if (inspect.attr("iscoroutinefunction")(function).cast<bool>() ||
        inspect.attr("isgeneratorfunction")(function).cast<bool>()) {
      Anota({routine.archivo, routine.linea,
             name + " no es una función corriente (async o yield): no se llamará"});
      continue;
    }
    try {
      inspect.attr("signature")(function).attr("bind")(py::none(), py::none());
    } catch (py::error_already_set& raised) {
      if (raised.matches(PyExc_TypeError)) {
        Anota({routine.archivo, routine.linea,
               name + " debe tomar dos argumentos, forma y ambiente: no se llamará"});
        continue;
      }  // a callable with no signature to look at is called as it is
    }
    cargadas.push_back(routine);
    por_clave[name].push_back({std::move(routine), std::move(function)});
  }
}

std::vector<Fallo> Rutinas::Carga(host::Anfitrion& host, const std::string& folder) {
  Interior& inner = *interior_;
  if (inner.anfitrion) throw data::Error("Las rutinas ya se cargaron");
  inner.anfitrion = &host;

  fs::path path(forms::NativePath(folder));
  if (folder.empty()) {
    path = fs::path(forms::NativePath(data::ToText(host.Ambiente().Lee("RutaBase")))) / "ganchos";
  }
  std::error_code failed;
  path = fs::absolute(path, failed).lexically_normal();
  if (!path.has_filename()) path = path.parent_path();
  inner.carpeta = path.string();
  if (!fs::is_directory(path, failed)) {
    if (!folder.empty()) inner.Anota({inner.carpeta, 0, "no existe la carpeta"});
    return inner.fallos;
  }
  std::vector<fs::path> files;
  for (fs::directory_iterator entry(path, failed), end; !failed && entry != end; entry.increment(failed)) {
    std::error_code gone;
    const std::string name = entry->path().filename().string();
    if (name.ends_with(".py") && !name.starts_with(".") && !entry->is_directory(gone))
      files.push_back(entry->path());
  }
  if (failed) inner.Anota({inner.carpeta, 0, "no se puede leer la carpeta"});
  if (files.empty()) return inner.fallos;
  std::sort(files.begin(), files.end());

  try {
    inner.Arranca();
    for (const auto& file : files) inner.CargaArchivo(file);
    inner.en_reposo.emplace();
  } catch (const std::exception& error) {
    inner.Anota(
        {inner.carpeta, 0, std::string("no se pudo poner en marcha el intérprete (") + error.what() + ")"});
    return inner.fallos;
  }
  for (const auto& [key, routines] : inner.por_clave) {
    host.Gancho(key, [&inner, key = key](forms::Form& form, host::AmbienteLocal& ambiente) {
      inner.Dispara(key, form, ambiente);
    });
  }
  return inner.fallos;
}

}  // namespace tarvik::python
