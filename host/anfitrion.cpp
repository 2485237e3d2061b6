// Composition of the stand-alone host: who is made, in which order, and who is given to whom.
#include "host/anfitrion.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "data/error.h"
#include "data/schema.h"
#include "host/ambiente_local.h"
#include "host/archivos_de_la_base.h"
#include "host/catalogo_local.h"
#include "host/cierres.h"
#include "host/conexion_observada.h"
#include "host/demo.h"
#include "host/eliminaciones.h"
#include "host/funciones_locales.h"
#include "host/lecturas.h"
#include "host/movimientos.h"
#include "host/peticiones.h"
#include "host/preparacion.h"
#include "host/procedimientos.h"
#include "host/selectores.h"
#include "host/tenencias.h"
#include "service/door/entradas_salidas.h"

namespace tarvik::host {
namespace {

namespace fs = std::filesystem;

class SelectorCerrado : public Selector {
 public:
  bool Elige(const std::string&, const std::string&, forms::TextBox&, std::string&) override { return false; }
};

class SinImpresora : public Impresora {
 public:
  void Imprime(const std::string&, const std::string&, std::int32_t) override {}
};

// Makes a folder, and removes it again unless it is told to keep it: a base that does not open
// leaves nothing behind.
class CarpetaNueva {
 public:
  explicit CarpetaNueva(const std::string& folder) {
    const fs::path path = fs::absolute(fs::path(forms::NativePath(folder))).lexically_normal();
    fs::path made;
    std::error_code reason;
    for (const auto& part : path) {
      made /= part;
      if (fs::is_directory(made, reason)) continue;
      reason = forms::MakeFolders(made.string());
      if (reason) {
        const bool file = reason == std::errc::not_a_directory;
        const std::string text = file ? "existe un archivo con ese nombre" : reason.message();
        Quita();
        throw data::Error("No se puede crear la carpeta " + folder + ": " + text);
      }
      if (first_.empty()) first_ = made;
      last_ = made;
    }
  }
  ~CarpetaNueva() { Quita(); }
  CarpetaNueva(const CarpetaNueva&) = delete;
  CarpetaNueva& operator=(const CarpetaNueva&) = delete;

  void Conserva() { first_.clear(); }

 private:
  void Quita() noexcept {
    std::error_code ignored;
    // Innermost first; a folder that is no longer empty stays.
    while (!first_.empty()) {
      fs::remove(last_, ignored);
      if (last_ == first_) break;
      last_ = last_.parent_path();
    }
    first_.clear();
  }

  fs::path first_;
  fs::path last_;
};

// The base, ready for use.
std::unique_ptr<data::EngineConnection> Prepara(data::Base& base, const Opciones& opciones) {
  auto connection = base.Connect();
  try {
    data::PrepareSchema(*connection);
  } catch (const data::Error& error) {
    throw data::Error(base.Address() + ": " + error.what());
  }
  PonPrimerosContenidos(*connection);
  if (opciones.demo) PonDemostracion(*connection);
  return connection;
}

forms::Platform& Exigida(forms::Platform* platform) {
  if (platform == nullptr) throw data::Error("El anfitrión necesita una plataforma");
  return *platform;
}

}  // namespace

struct Anfitrion::Interior {
  Interior(service::Host& host, const Opciones& opciones)
      : plataforma(Exigida(opciones.plataforma)),
        carpeta(SinSeparadorFinal(opciones.ruta)),
        testigo(opciones.testigo != nullptr ? *opciones.testigo : sin_testigo),
        selector(opciones.selector != nullptr ? *opciones.selector : sin_selector),
        impresora(opciones.impresora != nullptr ? *opciones.impresora : sin_impresora),
        base(data::OpenBase(opciones.base)),
        conexion(Prepara(*base, opciones)),
        observada(*conexion, testigo, plataforma),
        ambiente(host, observada, *conexion, testigo, opciones),
        maestra(testigo),
        regla(*conexion),
        cierres(*conexion, plataforma, ambiente),
        funciones(*conexion, plataforma, testigo, cierres),
        catalogo(ambiente, *conexion, observada, plataforma, testigo, impresora, cierres),
        custodia(*conexion, plataforma, ambiente),
        peticiones(*conexion, plataforma, custodia),
        lecturas(*conexion, plataforma, custodia, [this] { return catalogo.EnRutina(); }) {
    RegistraProcedimientos(*conexion, plataforma);
    conexion->Waiting().turn = [this] { return plataforma.WaitTurn(); };
    observada.PonGuardia(&custodia);
    custodia.en_renglon = [this](const SentenciaDeDocumento& sentencia,
                                 const std::function<data::Rows()>& envia) {
      return lecturas.EscribeRenglon(sentencia, envia);
    };
    plataforma.on_act_begins = [this](forms::Form& screen) {
      conexion->Waiting().ActBegins();
      lecturas.EmpiezaActo(screen);
      return custodia.EmpiezaActo(screen);
    };
    plataforma.on_act_ends = [this] {
      custodia.TerminaActo();
      conexion->Waiting().ActEnds();
      SueltaLoCerrado();
      DiAvisos();
      lecturas.TerminaActo();
    };
    plataforma.on_form_gone = [this](forms::Form& screen) {
      custodia.SeFue(screen);
      lecturas.SeFue(screen);
    };
    plataforma.on_box_stands = [this](const std::string& text) { lecturas.Caja(text); };
    carpeta.Conserva();
  }
  ~Interior() {
    plataforma.on_act_begins = nullptr;
    plataforma.on_act_ends = nullptr;
    plataforma.on_form_gone = nullptr;
    plataforma.on_box_stands = nullptr;
  }
  Interior(const Interior&) = delete;
  Interior& operator=(const Interior&) = delete;

  // A document that was closed while the base was busy must not stay taken until the next act: the release is
  // tried for one more second.
  void SueltaLoCerrado() {
    if (!custodia.HayPendientes()) return;
    data::Patience& patience = conexion->Waiting();
    patience.ActBegins();
    patience.Waited(data::Patience::kWhole - std::chrono::seconds(1));
    custodia.QuitaPendientes();
    patience.ActEnds();
  }

  // What came up while an act ran, in one box after it.
  void DiAvisos() {
    if (avisos.empty()) return;
    std::string text;
    for (const std::string& line : std::exchange(avisos, {})) text += (text.empty() ? "" : "\n") + line;
    plataforma.ShowBox(forms::BoxKind::Message, text, forms::kBoxInformation);
  }

  Revisor Revision(Anfitrion& host) {
    const Acto now = custodia.Firma("");
    return {.conexion = *conexion,
            .ahora = now.cuando,
            .usuario = now.usuario,
            .estacion = now.estacion,
            .completa = [&host](Tipo tipo, std::int32_t number) { return host.Completa(tipo, number); }};
  }

  [[nodiscard]] FormatosDeCifras Formatos() const {
    return {data::ToText(ambiente.Lee("FormatoImporte")), data::ToText(ambiente.Lee("FormatoCantidad"))};
  }

  forms::Platform& plataforma;
  CarpetaNueva carpeta;
  Testigo sin_testigo;
  SelectorCerrado sin_selector;
  SinImpresora sin_impresora;
  Testigo& testigo;
  Selector& selector;
  Impresora& impresora;
  std::unique_ptr<data::Base> base;
  std::unique_ptr<data::EngineConnection> conexion;
  ConexionObservada observada;
  AmbienteEnBase ambiente;
  FormaMaestra maestra;
  ReglaDelLibro regla;
  Cierres cierres;
  std::vector<std::string> avisos;  // what the operator is told once the act is over
  FuncionesLocales funciones;
  CatalogoLocal catalogo;
  Custodia custodia;
  ServicioDePeticiones peticiones;
  ServicioDeLecturas lecturas;
};

Anfitrion::Anfitrion(const Opciones& opciones) : interior_(std::make_unique<Interior>(*this, opciones)) {}
Anfitrion::~Anfitrion() = default;

AmbienteLocal& Anfitrion::Ambiente() { return interior_->ambiente; }
FormaMaestra& Anfitrion::Parent() { return interior_->maestra; }
data::EngineConnection& Anfitrion::Conexion() { return *interior_->conexion; }
data::Base& Anfitrion::Base() { return *interior_->base; }

std::vector<DocumentoAMedias> Anfitrion::AMedias() { return LeeAMedias(*interior_->conexion); }

int Anfitrion::Completa(Tipo tipo, std::int32_t documento) {
  Interior& own = *interior_;
  const auto text = [&](const char* name) { return data::ToText(own.ambiente.Lee(name)); };
  return host::Completa(
      {*own.conexion, own.plataforma, own.testigo, text("ClaveLocal"), text("Usuario"), text("Estacion")},
      tipo, documento);
}

std::vector<Observacion> Anfitrion::Revisa(bool repara, bool huecos) {
  return host::Revisa(interior_->Revision(*this), repara, huecos);
}

int Anfitrion::AbreSaldos() { return static_cast<int>(host::AbreSaldos(interior_->Revision(*this)).size()); }

std::vector<Observacion> Anfitrion::RevisaRapido() { return Rapida(interior_->Revision(*this)); }

std::vector<CierreInterrumpido> Anfitrion::CierresInterrumpidos() {
  return host::CierresInterrumpidos(*interior_->conexion);
}

void Anfitrion::Gancho(const std::string& key, Rutina routine) {
  interior_->catalogo.Gancho(key, std::move(routine));
}

bool Anfitrion::TieneGancho(const std::string& key) const { return interior_->catalogo.TieneGancho(key); }
// ---- who holds what ----

std::vector<Tenencia> Anfitrion::Tenencias() {
  interior_->custodia.QuitaPendientes();
  return LeeTenencias(Conexion());
}

std::shared_ptr<forms::Form> Anfitrion::Abre(Tipo tipo, std::int32_t numero) {
  const Retenido wanted{tipo, numero};
  interior_->custodia.QuitaPendientes();
  if (const auto told = SueltaDeMuertos(Conexion(), interior_->custodia.Firma("libera"), wanted)) {
    interior_->custodia.MiraDeNuevo();
    Plataforma().ShowBox(forms::BoxKind::Message, *told, forms::kBoxInformation);
  }
  const auto before = Plataforma().Screens();
  EntradasSalidas door(*this);
  door.Ambiente = &Ambiente();
  door.Parent = &Parent();
  if (tipo == Tipo::Entrada) {
    door.ModificaEntrada(numero);
  } else {
    door.ModificaSalida(numero);
  }
  for (const auto& screen : Plataforma().Screens()) {
    if (DocumentoDe(*screen) != wanted || std::find(before.begin(), before.end(), screen) != before.end())
      continue;
    auto opened = screen;  // what follows may close it
    interior_->peticiones.AlAbrir(*opened);
    return opened;
  }
  return nullptr;
}

void Anfitrion::Libera(Tipo tipo, std::int32_t numero, const std::string& motivo) {
  if (host::Libera(Conexion(), interior_->custodia.Firma("libera"), {tipo, numero}, motivo))
    interior_->custodia.MiraDeNuevo();
}

Peticion Anfitrion::Pide(Tipo tipo, std::int32_t numero, const std::string& mensaje) {
  return interior_->peticiones.Pide({tipo, numero}, mensaje);
}

std::vector<Peticion> Anfitrion::Peticiones() { return interior_->peticiones.Pedidas(); }

std::vector<Acto> Anfitrion::Bitacora(const std::optional<data::DateTime>& desde) {
  return LeeBitacora(Conexion(), desde);
}

// ---- readings ----

std::shared_ptr<host::Lectura> Anfitrion::Lectura(const std::string& texto, forms::Form* forma) {
  return interior_->lecturas.Recibe(texto, forma);
}

std::vector<std::shared_ptr<host::Lectura>> Anfitrion::Cinta() { return interior_->lecturas.Cinta(); }

void Anfitrion::ExportaCinta(const Tramo& tramo, const std::string& ruta) {
  ArchivosDeLaBase(Base().Address()).Rechaza(ruta);
  host::ExportaCinta(LeeCinta(Conexion(), tramo), ruta);
}

ServicioDeLecturas& Anfitrion::Lecturas() { return interior_->lecturas; }

// ---- before and after posting ----

std::vector<Faltante> Anfitrion::Alcanza(forms::Form& forma) {
  return LeeAlcance(Conexion(), PorAfectarDe(forma));
}

std::vector<Faltante> Anfitrion::Alcanza(const Retenido& documento) {
  return LeeAlcance(Conexion(), PorAfectarDe(Conexion(), documento));
}

std::vector<AvisoDeEntrada> Anfitrion::Avisos(forms::Form& forma) {
  return LeeAvisos(Conexion(), PorAfectarDe(forma), interior_->Formatos());
}

std::vector<AvisoDeEntrada> Anfitrion::Avisos(const Retenido& documento) {
  return LeeAvisos(Conexion(), PorAfectarDe(Conexion(), documento), interior_->Formatos());
}

std::string Anfitrion::Imprime(Tipo tipo, std::int32_t numero) {
  return interior_->catalogo.Imprime({tipo, numero});
}

void Anfitrion::SueltaPendientes() {
  if (interior_->plataforma.Acting()) return;
  interior_->lecturas.Atiende();
  data::Patience& patience = Conexion().Waiting();
  patience.ActBegins();
  patience.Vain();
  interior_->custodia.QuitaPendientes();
  patience.ActEnds();
}

std::string Anfitrion::AvisoDeTenencias() const {
  const std::string& reason = interior_->custodia.SinEscribir();
  if (reason.empty()) return "";
  return "Este programa no puede anotar qué documentos tiene abiertos, y otra estación podría abrirlos "
         "también. "
         "Avise a quien atiende el sistema: " +
         reason;
}

std::string Anfitrion::AvisoDeEliminacion(Tipo tipo, std::int32_t numero) {
  return host::AvisoDeEliminacion(Conexion(), {tipo, numero});
}

forms::Platform& Anfitrion::Plataforma() { return interior_->plataforma; }
service::Funciones& Anfitrion::Funciones() { return interior_->funciones; }
service::ConsultasCatalogo& Anfitrion::ConsultasCatalogo() { return interior_->catalogo; }

std::unique_ptr<service::MovimientoInventario> Anfitrion::NuevoMovimiento() {
  return std::make_unique<MovimientoLocal>(
      interior_->plataforma, interior_->testigo, interior_->regla, &interior_->cierres,
      [interior = interior_.get()](Tipo tipo, std::int32_t line) {
        interior->custodia.ExigeRenglon(tipo, line);
      },
      [interior = interior_.get()](const std::string& text) { interior->avisos.push_back(text + "."); });
}

std::unique_ptr<service::BuscadorCatalogo> Anfitrion::NuevoBuscador() {
  return std::make_unique<BuscadorLocal>(interior_->selector, interior_->testigo);
}

std::unique_ptr<service::AuxiliarNumerico> Anfitrion::NuevoAuxiliar() {
  return std::make_unique<AuxiliarLocal>(interior_->selector, interior_->testigo);
}

std::unique_ptr<service::ListaArticulos> Anfitrion::NuevaLista() {
  return std::make_unique<ListaLocal>(interior_->selector, interior_->testigo);
}

}  // namespace tarvik::host
