#include "tests/support/escenario.h"

#include <fstream>
#include <sstream>

namespace tarvik::tests {

namespace {

std::filesystem::path CarpetaNueva() {
  std::string plantilla = (std::filesystem::temp_directory_path() / "tarvik-XXXXXX").string();
  return ::mkdtemp(plantilla.data());
}

}  // namespace

Escenario::Escenario() : ruta(CarpetaNueva()) {
  plataforma.clock = [this] { return reloj; };
  plataforma.on_box = [this](auto clase, const auto& texto, int estilo) {
    return bitacora.Caja(clase, texto, estilo);
  };
  plataforma.on_beep = [this] { ++pitidos; };
  plataforma.on_unhandled = [this](forms::Form*, const std::string& texto) { no_atrapados.push_back(texto); };
  plataforma.on_search_list = [this](forms::SearchBox& caja) { listas.push_back(caja.Field()->FullName()); };
  Abre(base_.Direccion());
  aparte_ = anfitrion->Base().Connect();
}

void Escenario::Abre(const std::string& direccion) {
  movimientos.reset();
  anfitrion.reset();
  host::Opciones opciones;
  opciones.base = direccion;
  opciones.usuario = "ANA";
  opciones.estacion = "E1";
  opciones.ruta = ruta.string();
  opciones.plataforma = &plataforma;
  opciones.testigo = &bitacora;
  opciones.selector = &bitacora;
  anfitrion = std::make_unique<host::Anfitrion>(opciones);
  movimientos = std::make_unique<EntradasSalidas>(*anfitrion);
  movimientos->Ambiente = &anfitrion->Ambiente();
  movimientos->Parent = &anfitrion->Parent();
}

Escenario::~Escenario() {
  const auto abiertas = plataforma.Screens();
  for (const auto& pantalla : abiertas) pantalla->Discard();
  std::error_code falla;
  std::filesystem::remove_all(ruta, falla);
}

data::Rows Escenario::Sql(const std::string& text, std::vector<data::Value> values) {
  return aparte_->Run(text, values);
}

std::string Escenario::Uno(const std::string& text, std::vector<data::Value> values) {
  const data::Rows rows = Sql(text, std::move(values));
  if (rows.rows.empty()) return "(nada)";
  return rows.rows[0][0].IsNull() ? "(nulo)" : data::ToText(rows.rows[0][0]);
}

void Escenario::Gancho(const std::string& clave, std::function<void(frmEntradasWizard&)> rutina) {
  anfitrion->Gancho(clave, [rutina = std::move(rutina)](forms::Form& forma, host::AmbienteLocal&) {
    rutina(dynamic_cast<frmEntradasWizard&>(forma));
  });
}

std::string Escenario::MensajeDeLaBase(int numero) {
  return Uno("SELECT texto FROM mensajes WHERE numero = ?", {numero});
}

void Escenario::Catalogo() {
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?)",
      {"COM", "E", "Compra a proveedor"});
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?)", {"A++", "E", "Ajuste de más"});
  Sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, ?, ?)", {"VTA", "S", "Venta"});
  Sql("INSERT INTO ALMACEN (almacen) VALUES (?)", {1});
  Sql("INSERT INTO ALMACEN (almacen) VALUES (?)", {2});
  Sql("INSERT INTO impuestos (impuesto, valor) VALUES (?, ?)", {"IVA", 16});
  const std::string prods =
      "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES (?, ?, ?, ?, ?, ?)";
  Sql(prods, {"A-100", "Martillo de uña", "PZA", 100, "IVA", 61.5});
  Sql(prods, {"A-200", "Clavo a granel", "KG", 43.1, "IVA", 20});
  Sql("INSERT INTO clavesadd (clave, articulo, cantidad, Dato1, Dato2, unidad) VALUES (?, ?, ?, ?, ?, ?)",
      {"7501", "A-100", 12, "Caja", "Roja", "CJ"});
}

frmEntradasWizard& Escenario::Ultima() {
  return dynamic_cast<frmEntradasWizard&>(*plataforma.Screens().back());
}

frmEntradasWizard& Escenario::Nueva() {
  movimientos->NuevaEntrada();
  return Ultima();
}

frmEntradasWizard& Escenario::Modifica(int numero) {
  movimientos->ModificaEntrada(numero);
  return Ultima();
}

frmEntradasWizard& Escenario::Consulta(int numero) {
  movimientos->ConsultaEntrada(numero);
  return Ultima();
}

void Escenario::Renglon(frmEntradasWizard& f, const std::string& articulo, const std::string& cantidad) {
  Teclea(f, f.txtFields(campo::Articulo), articulo);
  Tecla(f, "Enter");
  Teclea(f, f.txtFields(campo::Cantidad), cantidad);
  Tecla(f, "Enter");
  Tecla(f, "Enter");
}

frmEntradasWizard& Escenario::ConRenglones(
    std::initializer_list<std::pair<std::string, std::string>> renglones) {
  frmEntradasWizard& f = Nueva();
  Teclea(f, f.txtFields(campo::Concepto), "COM");
  Tecla(f, "Enter");
  for (const auto& [articulo, cantidad] : renglones) Renglon(f, articulo, cantidad);
  return f;
}

std::vector<int> Escenario::Numeros() const {
  std::vector<int> numeros;
  for (const auto& mensaje : bitacora.mensajes) {
    numeros.insert(numeros.end(), mensaje.numeros.begin(), mensaje.numeros.end());
  }
  return numeros;
}

std::vector<std::string> Escenario::Reportes() const {
  std::vector<std::string> reportes;
  for (const auto& mensaje : bitacora.mensajes) {
    if (mensaje.clase == "caja") reportes.push_back(mensaje.texto.substr(mensaje.texto.find('\n') + 1));
  }
  return reportes;
}

std::string Escenario::Reporte(const std::string& funcion, const std::string& texto,
                               const std::string& modulo) {
  return "Module: " + modulo + "\r\nFunction: " + funcion + "\r\nDescription: " + texto +
         " código duro: 0\r\n";
}

std::vector<std::string> Escenario::Claves() const {
  std::vector<std::string> claves;
  for (const auto& gancho : bitacora.ganchos) claves.push_back(gancho.first);
  return claves;
}

int Escenario::CuentaSentencias(const std::string& principio) const {
  int cuantas = 0;
  for (const auto& sentencia : bitacora.sentencias) cuantas += sentencia.starts_with(principio) ? 1 : 0;
  return cuantas;
}

std::string Escenario::ArchivoDelDia() const {
  std::ifstream archivo(ruta / "web" / ("TarvikError" + reloj.date.DayFirst() + ".Log"), std::ios::binary);
  std::ostringstream texto;
  texto << archivo.rdbuf();
  return texto.str();
}

void Escenario::Olvida() {
  bitacora.sentencias.clear();
  bitacora.mensajes.clear();
  bitacora.ganchos.clear();
  bitacora.movimientos.clear();
  bitacora.impresos.clear();
  bitacora.presentadas.clear();
  bitacora.regresadas.clear();
  bitacora.llamadas.clear();
  bitacora.selectores.clear();
  listas.clear();
  no_atrapados.clear();
  pitidos = 0;
}

}  // namespace tarvik::tests
