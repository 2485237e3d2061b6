#include "tests/caos/estacion.h"

#include <algorithm>

#include "data/number.h"
#include "forms/keys.h"
#include "goods_in/frm_entradas_wizard.h"
#include "goods_out/frm_salidas_wizard.h"
#include "host/liberacion.h"
#include "tests/caos/tienda.h"

namespace tarvik::caos {

using host::Tipo;

namespace {

Tipo ClaseDe(const DocumentWizard& forma) {
  return dynamic_cast<const frmEntradasWizard*>(&forma) != nullptr ? Tipo::Entrada : Tipo::Salida;
}

int ColumnaDelNumero(const DocumentWizard& forma) { return ClaseDe(forma) == Tipo::Entrada ? 5 : 6; }

// Rows of the grid that hold a line.
int Filas(const DocumentWizard& forma) {
  int fila = 1;
  while (fila < forma.fg2.Rows() && !forma.fg2.TextMatrix(fila, 0).empty()) ++fila;
  return fila - 1;
}

void Tecla(forms::Form& forma, const char* nombre) { forma.Press(*forms::KeyNamed(nombre)); }

std::string UnaLinea(std::string texto) {
  for (char& c : texto) {
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  }
  return texto;
}

std::string Documento(const DocumentWizard& forma) {
  return std::string(NombreDe(ClaseDe(forma))) + "\t" + std::to_string(Estacion::Numero(forma));
}

}  // namespace

// Says which part of an act is under way.
class Estacion::Oido final : public host::Testigo {
 public:
  explicit Oido(const Estacion& estacion) : estacion_(estacion) {}
  void Sentencia(std::string_view texto) override {
    if (texto.starts_with("INSERT INTO entradas") || texto.starts_with("INSERT INTO salidas")) {
      estacion_.Di("paso\talta");
    } else if (finaliza && texto.starts_with("UPDATE ") && texto.find("folio") != std::string_view::npos) {
      estacion_.Di("paso\tencabezado");
    } else if (finaliza && texto.starts_with("UPDATE entradas SET tipo_doc")) {
      estacion_.Di("paso\tencabezado");
    }
  }
  void Servicio(std::string_view nombre) override {
    if (nombre == "Afecta") estacion_.Di("paso\tafecta");
    if (nombre == "ImprimeDocumento") estacion_.Di("paso\timprime");
    if (finaliza && nombre == "RegresaForma") estacion_.Di("paso\tcierra");
  }

  bool finaliza = false;

 private:
  const Estacion& estacion_;
};

Estacion::Estacion(const Persona& persona)
    : persona_(persona), azar_(persona.semilla), oido_(std::make_unique<Oido>(*this)) {
  if (!persona_.di) persona_.di = [](const std::string&) {};
  plataforma_.on_box = [this](forms::BoxKind clase, const std::string& texto, int) {
    if (clase == forms::BoxKind::Question) return true;
    cajas_.push_back(texto);
    Di("caja\t" + UnaLinea(texto));
    return true;
  };
  plataforma_.on_unhandled = [this](forms::Form*, const std::string& texto) {
    cajas_.push_back(texto);
    Di("suelto\t" + UnaLinea(texto));
  };
  host::Opciones opciones;
  opciones.base = persona_.base;
  opciones.usuario = persona_.usuario;
  opciones.estacion = persona_.estacion;
  opciones.ruta = persona_.ruta;
  opciones.plataforma = &plataforma_;
  opciones.testigo = oido_.get();
  anfitrion_ = std::make_unique<host::Anfitrion>(opciones);
  movimientos_ = std::make_unique<EntradasSalidas>(*anfitrion_);
  movimientos_->Ambiente = &anfitrion_->Ambiente();
  movimientos_->Parent = &anfitrion_->Parent();
}

Estacion::~Estacion() {
  const auto abiertas = plataforma_.Screens();
  for (const auto& pantalla : abiertas) pantalla->Discard();
}

std::int32_t Estacion::Numero(const DocumentWizard& forma) {
  if (const auto* entrada = dynamic_cast<const frmEntradasWizard*>(&forma)) return entrada->Entrada;
  return dynamic_cast<const frmSalidasWizard&>(forma).Salida;
}

DocumentWizard* Estacion::Nueva(Tipo tipo, int renglones, int destino) {
  Di("paso\tcaptura");
  if (tipo == Tipo::Entrada) {
    movimientos_->NuevaEntrada();
  } else {
    movimientos_->NuevaSalida();
  }
  auto* forma = dynamic_cast<DocumentWizard*>(plataforma_.Screens().back().get());
  acusados_.clear();
  forma->Type(forma->txtFields(campo::Concepto), tipo == Tipo::Entrada ? "COM" : "VTA");
  const int almacen = destino != 0 ? destino % kAlmacenes + 1 : Al(1, kAlmacenes);
  forma->Type(forma->txtFields(campo::Almacen), std::to_string(almacen));
  if (destino != 0) {
    auto& salida = dynamic_cast<frmSalidasWizard&>(*forma);
    salida.Click(salida.SSCheck1);
    salida.Type(salida.txtFields(campo::AlmacenDestino), std::to_string(destino));
  }
  for (int i = 0; i < renglones; ++i) Renglon(*forma);
  return forma;
}

DocumentWizard* Estacion::Abre(Tipo tipo, std::int32_t numero) {
  const std::size_t antes = plataforma_.Screens().size();
  if (tipo == Tipo::Entrada) {
    movimientos_->ModificaEntrada(numero);
  } else {
    movimientos_->ModificaSalida(numero);
  }
  if (plataforma_.Screens().size() == antes) return nullptr;
  acusados_.clear();
  return dynamic_cast<DocumentWizard*>(plataforma_.Screens().back().get());
}

DocumentWizard* Estacion::Retoma(Tipo tipo, std::int32_t numero) {
  acusados_.clear();
  const auto pantalla = anfitrion_->Abre(tipo, numero);
  for (const host::Tenencia& otra : pantalla ? std::vector<host::Tenencia>{} : anfitrion_->Tenencias()) {
    Di("tenida\t" + std::string(NombreDe(otra.tipo)) + "\t" + std::to_string(otra.documento) + "\t" +
       otra.usuario + "\t" + (otra.viva ? "viva" : "muerta") + "\t" +
       (otra.desde ? otra.desde->Iso() : "sin renglón"));
  }
  return dynamic_cast<DocumentWizard*>(pantalla.get());
}

void Estacion::Acusa(DocumentWizard& forma, int fila, const std::string& articulo, int cantidad) {
  acusados_.insert(forma.fg2.TextMatrix(fila, ColumnaDelNumero(forma)));
  Di("renglon\t" + Documento(forma) + "\t" + forma.fg2.TextMatrix(fila, ColumnaDelNumero(forma)) + "\t" +
     articulo + "\t" + std::to_string(cantidad));
}

void Estacion::Renglon(DocumentWizard& forma) {
  const std::string articulo = Articulo(Al(1, kArticulos));
  const int cantidad = Al(1, 9);
  const int antes = Filas(forma);
  int espera = cantidad;
  const bool suma = ClaseDe(forma) == Tipo::Salida && antes > 0 && forma.fg2.TextMatrix(antes, 0) == articulo;
  if (suma) {
    // What is shown may be of a line that was never stored: only one that was acknowledged here is added to.
    if (!acusados_.contains(forma.fg2.TextMatrix(antes, ColumnaDelNumero(forma)))) return;
    espera += static_cast<int>(data::ToNumber(data::Value(forma.fg2.TextMatrix(antes, 1))));
    Di("quiere\t" + Documento(forma) + "\t" + forma.fg2.TextMatrix(antes, ColumnaDelNumero(forma)) + "\t" +
       std::to_string(espera));
  }
  const std::size_t cajas = cajas_.size();
  forma.Type(forma.txtFields(campo::Articulo), articulo);
  Tecla(forma, "Enter");
  forma.Type(forma.txtFields(campo::Cantidad), std::to_string(cantidad));
  Tecla(forma, "Enter");
  Tecla(forma, "Enter");
  const int ahora = Filas(forma);
  if (cajas_.size() == cajas && ahora == antes + (suma ? 0 : 1)) Acusa(forma, ahora, articulo, espera);
}

// A cell of a line of this screen, or its removal.
void Estacion::CorrigeOQuita(DocumentWizard& forma) {
  const int filas = Filas(forma);
  if (filas < 2) return;
  const int fila = Al(1, filas);
  const std::string articulo = forma.fg2.TextMatrix(fila, 0);
  const std::string numero = forma.fg2.TextMatrix(fila, ColumnaDelNumero(forma));
  if (!acusados_.contains(numero)) return;
  const std::size_t cajas = cajas_.size();
  if (Al(0, 1) == 0) {
    Di("quiere\t" + Documento(forma) + "\t" + numero + "\t-");
    forma.ClickCell(forma.fg2, fila, 0);
    Tecla(forma, "Delete");
    if (cajas_.size() == cajas && Filas(forma) == filas - 1)
      Di("quitado\t" + Documento(forma) + "\t" + numero);
    return;
  }
  const int cantidad = Al(10, 99);
  Di("quiere\t" + Documento(forma) + "\t" + numero + "\t" + std::to_string(cantidad));
  forma.ClickCell(forma.fg2, fila, 1);
  forma.Type(forma.fg2, std::to_string(cantidad / 10));
  forma.Type(forma.txtEdit, std::to_string(cantidad % 10));
  Tecla(forma, "Enter");
  if (cajas_.size() == cajas && forma.fg2.TextMatrix(fila, 1) == std::to_string(cantidad)) {
    Acusa(forma, fila, articulo, cantidad);
  }
}

bool Estacion::Finaliza(DocumentWizard& forma) {
  const auto viva = forma.shared_from_this();
  const std::string documento = Documento(forma);
  const std::size_t cajas = cajas_.size();
  oido_->finaliza = true;
  forma.Enter(forma.txtFields(campo::Concepto));
  Tecla(forma, "F5");
  oido_->finaliza = false;
  const bool bien = !forma.Open() && cajas_.size() == cajas;
  if (bien) Di("afectado\t" + documento);
  return bien;
}

void Estacion::Cierra(DocumentWizard& forma) {
  const auto viva = forma.shared_from_this();
  if (forma.Open()) forma.Click(forma.Command2);
  if (forma.Open()) {  // a finish that broke off has closed the button
    forma.Close();
    plataforma_.Advance(100);
  }
  if (forma.Open()) forma.Discard();
}

// One of the own documents that are pending, whether its last program ended or was killed.
bool Estacion::Escogido(DocumentWizard*& forma) {
  const Tipo tipo = Al(0, 1) == 0 ? Tipo::Entrada : Tipo::Salida;
  const host::Tablas& tablas = TablasDe(tipo);
  data::Rows suyos;
  try {
    suyos = anfitrion_->Conexion().Run(
        "SELECT " + tablas.clave + " FROM " + tablas.encabezado + " WHERE estado = 'PE' AND usuario = ?",
        {persona_.usuario});
  } catch (const data::Error&) {
    return false;
  }
  if (suyos.rows.empty()) return false;
  const int cual = Al(0, static_cast<int>(suyos.rows.size()) - 1);
  forma =
      Retoma(tipo, static_cast<std::int32_t>(data::ToNumber(suyos.rows[static_cast<std::size_t>(cual)][0])));
  return forma != nullptr;
}

void Estacion::HazDocumento() {
  DocumentWizard* forma = nullptr;
  Di("paso\tabre");
  if (Al(1, 4) != 1 || !Escogido(forma)) {
    const int clase = Al(0, 2);
    forma = Nueva(clase == 0 ? Tipo::Entrada : Tipo::Salida, 1, clase == 2 ? Al(1, kAlmacenes) : 0);
  }
  const auto viva = forma->shared_from_this();
  Di("paso\tcaptura");
  for (int faltan = Al(0, hasta_ - 1); faltan > 0 && forma->Open(); --faltan) {
    Renglon(*forma);
    if (Al(1, 8) == 1) CorrigeOQuita(*forma);
  }
  if (forma->Open() && Al(1, 4) == 1) forma->Check2.Value(0);  // without a page
  const int como = Al(1, 10);
  if (como <= 7) {
    Finaliza(*forma);
  } else if (como == 8) {
    forma->Check3.Value(1);
    forma->Enter(forma->txtFields(campo::Concepto));
    Tecla(*forma, "F5");
  }
  Cierra(*forma);
  Di("hecho");
  cajas_.clear();
}

}  // namespace tarvik::caos
