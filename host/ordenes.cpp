#include "host/ordenes.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>
#include <ostream>
#include <thread>
#include <vector>

#include "data/error.h"
#include "data/number.h"
#include "data/text.h"
#include "forms/headless_platform.h"
#include "host/documentos.h"
#include "host/lecturas.h"
#include "host/ordenes_de_documento.h"
#include "host/peticiones.h"
#include "host/tabla_de_texto.h"
#include "host/testimonio.h"
#include "service/door/entradas_salidas.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

std::string TextoDeNumero(const auto& value) { return value ? std::to_string(*value) : std::string(); }

// A command works on a base that is there: for a mistyped name it makes none.
void RequiereBase(const std::string& address) {
  constexpr std::string_view kFile = "sqlite:";
  if (!address.starts_with(kFile)) return;
  const std::string file = address.substr(kFile.size());
  std::error_code failed;
  if (file == ":memory:" || std::filesystem::exists(file, failed)) return;
  throw data::Error("No existe la base " + file);
}

}  // namespace

// The host, and the console on which its boxes appear.
class Sesion final : public Testimonio {
 public:
  Sesion(Opciones opciones, const Consola& consola) : consola_(consola) {
    RequiereBase(opciones.base);
    plataforma_.on_box = [this](forms::BoxKind kind, const std::string& text, int) {
      if (kind == forms::BoxKind::Question) return consola_.confirma && consola_.confirma(text);
      consola_.errores << text << '\n';
      return true;
    };
    plataforma_.on_unhandled = [this](forms::Form*, const std::string& text) {
      consola_.errores << text << '\n';
    };
    opciones.plataforma = &plataforma_;
    anfitrion_ = std::make_unique<Anfitrion>(opciones);
  }
  Anfitrion& Host() { return *anfitrion_; }
  [[nodiscard]] const Consola& Donde() const { return consola_; }

 protected:
  void AnotaSentencia(std::string_view) override {}
  void AnotaMensaje(const MensajeVisto&) override {}
  bool SiguienteRespuesta() override { return false; }

 private:
  const Consola& consola_;
  forms::HeadlessPlatform plataforma_;
  std::unique_ptr<Anfitrion> anfitrion_;
};

namespace {

int OrdenAMedias(Sesion& sesion) {
  std::vector<Fila> rows;
  for (const DocumentoAMedias& document : sesion.Host().AMedias()) {
    std::string missing;
    for (const std::int32_t line : document.faltan)
      missing += (missing.empty() ? "" : ",") + std::to_string(line);
    rows.push_back({std::string(NombreDe(document.tipo)), std::to_string(document.documento), document.estado,
                    std::to_string(document.renglones), missing});
  }
  if (rows.empty()) {
    sesion.Donde().salida << "Todos los documentos están enteros.\n";
    return kBien;
  }
  Escribe(sesion.Donde().salida, {"Tipo", "Documento", "Estado", "Renglones", "Faltan"}, rows);
  return kHayFaltas;
}

int OrdenCompleta(Sesion& sesion, const std::string& tipo, std::int32_t numero) {
  const int made = sesion.Host().Completa(TipoDe(tipo), numero);
  sesion.Donde().salida << (made == 0 ? "El documento estaba entero.\n"
                                      : (made == 1 ? "Se hizo " : "Se hicieron ") + Movimientos(made) +
                                            (made == 1 ? " que faltaba.\n" : " que faltaban.\n"));
  return kBien;
}

int OrdenCompletaTodos(Sesion& sesion) {
  int code = kBien;
  for (const DocumentoAMedias& document : sesion.Host().AMedias()) {
    const std::string name = std::string(NombreDe(document.tipo)) + " " + std::to_string(document.documento);
    if (document.estado != estado::kAfectado) {
      sesion.Donde().salida << name
                            << ": está pendiente con renglones ya movidos; finalícela en su pantalla.\n";
      code = kHayFaltas;
      continue;
    }
    try {
      const int made = sesion.Host().Completa(document.tipo, document.documento);
      sesion.Donde().salida << name << ": " << Movimientos(made)
                            << (made == 1 ? " que faltaba.\n" : " que faltaban.\n");
    } catch (const data::Error& error) {
      sesion.Donde().errores << name << ": " << error.what() << '\n';
      code = kHayFaltas;
    }
  }
  if (code == kBien) sesion.Donde().salida << "Todos los documentos están enteros.\n";
  return code;
}

int OrdenTenencias(Sesion& sesion) {
  std::vector<Fila> rows;
  for (const Tenencia& lease : sesion.Host().Tenencias()) {
    rows.push_back({std::string(NombreDe(lease.tipo)), std::to_string(lease.documento), lease.usuario,
                    lease.estacion, lease.desde ? lease.desde->Iso() : "", lease.viva ? "sí" : "no"});
  }
  if (rows.empty()) {
    sesion.Donde().salida << "Nadie tiene documentos abiertos.\n";
  } else {
    Escribe(sesion.Donde().salida, {"Tipo", "Documento", "Usuario", "Estación", "Desde", "Viva"}, rows);
  }
  return kBien;
}

int OrdenBitacora(Sesion& sesion, const std::string& desde) {
  std::optional<data::DateTime> since = data::DateTime::Parse(desde);
  if (!since && !desde.empty()) {
    const auto day = data::Date::Parse(desde);
    if (!day) throw data::Error("\"" + desde + "\" no es una fecha; por ejemplo, 2024-03-05");
    since = data::DateTime{*day, {}};
  }
  std::vector<Fila> rows;
  for (const Acto& act : sesion.Host().Bitacora(since)) {
    rows.push_back({act.cuando.Iso(), act.usuario, act.estacion, act.acto,
                    act.documento ? std::string(NombreDe(act.documento->tipo)) : "",
                    act.documento ? std::to_string(act.documento->numero) : "", act.texto});
  }
  Escribe(sesion.Donde().salida, {"Cuándo", "Usuario", "Estación", "Acto", "Tipo", "Documento", "Texto"},
          rows);
  return kBien;
}

int OrdenRevisar(Sesion& sesion, bool repara, bool huecos) {
  bool sound = true;
  std::vector<Fila> rows;
  for (const Observacion& finding : sesion.Host().Revisa(repara, huecos)) {
    if (!finding.reparado) sound = false;
    rows.push_back({finding.clase, finding.tipo.value_or(""), TextoDeNumero(finding.documento),
                    TextoDeNumero(finding.renglon), finding.articulo.value_or(""),
                    finding.almacen ? data::PlainNumber(*finding.almacen) : std::string(),
                    finding.reparado    ? "reparado"
                    : finding.reparable ? "reparable"
                                        : "",
                    finding.texto});
  }
  if (rows.empty()) {
    sesion.Donde().salida << "La base está sana.\n";
  } else {
    Escribe(sesion.Donde().salida,
            {"Clase", "Tipo", "Documento", "Renglón", "Artículo", "Almacén", "Reparación", "Qué se encontró"},
            rows);
  }
  return sound ? kBien : kHayFaltas;
}

int OrdenAbreSaldos(Sesion& sesion) {
  const int made = sesion.Host().AbreSaldos();
  sesion.Donde().salida << (made == 1 ? "Se asentó " : "Se asentaron ") << Movimientos(made)
                        << " de apertura.\n";
  return kBien;
}

int OrdenLibera(Sesion& sesion, const std::string& tipo, std::int32_t numero, const std::string& motivo) {
  sesion.Host().Libera(TipoDe(tipo), numero, motivo);
  sesion.Donde().salida << "El documento está libre.\n";
  return kBien;
}

// A request lives as long as whoever asked: the command stays until it is answered.
int OrdenPide(Sesion& sesion, const std::string& tipo, std::int32_t numero, const std::string& mensaje,
              int segundos) {
  Peticion request = sesion.Host().Pide(TipoDe(tipo), numero, mensaje);
  const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(segundos);
  Desenlace outcome = request.Mira();
  while (outcome.clase == Desenlace::Clase::kEspera && std::chrono::steady_clock::now() < until) {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    outcome = request.Mira();
  }
  if (outcome.clase == Desenlace::Clase::kAbre) {
    sesion.Donde().salida << LaDe(request.documento, true) << " está libre.\n";
    return kBien;
  }
  if (outcome.clase == Desenlace::Clase::kEspera) {
    outcome.texto = "Nadie contestó por " + LaDe(request.documento);
  }
  sesion.Donde().errores << outcome.texto << ".\n";
  return kError;
}

int OrdenElimina(Sesion& sesion, const std::string& tipo, std::int32_t numero, bool sin_preguntar) {
  const Tipo kind = TipoDe(tipo);
  const std::string left = sesion.Host().AvisoDeEliminacion(kind, numero);
  if (!left.empty()) {
    sesion.Donde().errores << left << '\n';
    const bool goes_on =
        sin_preguntar || (sesion.Donde().confirma && sesion.Donde().confirma("¿Eliminarlo de todos modos?"));
    if (!goes_on) return kError;
  }
  const Retenido document{kind, numero};
  if (!ContenidoDe(sesion.Host().Conexion(), document)) {
    throw data::Error("No existe " + LaDe(document));
  }
  EntradasSalidas door(sesion.Host());
  door.Ambiente = &sesion.Host().Ambiente();
  // The class takes the chosen row out of the list from which documents are deleted: here it is the only one.
  FormaMaestra& list = sesion.Host().Parent();
  list.elementos = {numero};
  list.seleccionado = 1;
  door.Parent = &list;
  if (kind == Tipo::Entrada) {
    door.EliminaEntrada(numero);
  } else {
    door.EliminaSalida(numero);
  }
  if (ContenidoDe(sesion.Host().Conexion(), document)) {
    throw data::Error(LaDe(document, true) + " no se eliminó");
  }
  sesion.Donde().salida << "Se eliminó " << LaDe(document) << ".\n";
  return kBien;
}

int OrdenCinta(Sesion& sesion, const Tramo& tramo, const std::string& ruta) {
  if (!ruta.empty()) {
    sesion.Host().ExportaCinta(tramo, ruta);
    sesion.Donde().salida << "La cinta está en " << ruta << ".\n";
    return kBien;
  }
  std::vector<Fila> rows;
  for (const Lectura& reading : LeeCinta(sesion.Host().Conexion(), tramo)) {
    rows.push_back({std::to_string(reading.id), reading.cuando.Iso(), reading.usuario, reading.estacion,
                    reading.tipo ? std::string(NombreDe(*reading.tipo)) : "",
                    TextoDeNumero(reading.documento), reading.texto, ComoQuedo(reading)});
  }
  if (rows.empty()) {
    sesion.Donde().salida << "No hay lecturas.\n";
  } else {
    Escribe(sesion.Donde().salida,
            {"Lectura", "Cuándo", "Usuario", "Estación", "Tipo", "Documento", "Código", "Cómo quedó"}, rows);
  }
  return kBien;
}

int OrdenDeLectura(Sesion& sesion, std::int64_t id,
                   const std::function<void(ServicioDeLecturas&, Lectura&)>& act) {
  const auto reading = sesion.Host().Lecturas().Entrada(id);
  if (reading == nullptr) throw data::Error("No existe la lectura " + std::to_string(id));
  act(sesion.Host().Lecturas(), *reading);
  sesion.Donde().salida << "La lectura \"" << reading->texto << "\" quedó " << ComoQuedo(*reading) << ".\n";
  return kBien;
}

}  // namespace

struct Ordenes::Interior {
  std::function<int(Sesion&)> orden;
  std::string tipo;
  std::int32_t numero = 0;
  std::string texto;
  int segundos = 60;
  bool todos = false, repara = false, huecos = false, abre_saldos = false, si = false, pendientes = false;
  std::int64_t lectura = 0;
  std::string articulo;
  double unidades = 1;

  [[nodiscard]] Tramo TramoPedido() const {
    Tramo part{.pendientes = pendientes};
    if (tipo.empty() != (numero == 0)) throw data::Error("Diga qué documento, por ejemplo: cinta entrada 12");
    if (!tipo.empty()) part.documento = Retenido{TipoDe(tipo), numero};
    return part;
  }
  // `add` makes a command, `with_document` gives it the arguments that name one.
  template <class Add, class ConDocumento>
  void AgregaLecturas(const Add& add, const ConDocumento& with_document);
  template <class Add, class ConDocumento>
  void AgregaDeDocumento(const Add& add, const ConDocumento& with_document);
};

template <class Add, class ConDocumento>
void Ordenes::Interior::AgregaLecturas(const Add& add, const ConDocumento& with_document) {
  Interior& own = *this;
  auto* tape =
      with_document(add("cinta", nullptr, "Dice qué se leyó con el lector y cómo quedó cada lectura",
                        [&own](Sesion& sesion) { return OrdenCinta(sesion, own.TramoPedido(), own.texto); }),
                    false);
  tape->add_flag("--pendientes", own.pendientes, "Sólo las que esperan o no tienen artículo");
  tape->add_option("--exporta", own.texto, "En este archivo, para una hoja de cálculo");
  const auto with_reading = [&](const char* name, const char* help,
                                std::function<void(ServicioDeLecturas&, Lectura&)> act) {
    CLI::App* order = add(name, nullptr, help, [&own, act = std::move(act)](Sesion& sesion) {
      return OrdenDeLectura(sesion, own.lectura, act);
    });
    order->add_option("lectura", own.lectura, "Su número en la cinta")->required();
    return order;
  };
  auto* bind = with_reading(
      "asigna", "Hace de un código sin artículo una segunda clave",
      [&own](ServicioDeLecturas& readings, Lectura& it) { readings.Asigna(it, own.articulo, own.unidades); });
  bind->add_option("articulo", own.articulo, "De qué artículo")->required();
  bind->add_option("--unidades", own.unidades, "Cuántas unidades son una lectura (1)");
  with_reading("descarta", "Descarta una lectura que espera o no tiene artículo",
               [&own](ServicioDeLecturas& readings, Lectura& it) { readings.Descarta(it, own.texto); })
      ->add_option("motivo", own.texto, "Por qué")
      ->required();
  with_reading("deshace", "Quita las unidades de una lectura de un documento pendiente",
               [](ServicioDeLecturas& readings, Lectura& it) { readings.Deshace(it); });
}

template <class Add, class ConDocumento>
void Ordenes::Interior::AgregaDeDocumento(const Add& add, const ConDocumento& with_document) {
  Interior& own = *this;
  using DeDocumento = int (*)(Anfitrion&, std::ostream&, const Retenido&);
  const auto of_document = [&](const char* name, const char* help, DeDocumento act) {
    with_document(add(name, nullptr, help, [&own, act](Sesion& sesion) {
      return act(sesion.Host(), sesion.Donde().salida, {TipoDe(own.tipo), own.numero});
    }));
  };
  of_document("alcanza", "Dice qué le falta a una salida pendiente para afectarla", OrdenAlcanza);
  of_document("avisos", "Dice qué parece un descuido en una entrada pendiente", OrdenAvisos);
  of_document("imprime", "Imprime de nuevo un documento; dice dónde quedó la página", OrdenImprime);
}

Ordenes::Ordenes(CLI::App& programa) : interior_(std::make_unique<Interior>()) {
  Interior& own = *interior_;
  programa.require_subcommand(0, 1);
  const auto add = [&](const char* name, const char* alias, const char* help,
                       std::function<int(Sesion&)> act) {
    CLI::App* order = programa.add_subcommand(name, help);
    if (alias != nullptr) order->alias(alias);
    order->fallthrough();
    order->callback([&own, act = std::move(act)] { own.orden = act; });
    return order;
  };
  const auto with_document = [&](CLI::App* order, bool required = true) {
    auto* kind = order->add_option("tipo", own.tipo, "entrada o salida");
    auto* number = order->add_option("numero", own.numero, "Número del documento");
    kind->required(required);
    number->required(required);
    return order;
  };
  add("a_medias", "a-medias", "Dice qué documentos quedaron afectados a medias",
      [](Sesion& sesion) { return OrdenAMedias(sesion); });
  auto* complete = with_document(
      add("completa", nullptr, "Afecta los renglones que le faltan a un documento afectado a medias",
          [&own](Sesion& sesion) {
            if (own.todos) return OrdenCompletaTodos(sesion);
            if (own.tipo.empty() || own.numero == 0)
              throw data::Error("Diga qué documento, por ejemplo: completa entrada 12; o --todos");
            return OrdenCompleta(sesion, own.tipo, own.numero);
          }),
      false);
  complete->add_flag("--todos", own.todos, "Todos los que quedaron a medias");
  auto* review = add("revisa", nullptr, "Prueba la base entera: existencias, documentos, números, tenencias",
                     [&own](Sesion& sesion) {
                       if (own.abre_saldos) return OrdenAbreSaldos(sesion);
                       return OrdenRevisar(sesion, own.repara, own.huecos);
                     });
  review->add_flag("--repara", own.repara, "Repara lo que se puede reparar sin riesgo y lo anota");
  review->add_flag("--huecos", own.huecos, "Dice también los números que faltan en las series");
  review->add_flag("--abre-saldos", own.abre_saldos,
                   "Asienta como apertura la existencia que no viene del libro de movimientos");
  add("tenencias", nullptr, "Dice quién tiene abierto cada documento",
      [](Sesion& sesion) { return OrdenTenencias(sesion); });
  with_document(add("libera", nullptr, "Libera un documento que otro tiene abierto", [&own](Sesion& sesion) {
    return OrdenLibera(sesion, own.tipo, own.numero, own.texto);
  }))->add_option("--motivo", own.texto, "Por qué");
  auto* ask = with_document(add(
      "pide", nullptr, "Pide un documento a quien lo tiene abierto y espera la respuesta",
      [&own](Sesion& sesion) { return OrdenPide(sesion, own.tipo, own.numero, own.texto, own.segundos); }));
  ask->add_option("--mensaje", own.texto, "Qué se le dice");
  ask->add_option("--espera", own.segundos, "Cuántos segundos se espera la respuesta (60)")
      ->check(CLI::Range(0, 86400));
  with_document(add("elimina", nullptr, "Elimina un documento; dice antes qué dejaría detrás",
                    [&own](Sesion& sesion) { return OrdenElimina(sesion, own.tipo, own.numero, own.si); }))
      ->add_flag("--si", own.si, "No pregunta");
  add("bitacora", nullptr, "Dice qué se hizo por derecho o sobre una negativa", [&own](Sesion& sesion) {
    return OrdenBitacora(sesion, own.texto);
  })->add_option("--desde", own.texto, "Desde cuándo: 2024-03-05 o 2024-03-05T14:00:00");
  own.AgregaLecturas(add, with_document);
  own.AgregaDeDocumento(add, with_document);
}

Ordenes::~Ordenes() = default;

bool Ordenes::Pedida() const { return interior_->orden != nullptr; }

int Ordenes::Corre(Opciones opciones, const Consola& consola) {
  try {
    Consola answered = consola;
    if (interior_->si) answered.confirma = [](const std::string&) { return true; };
    Sesion sesion(std::move(opciones), answered);
    return interior_->orden(sesion);
  } catch (const std::exception& error) {
    consola.errores << error.what() << '\n';
    return kError;
  }
}

}  // namespace tarvik::host
