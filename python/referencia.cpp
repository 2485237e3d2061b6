#include "python/referencia.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <map>
#include <set>

#include "python/descripcion.h"

namespace tarvik::python {

namespace {

using members::Kind;

// ---- the stub ----

constexpr const char* kCabezaDelStub =
    R"("""Movimientos de inventario: maneja las pantallas sin ventana y las amplía con rutinas.

Hecho a partir de la tabla de miembros; no se edita a mano."""
import datetime
from collections.abc import Callable, Iterator
from typing import Any, Generic, TypeVar, overload

Valor = None | bool | int | float | str | datetime.date
Pantalla = Any
_Control = TypeVar("_Control", bound="Control")


class Error(Exception):
    """Algo que no se pudo hacer; su texto lo dice."""
)";

std::string EnElStub(const MiembroDescrito& member, bool overloaded) {
  const std::string doc = "\"\"\"" + member.linea + "\"\"\"\n";
  if (member.clase == Kind::Property) return "    " + member.nombre + ": " + member.tipo + "\n    " + doc;
  std::string text = overloaded ? "    @overload\n" : "";
  if (member.clase != Kind::Procedure) text += "    @property\n";
  text += "    def " + member.nombre + "(self";
  for (const auto& parameter : member.parametros) {
    text += ", " + parameter.nombre + ": " + parameter.tipo;
    if (parameter.omision) text += " = " + *parameter.omision;
  }
  return text + ") -> " + member.tipo + ":\n        " + doc;
}

std::string Base(const ClaseDescrita& described) {
  if (described.nombre == "ControlArray") return "(Generic[_Control])";
  if (described.nombre == "ListItems") return "(list[Valor])";
  return described.base.empty() ? std::string() : "(" + described.base + ")";
}

std::string Stub() {
  std::string text = kCabezaDelStub;
  for (const ClaseDescrita& described : Descritas()) {
    text +=
        "\n\nclass " + described.nombre + Base(described) + ":\n    \"\"\"" + described.linea + "\"\"\"\n";
    for (const auto& member : described.miembros) {
      const auto same =
          std::count_if(described.miembros.begin(), described.miembros.end(),
                        [&](const MiembroDescrito& other) { return other.nombre == member.nombre; });
      text += "\n" + EnElStub(member, same > 1);
    }
  }
  return text;
}

// ---- the pages ----

// "list[str | None]" in words: "lista de texto o nada".
std::string EnPalabras(const std::string& type);

// The parts of a text between separators that stand in no bracket.
std::vector<std::string> Partes(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts(1);
  int depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    depth += text[i] == '[' ? 1 : text[i] == ']' ? -1 : 0;
    if (depth == 0 && text.compare(i, separator.size(), separator) == 0) {
      parts.emplace_back();
      i += separator.size() - 1;
    } else {
      parts.back() += text[i];
    }
  }
  return parts;
}

std::string Juntas(const std::vector<std::string>& parts, const std::string& between) {
  std::string text;
  for (const auto& part : parts) text += (text.empty() ? "" : between) + EnPalabras(part);
  return text;
}

std::string EnPalabras(const std::string& type) {
  static const std::map<std::string, std::string> words{{"None", "nada"},
                                                        {"bool", "sí o no"},
                                                        {"int", "entero"},
                                                        {"float", "número"},
                                                        {"str", "texto"},
                                                        {"datetime.date", "fecha"},
                                                        {"Valor", "valor"},
                                                        {"Pantalla", "pantalla"},
                                                        {"datetime.datetime", "fecha y hora"},
                                                        {"_Control", "control"},
                                                        {"dict[str, Any]", "registro"},
                                                        {"...", "..."}};
  if (const auto found = words.find(type); found != words.end()) return found->second;
  if (const auto parts = Partes(type, " | "); parts.size() > 1) return Juntas(parts, " o ");
  const std::size_t bracket = type.find('[');
  if (bracket == std::string::npos) return "`" + type + "`";
  const std::string outer = type.substr(0, bracket);
  const std::string inner = type.substr(bracket + 1, type.size() - bracket - 2);
  if (outer == "list") return "lista de " + EnPalabras(inner);
  if (outer == "ControlArray") return "arreglo de " + EnPalabras(inner);
  if (outer == "tuple") return "(" + Juntas(Partes(inner, ", "), ", ") + ")";
  if (outer == "Iterator") return "recorrido de " + EnPalabras(inner);
  return outer == "dict" ? "rutinas por su clave" : "función";
}

// "falla(pattern, veces = 1)"
std::string Llamada(const MiembroDescrito& member) {
  std::string text = member.nombre + "(";
  for (const auto& parameter : member.parametros) {
    if (!text.ends_with("(")) text += ", ";
    text += parameter.nombre + (parameter.omision ? " = " + *parameter.omision : "");
  }
  return text + ")";
}

// "tipo: texto; n: entero"
std::string Argumentos(const MiembroDescrito& member) {
  std::string text;
  for (const auto& parameter : member.parametros) {
    text += (text.empty() ? "" : "; ") + parameter.nombre + ": " + EnPalabras(parameter.tipo);
  }
  return text;
}

using Miembros = std::vector<const MiembroDescrito*>;

void Seccion(std::string& page, const std::string& title, const std::string& head, const std::string& rows) {
  if (rows.empty()) return;
  page += "\n" + title + "\n\n" + head + rows;
}

std::string FilasDeControles(const Miembros& all) {
  std::string rows;
  for (const MiembroDescrito* member : all) {
    if (member->clase == Kind::Control) {
      rows += "| `" + member->nombre + "` | " + EnPalabras(member->tipo) + " | " + member->linea + " |\n";
    } else if (member->clase == Kind::ControlArray) {
      rows += "| `" + member->nombre + "` | " + EnPalabras(member->tipo) + " | " + member->linea + " |\n";
      for (const members::Place& place : member->lugares) {
        rows += "| `" + member->nombre + "(" + std::to_string(place.index) + ")` | | " +
                std::string(place.line) + " |\n";
      }
    }
  }
  return rows;
}

std::string FilasDePropiedades(const Miembros& all) {
  std::string rows;
  for (const MiembroDescrito* member : all) {
    if (member->clase != Kind::Property && member->clase != Kind::ReadOnly) continue;
    rows += "| `" + member->nombre + "` | " + EnPalabras(member->tipo) +
            (member->clase == Kind::ReadOnly ? ", sólo se lee" : "") + " | " + member->linea + " |\n";
  }
  return rows;
}

std::string FilasDeProcedimientos(const Miembros& all) {
  std::string rows;
  std::string last;
  for (const MiembroDescrito* member : all) {
    // What Python writes in signs is told by the class's own line; two signatures of one are one.
    if (member->clase != Kind::Procedure || member->nombre.starts_with("__") || member->nombre == last)
      continue;
    last = member->nombre;
    rows += "| `" + Llamada(*member) + "` | " + Argumentos(*member) + " | " +
            (member->tipo == "None" ? "" : EnPalabras(member->tipo)) + " | " + member->linea + " |\n";
  }
  return rows;
}

void Escribe(std::string& page, const Miembros& all, const std::string& level) {
  Seccion(page, level + " Controles", "| Control | Clase | Para qué |\n|---|---|---|\n",
          FilasDeControles(all));
  Seccion(page, level + " Propiedades", "| Propiedad | Tipo | Para qué |\n|---|---|---|\n",
          FilasDePropiedades(all));
  Seccion(page, level + " Procedimientos", "| Llamada | Argumentos | Da | Para qué |\n|---|---|---|---|\n",
          FilasDeProcedimientos(all));
}

// Those of the class and of the classes that it builds on, up to one that has a page of its own.
Miembros Todos(const ClaseDescrita& described) {
  Miembros all;
  if (!described.base.empty() && described.base != "Forma" && described.base != "Control") {
    all = Todos(Descrita(described.base));
  }
  for (const auto& member : described.miembros) {
    const auto same = std::find_if(all.begin(), all.end(), [&](const MiembroDescrito* inherited) {
      return inherited->nombre == member.nombre && member.clase != Kind::Procedure;
    });
    if (same != all.end()) {
      *same = &member;
    } else {
      all.push_back(&member);
    }
  }
  return all;
}

constexpr const char* kAviso = "Hecha a partir de la tabla de miembros; no se edita a mano.\n";

struct Hoja {
  const char* archivo;
  const char* titulo;
  std::vector<std::string> clases;
  const char* resumen = "";  // of a sheet of one class, the class's own line
};

// All that one class has, but for what stands on the page of every screen.
void EscribeSola(std::string& page, const ClaseDescrita& described) {
  page += described.linea;
  if (!described.base.empty()) page += " Tiene además lo de [toda pantalla](pantallas.md).";
  page += "\n";
  Escribe(page, Todos(described), "##");
}

void EscribeEntreOtras(std::string& page, const ClaseDescrita& described) {
  page += "\n## " + described.nombre + "\n\n" + described.linea + "\n";
  if (!described.base.empty()) page += "\nTiene además lo de `" + described.base + "`.\n";
  Miembros own;
  for (const auto& member : described.miembros) own.push_back(&member);
  Escribe(page, own, "###");
}

std::string Pagina(const Hoja& sheet) {
  std::string page = std::string("# ") + sheet.titulo + "\n\n" + kAviso + "[Índice](indice.md)\n\n";
  if (sheet.clases.size() == 1) {
    EscribeSola(page, Descrita(sheet.clases.front()));
    return page;
  }
  page += std::string(sheet.resumen) + "\n";
  for (const std::string& name : sheet.clases) EscribeEntreOtras(page, Descrita(name));
  return page;
}

// Those of screens and controls, and at last one for all else.
std::vector<Hoja> HojasFijas() {
  return {
      {"entradas.md", "frmEntradasWizard", {"frmEntradasWizard"}},
      {"salidas.md", "frmSalidasWizard", {"frmSalidasWizard"}},
      {"malla.md", "frmMallaModelos", {"frmMallaModelos"}},
      {"estaciones.md", "frmMovEstaciones", {"frmMovEstaciones"}},
      {"pantallas.md", "Toda pantalla", {"Forma"}},
      {"controles.md",
       "Controles",
       {"Control", "ControlArray", "Label", "Button", "CheckBox", "TextBox", "RichTextBox", "DatePicker",
        "ComboBox", "PictureBox", "SearchBox", "Timer", "WebBrowser", "AutoResizer", "FlexGrid"},
       "Las clases de controles. Colores y medidas son números: 0xBBGGRR y twips."},
      {"servicios.md",
       "Servicios y anfitrión",
       {"EntradasSalidas", "Ambiente", "Anfitrion"},
       "Lo que está alrededor de las pantallas: la clase pública, el contexto que reciben las rutinas, los "
       "registros, y el anfitrión sin ventana con que un guion las maneja."}};
}

const std::vector<Hoja>& Hojas() {
  static const std::vector<Hoja> sheets = [] {
    std::vector<Hoja> all = HojasFijas();
    std::set<std::string> placed{"DocumentWizard"};  // its members stand with its screens
    for (const Hoja& sheet : all) placed.insert(sheet.clases.begin(), sheet.clases.end());
    for (const ClaseDescrita& described : Descritas()) {
      if (!placed.contains(described.nombre)) all.back().clases.push_back(described.nombre);
    }
    return all;
  }();
  return sheets;
}

std::string Indice() {
  std::string page = std::string("# Referencia para rutinas y guiones\n\n") + kAviso +
                     "\nUna rutina recibe la pantalla y el contexto: `def ENTRADA005(forma, ambiente): ...`. "
                     "Aquí está lo que "
                     "ambos\ntienen. Un editor muestra lo mismo con `tarvik.pyi`, que está junto al "
                     "módulo.\n\n| Página | Clases |\n|---|---|\n";
  for (const Hoja& sheet : Hojas()) {
    page += std::string("| [") + sheet.titulo + "](" + sheet.archivo + ") | ";
    for (std::size_t i = 0; i < sheet.clases.size(); ++i) {
      page += std::string(i ? ", `" : "`") + sheet.clases[i] + "`";
    }
    page += " |\n";
  }
  return page;
}

std::map<std::string, std::string> Paginas() {
  std::map<std::string, std::string> pages{{"indice.md", Indice()}};
  for (const Hoja& sheet : Hojas()) pages[sheet.archivo] = Pagina(sheet);
  return pages;
}

}  // namespace

void BindReferencia(py::module_& module) {
  module.def("_stub", &Stub, "El texto de tarvik.pyi.");
  module.def("_paginas", &Paginas, "Las páginas de la referencia, por su archivo.");
}

}  // namespace tarvik::python
