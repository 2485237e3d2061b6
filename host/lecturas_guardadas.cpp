// The entries of this program and their rows: written as they change, and later where the base refuses.
#include <algorithm>
#include <exception>
#include <utility>

#include "data/error.h"
#include "host/lecturas.h"

namespace tarvik::host {

void ServicioDeLecturas::Cambia(Lectura& reading, std::string_view state, const std::string& reason) {
  reading.estado = state;
  reading.motivo = reason;
  Guarda(reading);
  Avisa(reading);
}

void ServicioDeLecturas::Avisa(const Lectura& reading) const {
  if (al_cambiar) al_cambiar(reading);
}

// Inside a routine's transaction the row would depend on it: it waits for the end of the act.
void ServicioDeLecturas::Guarda(Lectura& reading) noexcept {
  try {
    if (!connection_.InTransaction()) {
      const bool is_new = reading.id == 0;
      if (reading.vida == 0) reading.vida = custodia_.Vida();
      GuardaLectura(connection_, reading);
      if (is_new) {
        const auto own = std::find_if(propias_.rbegin(), propias_.rend(),
                                      [&](const Propio& entry) { return entry.lectura.get() == &reading; });
        if (own != propias_.rend()) por_id_[reading.id] = own->lectura;
      }
      std::erase(sin_guardar_, &reading);
      sin_escribir_.clear();
      return;
    }
  } catch (const data::Error& error) {
    if (!error.Passing()) sin_escribir_ = error.what();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): likewise tried again
  }
  if (std::find(sin_guardar_.begin(), sin_guardar_.end(), &reading) == sin_guardar_.end())
    sin_guardar_.push_back(&reading);
}

std::vector<std::shared_ptr<Lectura>> ServicioDeLecturas::Cinta() {
  Atiende();
  std::vector<Entrada_> tape;
  for (Lectura& row : LeeCinta(connection_)) {
    const auto own = por_id_.find(row.id);
    tape.push_back(own != por_id_.end() ? own->second : std::make_shared<Lectura>(std::move(row)));
  }
  for (const Propio& own : propias_) {
    if (own.lectura->id == 0) tape.push_back(own.lectura);
  }
  return tape;
}

std::vector<std::shared_ptr<Lectura>> ServicioDeLecturas::DePantalla(const forms::Form& pantalla) const {
  const auto document = DocumentoDe(pantalla);
  std::vector<Entrada_> its;
  for (const Propio& own : propias_) {
    const Lectura& reading = *own.lectura;
    const bool by_number =
        document && reading.tipo == document->tipo && reading.documento == document->numero;
    if (by_number || own.pantalla.lock().get() == &pantalla) its.push_back(own.lectura);
  }
  return its;
}

std::shared_ptr<Lectura> ServicioDeLecturas::Entrada(std::int64_t id) {
  if (const auto own = por_id_.find(id); own != por_id_.end()) return own->second;
  auto row = LeeLectura(connection_, id);
  return row ? std::make_shared<Lectura>(std::move(*row)) : nullptr;
}

bool ServicioDeLecturas::EnCurso(const Lectura& entry) const {
  const auto is_it = [&](const auto& held) { return held.lectura.get() == &entry; };
  return std::find(sin_guardar_.begin(), sin_guardar_.end(), &entry) != sin_guardar_.end() ||
         std::any_of(cola_.begin(), cola_.end(), is_it) ||
         std::any_of(en_renglon_.begin(), en_renglon_.end(), is_it) ||
         (tecleada_ != nullptr && tecleada_->lectura.get() == &entry);
}

void ServicioDeLecturas::PonAlDia(Lectura& reading) {
  Atiende();
  if (reading.id == 0) return;
  const auto own = por_id_.find(reading.id);
  if (own == por_id_.end()) {
    if (auto row = LeeLectura(connection_, reading.id)) reading = std::move(*row);
    return;
  }
  // Somebody else may have dropped it or taken it back; what is under way here is known here alone.
  Lectura& entry = *own->second;
  if (!EnCurso(entry)) {
    if (auto row = LeeLectura(connection_, entry.id)) entry = std::move(*row);
  }
  if (&entry != &reading) reading = entry;
}

}  // namespace tarvik::host
