// Anfitrion: the stand-alone host. It opens (and at first use makes) a base, and implements every
// service of service/contract/host_services.h for real, so that a shop can run on it. It has no window: what
// a person must choose goes through the Platform and the Selector that it is given.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/engine.h"
#include "host/a_medias.h"
#include "host/alcance.h"
#include "host/bitacora.h"
#include "host/cierres.h"
#include "host/cinta.h"
#include "host/documentos.h"
#include "host/liberacion.h"
#include "host/revision.h"
#include "host/testigo.h"
#include "service/contract/host_services.h"

namespace tarvik::host {

// Who shows a picker's list to a person. Gives true and the chosen key; false if nothing was chosen.
// `clase` is "BuscadorCatalogo", "AuxiliarNumerico" or "ListaArticulos"; the title may be empty.
class Selector {
 public:
  virtual ~Selector() = default;
  virtual bool Elige(const std::string& clase, const std::string& titulo, forms::TextBox& campo,
                     std::string& elegido) = 0;
};

// Who takes a finished page: a printer, a preview. `page` is the path of an HTML file.
class Impresora {
 public:
  virtual ~Impresora() = default;
  virtual void Imprime(const std::string& page, const std::string& format, std::int32_t number) = 0;
};

struct Opciones {
  std::string base;  // "sqlite:almacen.db", "sqlite::memory:", "postgresql://..."
  std::string usuario;
  std::string estacion;
  std::string ruta;                       // Ambiente.RutaBase; made if missing
  bool demo = false;                      // fills an empty base with the demonstration catalogue
  forms::Platform* plataforma = nullptr;  // required; outlives the host
  Testigo* testigo = nullptr;             // optional; these three outlive the host too
  Selector* selector = nullptr;           // without one, a picker is closed with nothing chosen
  Impresora* impresora = nullptr;         // without one, the page file is all
};

// The working context, with everything writable.
class AmbienteLocal : public service::Ambiente {
 public:
  // Whose context this is: the services, for a routine, which is handed no more than this and a screen.
  virtual service::Host& Anfitrion() = 0;
  // A setting by name, kept in the base at once. Throws data::Error if the base refuses.
  virtual data::Value Parametro(const std::string& name) = 0;  // null if it was never set
  virtual void Parametro(const std::string& name, const data::Value& value) = 0;
  virtual std::vector<std::string> NombresDeParametros() = 0;

  // The value of a property, by its name; null for another name. Not a call of the module's: no witness.
  [[nodiscard]] virtual data::Value Lee(const std::string& property) const = 0;
  using Ambiente::ValorDeGancho;
  [[nodiscard]] virtual data::Value ValorDeGancho() const = 0;
  virtual void Pon(const std::string& property,
                   const data::Value& value) = 0;  // "Usuario", "ValorFechaA", ...
};

// The stand-in for the host's list form. `lvListView` holds document numbers.
class FormaMaestra : public service::LateBound {
 public:
  std::string catalogo_activo;
  std::vector<data::Value> elementos;  // lvListView.ListItems
  int seleccionado = 0;                // lvListView.SelectedItem.Index, from 1; 0: none
  // Told of each call, SetFocus included, after the witness; what it throws is the call's failure.
  // For the window that shows the lists; without one a call does nothing.
  std::function<void(std::string_view name, const std::vector<data::Value>& arguments)> al_llamar;

  explicit FormaMaestra(Testigo& testigo) : testigo_(testigo) {}
  data::Value Get(std::string_view name) override;
  std::shared_ptr<service::LateBound> Object(std::string_view name) override;
  void Call(std::string_view name, const std::vector<data::Value>& arguments) override;

 private:
  Testigo& testigo_;
};

class Peticion;
class ServicioDeLecturas;

class Anfitrion : public service::Host {
 public:
  using Rutina = std::function<void(forms::Form&, AmbienteLocal&)>;

  // Throws data::Error with a clear text, and nothing written, if the base cannot be opened, is no
  // base of this program or is of a newer version, or if the folder cannot be made.
  explicit Anfitrion(const Opciones& opciones);
  ~Anfitrion() override;

  AmbienteLocal& Ambiente();
  FormaMaestra& Parent();
  data::EngineConnection& Conexion();  // the host's own, unobserved
  data::Base& Base();

  // Documents that were posted in part, and their completion: see a_medias.h.
  std::vector<DocumentoAMedias> AMedias();
  int Completa(Tipo tipo, std::int32_t documento);
  // Finishes that broke off, with what did not run of them: see cierres.h.
  std::vector<CierreInterrumpido> CierresInterrumpidos();

  // Proves the base, and mends what can be mended without a doubt if told to: see revision.h.
  std::vector<Observacion> Revisa(bool repara = false, bool huecos = false);
  // The stock that does not come from the ledger becomes opening movements there; gives how many.
  int AbreSaldos();
  // The quick look at a base that was not closed cleanly.
  std::vector<Observacion> RevisaRapido();

  // Sets the routine of a catalogue key, in place of the one before; an empty one removes it.
  void Gancho(const std::string& key, Rutina routine);
  [[nodiscard]] bool TieneGancho(const std::string& key) const;

  // ---- who holds what. All throw data::Error, in Spanish and with nothing changed, for a refusal ----
  // The documents open for change, from whatever door; two screens on one are two.
  std::vector<Tenencia> Tenencias();
  // Opens for change, as the public class does. A document whose holders are all dead is released first,
  // which is told and recorded. Gives the screen; nothing if the class showed none.
  std::shared_ptr<forms::Form> Abre(Tipo tipo, std::int32_t numero);
  // Releases it by right, and records that; a free document is left alone.
  void Libera(Tipo tipo, std::int32_t numero, const std::string& motivo = "");
  // Asks the holder for a document; and the requests to this program (host/peticiones.h).
  Peticion Pide(Tipo tipo, std::int32_t numero, const std::string& mensaje = "");
  std::vector<Peticion> Peticiones();
  // What was done by right or over a refusal, oldest first.
  std::vector<Acto> Bitacora(const std::optional<data::DateTime>& desde = {});

  // ---- readings (host/lecturas.h) ----
  // What a scanner sends, for this document screen or the one in front; its entry of the tape, kept up to
  // date.
  std::shared_ptr<host::Lectura> Lectura(const std::string& texto, forms::Form* forma = nullptr);
  // All readings that the base has, oldest first.
  std::vector<std::shared_ptr<host::Lectura>> Cinta();
  // The tape, or a document's, as a file for a spreadsheet. Throws data::Error if it can't be written.
  void ExportaCinta(const Tramo& tramo, const std::string& ruta);
  ServicioDeLecturas& Lecturas();

  // ---- before and after posting. All throw data::Error, in Spanish and with nothing changed, for a refusal
  // What the document of a screen would lack, and what looks like a slip in it (host/alcance.h).
  std::vector<Faltante> Alcanza(forms::Form& forma);
  std::vector<AvisoDeEntrada> Avisos(forms::Form& forma);
  // The same of a document as it is stored.
  std::vector<Faltante> Alcanza(const Retenido& documento);
  std::vector<AvisoDeEntrada> Avisos(const Retenido& documento);
  // The page of a stored document once more, by the format that the base has for its kind, handed to the
  // printer as the screens do; gives the page's path.
  std::string Imprime(Tipo tipo, std::int32_t numero);

  // To be called now and then by an idle program: tries again to release what closed screens could not,
  // without waiting.
  void SueltaPendientes();
  // A warning while leases can't be written: others can't see what is open here. Empty as long as they
  // can.
  [[nodiscard]] std::string AvisoDeTenencias() const;
  // What an operator should know before this document is deleted; empty if nothing.
  std::string AvisoDeEliminacion(Tipo tipo, std::int32_t numero);

  forms::Platform& Plataforma() override;
  service::Funciones& Funciones() override;
  service::ConsultasCatalogo& ConsultasCatalogo() override;
  std::unique_ptr<service::MovimientoInventario> NuevoMovimiento() override;
  std::unique_ptr<service::BuscadorCatalogo> NuevoBuscador() override;
  std::unique_ptr<service::AuxiliarNumerico> NuevoAuxiliar() override;
  std::unique_ptr<service::ListaArticulos> NuevaLista() override;

 private:
  struct Interior;
  std::unique_ptr<Interior> interior_;
};

}  // namespace tarvik::host
