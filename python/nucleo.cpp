#include "python/nucleo.h"

#include <pybind11/stl.h>

#include <algorithm>
#include <utility>

#include "data/error.h"
#include "service/contract/claves.h"

namespace tarvik::python {

namespace {

// What a routine raised, as the suite's traps are to see it. What only ends a program (an interrupt
// from the keyboard, an exit) is raised again when the script's own call returns.
data::Error Raised(py::error_already_set& raised) {
  if (!raised.matches(PyExc_Exception)) KeepRaised(raised);
  std::string text = py::str(raised.value());
  if (text.empty()) text = py::str(raised.type().attr("__name__"));
  return data::Error(text);
}

}  // namespace

Nucleo::Nucleo(const std::string& base, const std::string& usuario, const std::string& estacion,
               const std::string& ruta, bool demo, Cuaderno& notebook)
    : notebook_(&notebook) {
  Listen();
  host::Opciones opciones;
  opciones.base = base;
  opciones.usuario = usuario;
  opciones.estacion = estacion;
  opciones.ruta = ruta;
  opciones.demo = demo;
  opciones.plataforma = &plataforma_;
  opciones.testigo = this;
  opciones.selector = this;
  anfitrion_ = std::make_unique<host::Anfitrion>(opciones);
  for (const auto& clave : service::kClaves) {
    const std::string key(clave.clave);
    anfitrion_->Gancho(key, [this, key](forms::Form& form, host::AmbienteLocal&) { RunRoutine(key, form); });
  }
}

void Nucleo::Listen() {
  plataforma_.on_box = [this](forms::BoxKind kind, const std::string& text, int style) {
    return ShowBox(kind, text, style);
  };
  plataforma_.on_beep = [this] { Note([](Cuaderno& notes) { ++notes.pitidos; }); };
  plataforma_.on_modal = [this](forms::Form& form) { ShowModal(form); };
  plataforma_.on_unhandled = [this](forms::Form*, const std::string& text) {
    Note([&](Cuaderno& notes) { notes.no_atrapados.append(StrOf(text)); });
  };
  plataforma_.on_search_list = [this](forms::SearchBox& box) {
    if (!box.Field()) return;
    Note([&](Cuaderno& notes) {
      notes.listas.append(py::make_tuple(box.Field()->Name(), box.Field()->Index()));
    });
  };
  plataforma_.on_navigate = [this](forms::WebBrowser&, const std::string& name) {
    Note([&](Cuaderno& notes) { notes.navegado.append(StrOf(name)); });
  };
  plataforma_.on_screen_loaded = [this](forms::Form& form) {
    form.Keep(shared_from_this());
    Note([&](Cuaderno& notes) { notes.pantallas.append(FormObject(form)); });
  };
  plataforma_.on_screen_unloaded = [this](forms::Form& form) {
    Note([&](Cuaderno& notes) {
      py::object object = FormObject(form);
      if (notes.pantallas.contains(object)) notes.pantallas.attr("remove")(object);
    });
  };
  plataforma_.on_wait = [this] { return Turn(); };
  plataforma_.clock = [this] {
    std::optional<data::DateTime> now;
    Note([&](Cuaderno& notes) { now = DateTimeOf(notes.ahora); });
    return now;
  };
}

data::Rows Nucleo::Sql(const std::string& text, const std::vector<data::Value>& values) {
  py::gil_scoped_release release;
  const std::lock_guard lock(apart_guard_);
  if (cerrado_) throw data::Error("La base está cerrada");
  if (!apart_) apart_ = anfitrion_->Base().Connect();
  return apart_->Run(text, values);
}

void Nucleo::Cierra() {
  if (std::exchange(cerrado_, true)) return;
  const auto screens = plataforma_.Screens();
  for (const auto& screen : screens) {
    screen->Act([&] { screen->Unload(); });
    screen->Discard();
  }
  py::gil_scoped_release release;
  const std::lock_guard lock(apart_guard_);
  apart_.reset();
  anfitrion_->Conexion().Close();
}

void Nucleo::Descansa() {
  if (cerrado_) return;
  anfitrion_->SueltaPendientes();
  try {
    anfitrion_->Conexion().Changes();  // a session that was lost is made anew, and its life goes on
  } catch (const data::Error&) {       // what is done next tells
  }
}

void Nucleo::Gancho(const std::string& key, const data::Value& value) {
  Note([&](Cuaderno& notes) { notes.ganchos_disparados.append(py::make_tuple(key, ToPython(value))); });
}

void Nucleo::Movimiento(const host::Propiedades& properties, double amount) {
  Note([&](Cuaderno& notes) {
    py::dict held;
    held["Ambiente"] = py::cast(AmbientePropio());
    for (const auto& [name, value] : properties) {
      held[StrOf(name)] = name == "Aplica" ? py::object(py::bool_(data::IsTrue(value))) : ToPython(value);
    }
    held["resultado"] = amount;
    notes.movimientos.append(held);
  });
}

void Nucleo::Impreso(const std::string& format, std::int32_t number) {
  Note([&](Cuaderno& notes) { notes.impresos.append(py::make_tuple(StrOf(format), number)); });
}

void Nucleo::Presentada(forms::Form& form) {
  Note([&](Cuaderno& notes) { notes.presentadas.append(FormObject(form)); });
}

void Nucleo::Regresada(forms::Form&, const std::string& name) {
  Note([&](Cuaderno& notes) { notes.regresadas.append(StrOf(name)); });
}

void Nucleo::LlamadaDeParent(std::string_view name, const std::vector<data::Value>& arguments) {
  Note([&](Cuaderno& notes) {
    py::list values;
    for (const auto& argument : arguments) values.append(ToPython(argument));
    notes.llamadas.append(py::make_tuple(StrOf(name), py::tuple(values)));
  });
}

bool Nucleo::Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
                   std::string& elegido) {
  bool chosen = false;
  Note([&](Cuaderno& notes) {
    notes.selectores.append(py::make_tuple(clase, StrOf(titulo), campo.Name(), campo.Index()));
    if (notes.al_mostrar_selector.is_none()) return;
    try {
      py::object given = notes.al_mostrar_selector(clase, StrOf(titulo), ControlObject(campo));
      chosen = !given.is_none();
      if (chosen) elegido = TextOf(given);
    } catch (py::error_already_set& raised) {
      throw Raised(raised);
    }
  });
  return chosen;
}

// A wait asks the same thing over and over: it is kept once, and listed each time.
void Nucleo::AnotaSentencia(std::string_view text) {
  Note([&](Cuaderno& notes) {
    if (!notes.ultima || text != notes.texto_de_la_ultima) {
      notes.texto_de_la_ultima = text;
      notes.ultima = StrOf(text);
    }
    notes.sentencias.append(notes.ultima);
  });
}

void Nucleo::AnotaMensaje(const host::MensajeVisto& mensaje) {
  Note([&](Cuaderno& notes) { notes.mensajes.append(py::cast(mensaje)); });
}

bool Nucleo::SiguienteRespuesta() {
  bool yes = false;
  Note([&](Cuaderno& notes) {
    if (!notes.respuestas.empty()) yes = py::bool_(notes.respuestas.attr("pop")(0));
  });
  return yes;
}

// A turn of a wait: the script's other threads run, and what ends the program (an interrupt from the
// keyboard, an exit) ends the wait and is raised from the script's own call.
bool Nucleo::Turn() {
  py::gil_scoped_acquire held;
  { py::gil_scoped_release others; }
  if (PyErr_CheckSignals() == 0) return false;
  py::error_already_set raised;
  KeepRaised(raised);
  return true;
}

// What the script's function raises is the script's: it comes out of its own call, once the form is gone.
void Nucleo::ShowModal(forms::Form& form) {
  Note([&](Cuaderno& notes) {
    if (notes.al_mostrar_modal.is_none()) return;
    try {
      py::object function = notes.al_mostrar_modal;
      function(FormObject(form));
    } catch (py::error_already_set& raised) {
      KeepRaised(raised);
    }
  });
}

// Likewise: what the script's function raises doesn't disturb the box.
bool Nucleo::ShowBox(forms::BoxKind kind, const std::string& text, int style) {
  Note([&](Cuaderno& notes) {
    if (notes.al_mostrar_caja.is_none()) return;
    try {
      py::object function = notes.al_mostrar_caja;
      function(std::string(ClaseDe(kind)), StrOf(text));
    } catch (py::error_already_set& raised) {
      KeepRaised(raised);
    }
  });
  return Caja(kind, text, style);
}

void Nucleo::RunRoutine(const std::string& key, forms::Form& form) {
  Note([&](Cuaderno& notes) {
    if (!notes.ganchos.contains(key)) return;
    try {
      py::object routine = notes.ganchos[py::str(key)];
      routine(FormObject(form), py::cast(AmbientePropio()));
    } catch (py::error_already_set& raised) {
      throw Raised(raised);
    }
  });
}

}  // namespace tarvik::python
