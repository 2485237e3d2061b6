// What a person does with an entry of the tape: binds the code, drops it, takes its units back, feeds it
// again.
#include <algorithm>
#include <cmath>
#include <utility>

#include "data/error.h"
#include "data/number.h"
#include "data/text.h"
#include "goods_in/columnas.h"
#include "goods_out/columnas.h"
#include "host/lecturas.h"
#include "host/tenencia_viva.h"
#include "wizard/document_wizard.h"

namespace tarvik::host {
namespace {

// Quantities are added up as doubles: what is left of them when nothing is left.
constexpr double kNada = 1e-9;

void ExigeEstado(const Lectura& reading, std::initializer_list<std::string_view> states,
                 const std::string& act) {
  if (std::find(states.begin(), states.end(), reading.estado) != states.end()) return;
  throw data::Error("La lectura \"" + reading.texto + "\" quedó " + ComoQuedo(reading) + ": no se puede " +
                    act);
}

bool Hay(data::EngineConnection& connection, const std::string& text, const std::string& key) {
  return !connection.Run(text, {key}).rows.empty();
}

// The grid row of a line; 0 if it is not there.
int FilaDe(const DocumentWizard& screen, Tipo tipo, std::int32_t renglon) {
  const int column = tipo == Tipo::Entrada ? +columna_entrada::IdEntrada : +columna_salida::IdSalida;
  const std::string wanted = std::to_string(renglon);
  for (int row = 1; row < screen.fg2.Rows(); ++row) {
    if (screen.fg2.TextMatrix(row, kColumnaDelArticulo).empty()) return 0;
    if (screen.fg2.TextMatrix(row, column) == wanted) return row;
  }
  return 0;
}

[[noreturn]] void SinUnidades(const Lectura& reading) {
  throw data::Error("El renglón de la lectura \"" + reading.texto + "\" ya no tiene esas unidades");
}

}  // namespace

// Own entries are shared with whoever holds them; another program's becomes one of this program.
ServicioDeLecturas::Propio ServicioDeLecturas::Propia(const Lectura& reading) {
  for (const Propio& own : propias_) {
    if (own.lectura.get() == &reading || (reading.id != 0 && own.lectura->id == reading.id)) return own;
  }
  propias_.push_back({std::make_shared<Lectura>(reading), {}});
  por_id_[reading.id] = propias_.back().lectura;
  return propias_.back();
}

bool ServicioDeLecturas::DeOtroVivo(const Lectura& entry) {
  return entry.vida != 0 && entry.vida != custodia_.VidaDeAhora() && connection_.Lives(entry.vida);
}

void ServicioDeLecturas::ExigeQuieta(const Entrada_& entry) const {
  if (tecleada_ != nullptr && tecleada_->lectura == entry)
    throw data::Error("La lectura se está capturando en este momento");
  for (const EnRenglon& row : en_renglon_) {
    if (row.lectura == entry)
      throw data::Error("Su artículo está en el renglón de captura: termínelo o vacíelo");
  }
}

void ServicioDeLecturas::ExigeCalma() const {
  if (platform_.Acting() || platform_.Boxes() > 0 || en_rutina_())
    throw data::Error("Hay una operación en curso. Inténtelo cuando termine");
}

void ServicioDeLecturas::Asigna(Lectura& reading, const std::string& articulo, double unidades) {
  PonAlDia(reading);
  ExigeEstado(reading, {lectura::kSinArticulo}, "asignar");
  if (!(unidades > 0) || !std::isfinite(unidades))
    throw data::Error("Las unidades de \"" + reading.texto + "\" deben ser más de 0");
  if (!Hay(connection_, "SELECT 1 FROM prods WHERE articulo = ?", articulo))
    throw data::Error("No existe el artículo \"" + articulo + "\"");
  if (Hay(connection_, "SELECT 1 FROM prods WHERE articulo = ?", reading.texto))
    throw data::Error("\"" + reading.texto + "\" ya es la clave de un artículo");
  {
    data::Transaction whole(connection_);
    const auto bound = connection_.Run("SELECT articulo FROM clavesadd WHERE clave = ?", {reading.texto});
    if (bound.rows.empty()) {
      connection_.Run("INSERT INTO clavesadd (clave, articulo, cantidad) VALUES (?, ?, ?)",
                      {reading.texto, articulo, unidades});
    } else if (data::ToText(bound.rows[0][0]) != articulo) {
      throw data::Error("\"" + reading.texto + "\" ya es del artículo \"" + data::ToText(bound.rows[0][0]) +
                        "\"");
    }
    whole.Commit();
  }
  const auto [entry, screen] = Propia(reading);
  Cambia(*entry, lectura::kEspera);
  // A program that still works feeds what it has read itself.
  if (!DeOtroVivo(*entry)) AlFinal(entry, screen, false);
  Atiende();
  if (entry.get() != &reading) reading = *entry;
}

void ServicioDeLecturas::Descarta(Lectura& reading, const std::string& motivo) {
  PonAlDia(reading);
  ExigeEstado(reading, {lectura::kEspera, lectura::kSinArticulo, lectura::kRechazada}, "descartar");
  if (data::Trim(motivo).empty()) throw data::Error("Diga por qué se descarta la lectura");
  const Entrada_ entry = Propia(reading).lectura;
  ExigeQuieta(entry);
  std::erase_if(cola_, [&](const EnCola& waiting) { return waiting.lectura == entry; });
  Cambia(*entry, lectura::kDescartada, data::Trim(motivo));
  if (entry.get() != &reading) reading = *entry;
}

void ServicioDeLecturas::Alimenta(Lectura& reading, forms::Form* pantalla) {
  PonAlDia(reading);
  ExigeEstado(reading, {lectura::kEspera, lectura::kRechazada, lectura::kSinArticulo}, "capturar");
  const Propio own = Propia(reading);
  const Entrada_& entry = own.lectura;
  ExigeQuieta(entry);
  if (DeOtroVivo(*entry)) {
    throw data::Error("La lectura es del programa de " + entry->usuario + " en la estación " +
                      entry->estacion + ", que sigue abierto: atiéndala ahí");
  }
  auto screen = pantalla != nullptr ? std::dynamic_pointer_cast<DocumentWizard>(pantalla->shared_from_this())
                                    : Abierta(*entry);
  if (pantalla == nullptr && screen == nullptr) {
    screen = std::dynamic_pointer_cast<DocumentWizard>(own.pantalla.lock());
    if (screen == nullptr || !screen->Open()) screen = AlFrente();
  }
  if (screen == nullptr) throw data::Error("No hay una pantalla de entradas o salidas que la reciba");
  std::erase_if(cola_, [&](const EnCola& waiting) { return waiting.lectura == entry; });
  entry->vida = 0;  // from here on it is this program's
  Cambia(*entry, lectura::kEspera);
  AlFinal(entry, screen, false);
  Atiende();
  if (entry.get() != &reading) reading = *entry;
}

void ServicioDeLecturas::Deshace(Lectura& reading) {
  PonAlDia(reading);
  ExigeEstado(reading, {lectura::kRenglon}, "deshacer");
  if (!reading.tipo || !reading.documento || !reading.renglon || !reading.cantidad || !reading.motivo.empty())
    throw data::Error("La lectura \"" + reading.texto +
                      "\" hizo varios renglones: corríjalos en la pantalla");
  const auto stored = ContenidoDe(connection_, {*reading.tipo, *reading.documento});
  const std::string name = LaDe({*reading.tipo, *reading.documento}, true);
  if (!stored) throw data::Error(name + " ya no existe");
  if (stored->estado != estado::kPendiente)
    throw data::Error(name + " ya está finalizada: sus lecturas no se deshacen");
  if (stored->movimientos > 0)
    throw data::Error(name + " tiene renglones que ya se movieron: sus lecturas no se deshacen");
  const Entrada_ entry = Propia(reading).lectura;
  if (const auto screen = Abierta(*entry)) {
    QuitaEnPantalla(*entry, *screen);
  } else {
    QuitaEnBase(*entry);
  }
  Avisa(*entry);
  if (entry.get() != &reading) reading = *entry;
}

// As a hand would: the line's row is removed, or its quantity typed anew.
void ServicioDeLecturas::QuitaEnPantalla(Lectura& reading, DocumentWizard& screen) {
  ExigeCalma();
  if (!Libre(screen)) throw data::Error("Hay otra ventana abierta sobre el documento. Ciérrela antes");
  if (screen.txtEdit.Visible()) throw data::Error("Termine antes la celda que está corrigiendo");
  const int row = FilaDe(screen, *reading.tipo, *reading.renglon);
  if (row == 0) throw data::Error("El renglón de la lectura \"" + reading.texto + "\" ya no está");
  const double left = data::ParseNumber(screen.fg2.TextMatrix(row, columna_entrada::Cantidad)).value_or(0) -
                      *reading.cantidad;
  if (left < -kNada) SinUnidades(reading);
  const auto alive = screen.shared_from_this();
  forms::Control* before = screen.ActiveControl();
  deshaciendo_ = &reading;
  if (left <= kNada) {
    screen.ClickCell(screen.fg2, row, kColumnaDelArticulo);
    screen.Press(*forms::KeyNamed("Delete"));
  } else {
    screen.ClickCell(screen.fg2, row, columna_entrada::Cantidad);
    for (const char character : data::PlainNumber(left)) {
      screen.Press(forms::KeyFor(static_cast<char32_t>(character)));
    }
    screen.Press(*forms::KeyNamed("Enter"));
  }
  deshaciendo_ = nullptr;
  if (screen.Open() && before != nullptr && before != &screen.fg2) screen.Enter(*before);
  if (reading.estado == lectura::kDeshecha) return;
  throw data::Error("No se pudo corregir el renglón de la lectura \"" + reading.texto + "\"");
}

void ServicioDeLecturas::QuitaEnBase(Lectura& reading) {
  const Tipo kind = *reading.tipo;
  const Tablas& tables = TablasDe(kind);
  const std::string its = " WHERE " + tables.renglon + " = ? AND " + tables.clave + " = ?";
  const std::string name = LaDe({kind, *reading.documento}, true);
  data::Transaction whole(connection_);
  // Nobody opens or posts it until this is done.
  const auto header = connection_.Run("UPDATE " + tables.encabezado + " SET estado = estado WHERE " +
                                          tables.clave + " = ? AND estado = 'PE' RETURNING " + tables.clave,
                                      {*reading.documento});
  if (header.rows.empty()) throw data::Error(name + " ya está finalizada: sus lecturas no se deshacen");
  if (const auto holder = TenenciaViva(connection_, kind, *reading.documento))
    throw data::Error(name + " la tiene abierta " + *holder);
  const auto found = connection_.Run("SELECT cantidad FROM " + tables.partidas + its,
                                     {*reading.renglon, *reading.documento});
  if (found.rows.empty()) throw data::Error("El renglón de la lectura \"" + reading.texto + "\" ya no está");
  const double left = data::ToNumber(found.rows[0][0]) - *reading.cantidad;
  if (left < -kNada) SinUnidades(reading);
  if (left <= kNada) {
    connection_.Run("DELETE FROM " + tables.partidas + its, {*reading.renglon, *reading.documento});
  } else {
    connection_.Run("UPDATE " + tables.partidas + " SET cantidad = ?" + its,
                    {left, *reading.renglon, *reading.documento});
  }
  Lectura after = reading;
  after.estado = lectura::kDeshecha;
  GuardaLectura(connection_, after);
  connection_.Notify();
  whole.Commit();
  reading = after;
}

}  // namespace tarvik::host
