// Readings: what a scanner sends is not typing. A reading goes to the tape (host/cinta.h) at once, whatever
// has the focus, and from there into a document's screen as an operator's acts, when the screen can take
// them: it answers no box, touches no field but the article's, and waits in order while a box, a modal form
// or a routine runs, while a cell is being edited, and, with the reader off, while a line is unfinished. How
// keys are recognised as a reading is the window's.
//
//   auto reading = host.Lee("7501");          // a line, with the reader on
//   if (reading->estado == lectura::kSinArticulo) host.Lecturas().Asigna(*reading, "A-100", 12);
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "forms/platform.h"
#include "host/cinta.h"
#include "host/tenencias.h"

namespace tarvik {
class DocumentWizard;
}

namespace tarvik::host {

class ServicioDeLecturas {
 public:
  // All outlive this. `en_rutina`: whether a routine of a hook runs.
  ServicioDeLecturas(data::EngineConnection& connection, forms::Platform& platform, Custodia& custodia,
                     std::function<bool()> en_rutina);

  // A reading for this document screen, or for the one in front; fed at once where that can be. Gives its
  // entry, which lives on: its members are brought up to date here. Never fails for the base: what can't be
  // written is kept, and written later. Throws data::Error, with nothing kept, for a form that takes no
  // readings.
  std::shared_ptr<Lectura> Recibe(const std::string& texto, forms::Form* pantalla = nullptr);
  // All that were ever read on this base, oldest first. Those of this program are the entries that Recibe
  // gave. Throws data::Error if the base can't be asked.
  std::vector<std::shared_ptr<Lectura>> Cinta();
  // Those of this program that were read for that screen, or for its document, as they came.
  [[nodiscard]] std::vector<std::shared_ptr<Lectura>> DePantalla(const forms::Form& pantalla) const;
  // The entry of a row: this program's own, if it is one; nullptr for none. Throws data::Error if the base
  // can't be asked.
  std::shared_ptr<Lectura> Entrada(std::int64_t id);
  // Brings an entry of another program, or of another run, up to date with its row. Throws data::Error if the
  // base can't be asked.
  void PonAlDia(Lectura& reading);

  // ---- what a person does with an entry. All throw data::Error, in Spanish and with nothing changed, for a
  // refusal ----
  //
  // Makes the unknown code a second key of the article, of so many units, and feeds the reading again; with
  // its screen closed it waits.
  void Asigna(Lectura& reading, const std::string& articulo, double unidades = 1);
  // Drops one that waits, that nobody knows, or that was refused. The reason is kept, and is required.
  void Descarta(Lectura& reading, const std::string& motivo);
  // Takes its units back from its line, in a pending document: by the screen's own acts where it is open
  // here, else in the base. The line goes with the last of them.
  void Deshace(Lectura& reading);
  // Feeds one that waits since another run, or whose screen is gone: into its document, if that is open here,
  // else into this screen or the one in front.
  void Alimenta(Lectura& reading, forms::Form* pantalla = nullptr);

  // Feeds what waits, in order, as far as it can be fed now; writes what could not be written before.
  void Atiende() noexcept;
  // Whether readings wait for a screen that can take them.
  [[nodiscard]] bool Esperan() const { return !cola_.empty(); }
  // Why the tape can't be written though the base is there; empty where it can.
  [[nodiscard]] const std::string& SinEscribir() const { return sin_escribir_; }
  // Told when an entry of this program is new or has changed. For a window; it may be empty, and doesn't
  // throw.
  std::function<void(const Lectura&)> al_cambiar;

  // ---- told by the host ----
  void EmpiezaActo(forms::Form& screen) noexcept { en_acto_ = &screen; }
  void TerminaActo() noexcept;
  void Caja(const std::string& text) noexcept;
  void SeFue(forms::Form& screen) noexcept;
  // Sends the statement of a line. Where it is a reading's, line and tape are written together or not at all,
  // so that a program that dies in between neither loses a reading nor has it twice.
  data::Rows EscribeRenglon(const SentenciaDeDocumento& sentencia, const std::function<data::Rows()>& envia);

 private:
  using Entrada_ = std::shared_ptr<Lectura>;
  struct Propio {
    Entrada_ lectura;
    std::weak_ptr<forms::Form> pantalla;
  };
  struct EnCola {
    Entrada_ lectura;
    std::weak_ptr<forms::Form> pantalla;
    bool de_la_que_venga = false;  // no document screen was there: the first that comes takes it
  };
  // One whose article stands in an entry row, with the reader off.
  struct EnRenglon {
    Entrada_ lectura;
    std::weak_ptr<forms::Form> pantalla;
    std::string articulo;
  };
  // One that is being typed.
  struct Tecleada {
    Entrada_ lectura;
    DocumentWizard& pantalla;
    bool dejada = false;       // the article field was left by Enter
    bool desconocida = false;  // and nobody knows what stood there
    std::string caja = {};     // the last box that came up
  };

  [[nodiscard]] std::shared_ptr<DocumentWizard> PantallaDe(const EnCola& waiting) const;
  [[nodiscard]] std::shared_ptr<DocumentWizard> Abierta(const Lectura& reading) const;
  [[nodiscard]] std::shared_ptr<DocumentWizard> AlFrente() const;
  [[nodiscard]] bool Libre(const DocumentWizard& screen) const;
  [[nodiscard]] bool PuedeTomarla(DocumentWizard& screen) const;
  bool AtiendeUna();
  void Teclea(const EnCola& waiting, DocumentWizard& screen);
  void Escribe(Tecleada& typed);
  void Resuelve(Tecleada& typed, const std::string& quantity_before);
  void RevisaRenglones();
  [[nodiscard]] bool Conocida(DocumentWizard& screen);
  Lectura* DeQuienEs(const SentenciaDeDocumento& sentencia);

  data::Rows Juntos(Lectura& reading, const Lectura& after, const std::function<data::Rows()>& envia);
  void QuitaEnPantalla(Lectura& reading, DocumentWizard& screen);
  void QuitaEnBase(Lectura& reading);
  void Cambia(Lectura& reading, std::string_view state, const std::string& reason = "");
  void Avisa(const Lectura& reading) const;
  void Guarda(Lectura& reading) noexcept;
  void AlFinal(const Entrada_& reading, std::weak_ptr<forms::Form> screen, bool any);
  Propio Propia(const Lectura& reading);
  void ExigeCalma() const;
  // Whether it waits here, is being typed, stands in a row, or is not written yet.
  [[nodiscard]] bool EnCurso(const Lectura& entry) const;
  // Whether the program that read it is another one, and still works.
  [[nodiscard]] bool DeOtroVivo(const Lectura& entry);
  void ExigeQuieta(const Entrada_& entry) const;

  data::EngineConnection& connection_;
  forms::Platform& platform_;
  Custodia& custodia_;
  std::function<bool()> en_rutina_;
  std::vector<Propio> propias_;  // as they came
  std::map<std::int64_t, Entrada_> por_id_;
  std::deque<EnCola> cola_;
  std::vector<EnRenglon> en_renglon_;
  Tecleada* tecleada_ = nullptr;
  Lectura* deshaciendo_ = nullptr;        // whose line an act of ours corrects or removes
  const forms::Form* en_acto_ = nullptr;  // compared only
  bool atendiendo_ = false;
  std::vector<Lectura*> sin_guardar_;
  std::string sin_escribir_;
};

}  // namespace tarvik::host
