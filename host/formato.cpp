// From a document to a page: reads the rows, names them for the template, renders, writes the file.
#include "host/formato.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <kainjow/mustache.hpp>
#include <sstream>
#include <system_error>

#include "data/error.h"
#include "data/number.h"
#include "data/recordset.h"
#include "data/text.h"
#include "forms/platform.h"
#include "host/archivo_entero.h"
#include "host/barras.h"
#include "host/logo.h"
#include "wizard/modos.h"

namespace tarvik::host {
namespace {

namespace fs = std::filesystem;
namespace mustache = kainjow::mustache;

std::string DosCifras(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string Fecha(const data::Date& date) {
  return DosCifras(date.day) + "/" + DosCifras(date.month) + "/" + std::to_string(date.year);
}

// A column of a date as the operator reads it; nothing for one that holds no date.
std::string Fecha(const data::Value& value) {
  const auto date = data::Date::Parse(data::ToText(value));
  return date ? Fecha(*date) : "";
}

// The names that a template may use. A name with no content is left out, so that a section by that
// name does not appear.
class Nombres {
 public:
  void Pon(const std::string& name, const std::string& text) {
    if (!data::Trim(text).empty()) data_.set(name, text);
  }
  void Pon(const std::string& name, const mustache::data& value) { data_.set(name, value); }
  [[nodiscard]] const mustache::data& Todos() const { return data_; }

 private:
  mustache::data data_;
};

// What a column of the row with this key holds; "" where there is no such row.
std::string Busca(data::EngineConnection& connection, const char* query, const data::Value& key) {
  if (key.IsNull()) return "";
  const auto found = connection.Run(query, {key});
  return found.rows.empty() ? "" : data::ToText(found.rows.front().front());
}

void PonTraslado(data::EngineConnection& connection, const data::Recordset& header, Nombres& names) {
  const auto text = [&](const char* column) { return data::ToText(header.Fields(column)); };
  names.Pon("folio", text("folio"));
  names.Pon("folio_estacion", text("estacion"));  // folios run by station
  names.Pon("cliente", text("cliente"));
  names.Pon("cliente_nombre",
            Busca(connection, "SELECT nombre FROM clients WHERE cliente = ?", header.Fields("cliente")));
  names.Pon("direccion", text("direccionembarque"));
  names.Pon("entrada_remota", text("EntSuc"));
  names.Pon("fecha_retorno", Fecha(header.Fields("fecharetorno")));
  if (data::IsNonZero(header.Fields("estraspaso"))) {
    names.Pon("traspaso_almacen", text("almt"));
    names.Pon("traspaso_numero", text("traspaso"));
    names.Pon("traspaso_nombre",
              Busca(connection, "SELECT descrip FROM ALMACEN WHERE almacen = ?", header.Fields("almt")));
  }
  if (data::IsNonZero(header.Fields("traspasoaestacion"))) {
    names.Pon("estacion_destino", text("estaciontraspaso"));
    names.Pon("estacion_nombre", Busca(connection, "SELECT descrip FROM ESTACIONES WHERE ESTACION = ?",
                                       header.Fields("estaciontraspaso")));
  }
  if (data::IsNonZero(header.Fields("esparasucursal"))) {
    names.Pon("sucursal", text("sucursal"));
    names.Pon("sucursal_nombre", Busca(connection, "SELECT descrip FROM sucursal WHERE sucursal = ?",
                                       header.Fields("sucursal")));
  }
  if (data::IsNonZero(header.Fields("paraempleado"))) {
    names.Pon("empleado", text("empleado"));
    names.Pon("empleado_nombre", Busca(connection, "SELECT nombre FROM empleados WHERE empleado = ?",
                                       header.Fields("empleado")));
  }
}

void PonPartidas(data::EngineConnection& connection, const Pedido& wanted, Nombres& names) {
  const bool in = wanted.clase == Clase::Entrada;
  data::Recordset lines(connection.Run(
      in ? "SELECT entpart.articulo AS articulo, entpart.cantidad AS cantidad, entpart.precio AS precio, "
           "entpart.observ AS observ, entpart.claveadd AS claveadd, entpart.prdescrip AS prdescrip, "
           "entpart.prcantidad AS prcantidad, prods.descrip AS descrip, prods.unidad AS unidad "
           "FROM entpart LEFT JOIN prods ON prods.articulo = entpart.articulo "
           "WHERE entpart.entrada = ? ORDER BY entpart.id_entrada"
         : "SELECT salpart.articulo AS articulo, salpart.cantidad AS cantidad, salpart.precio AS precio, "
           "salpart.observ AS observ, salpart.claveadd AS claveadd, salpart.prdescrip AS prdescrip, "
           "salpart.prcantidad AS prcantidad, prods.descrip AS descrip, prods.unidad AS unidad "
           "FROM salpart LEFT JOIN prods ON prods.articulo = salpart.articulo "
           "WHERE salpart.salida = ? ORDER BY salpart.id_salida",
      {wanted.numero}));
  mustache::data list{mustache::data::type::list};
  double units = 0;
  double total = 0;
  int count = 0;
  for (; !lines.Eof(); lines.MoveNext()) {
    const auto text = [&](const char* column) { return data::Trim(data::ToText(lines.Fields(column))); };
    const double quantity = data::ToNumber(lines.Fields("cantidad"));
    const double price = data::ToNumber(lines.Fields("precio"));
    units += quantity;
    total += quantity * price;
    Nombres line;
    line.Pon("renglon", std::to_string(++count));
    line.Pon("articulo", text("articulo"));
    line.Pon("descripcion", text("observ").empty() ? text("descrip") : text("observ"));
    line.Pon("unidad", text("unidad"));
    line.Pon("clave_adicional", text("claveadd"));
    const double packs = data::ToNumber(lines.Fields("prcantidad"));
    const std::string pack = text("prdescrip");
    if (!pack.empty() && packs != 0) {
      line.Pon("presentacion", data::FormatNumber(packs, wanted.formato_cantidad) + " " + pack);
    } else {
      line.Pon("presentacion", pack);
    }
    line.Pon("cantidad", data::FormatNumber(quantity, wanted.formato_cantidad));
    line.Pon("precio", data::FormatNumber(price, wanted.formato_importe));
    line.Pon("importe", data::FormatNumber(quantity * price, wanted.formato_importe));
    list.push_back(line.Todos());
  }
  names.Pon("partidas", list);
  names.Pon("renglones", std::to_string(count));
  names.Pon("unidades", data::FormatNumber(units, wanted.formato_cantidad));
  names.Pon("total", data::FormatNumber(total, wanted.formato_importe));
}

Nombres Datos(data::EngineConnection& connection, const Pedido& wanted) {
  const bool in = wanted.clase == Clase::Entrada;
  const data::Recordset header(connection.Run(
      in ? "SELECT * FROM entradas WHERE entrada = ?" : "SELECT * FROM salidas WHERE salida = ?",
      {wanted.numero}));
  const std::string number = std::to_string(wanted.numero);
  if (header.Eof()) {
    throw data::Error("No se puede imprimir: no existe " + std::string(in ? "la entrada " : "la salida ") +
                      number);
  }
  Nombres names;
  const auto text = [&](const char* column) { return data::ToText(header.Fields(column)); };
  names.Pon("titulo", std::string(in ? "Entrada de mercancía" : "Salida de mercancía"));
  names.Pon(in ? "entrada" : "salida", mustache::data{true});
  names.Pon("empresa", wanted.empresa);
  if (const auto logo = LeeLogo(wanted.carpeta)) {
    names.Pon("logo", logo->datos);
    if (logo->ancho > 0) names.Pon("logo_ancho", std::to_string(logo->ancho));
    names.Pon("logo_alto", std::to_string(logo->alto));
  }
  names.Pon("numero", number);
  names.Pon("barras", CodigoDeBarras(number));
  names.Pon("fecha", Fecha(header.Fields("f_emision")));
  names.Pon("concepto", text("tipo_doc"));
  const std::string concept_text =
      Busca(connection, "SELECT descrip FROM tipominv WHERE tipo_movim = ?", header.Fields("tipo_doc"));
  names.Pon("concepto_nombre", concept_text.empty() ? text("datos") : concept_text);
  names.Pon("almacen", text("almacen"));
  names.Pon("almacen_nombre",
            Busca(connection, "SELECT descrip FROM ALMACEN WHERE almacen = ?", header.Fields("almacen")));
  names.Pon("estado", std::string(text("estado") == estado::kAfectado ? "Afectado" : "Pendiente"));
  if (text("estado") != estado::kAfectado) names.Pon("pendiente", mustache::data{true});
  names.Pon("observaciones", text("observ"));
  names.Pon("usuario", text("usuario"));
  if (in) names.Pon("moneda", text("moneda"));
  names.Pon("impreso", Fecha(wanted.ahora.date) + " " + wanted.ahora.time.Text());
  if (!in) PonTraslado(connection, header, names);
  PonPartidas(connection, wanted, names);
  return names;
}

// A format's name becomes a file's name, and a base may come from anywhere.
void ExigeNombreDeArchivo(const std::string& format) {
  bool plain = !data::Trim(format).empty() && format.front() != '.';
  for (const char character : format) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || std::strchr("/\\:*?\"<>|", character) != nullptr) plain = false;
  }
  if (!plain) throw data::Error("El nombre de formato \"" + format + "\" no es válido");
}

std::string PonPlantillaDeFabrica(const fs::path& path) {
  forms::MakeFolders(path.parent_path().string());
  EscribeEntero(path, PlantillaDeFabrica());
  return std::string(PlantillaDeFabrica());
}

// The template's text. A shop that cannot write its folder prints with the built-in one; so does one where
// only a part of that is there.
std::string LeePlantilla(const fs::path& path) {
  std::error_code ignored;
  if (!fs::exists(path, ignored)) return PonPlantillaDeFabrica(path);
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  if (!file) {
    throw data::Error("No se puede leer la plantilla " + path.string() + ": " + std::strerror(errno));
  }
  const std::string found = text.str();
  const std::string_view own = PlantillaDeFabrica();
  if (found.size() < own.size() && own.starts_with(found)) return PonPlantillaDeFabrica(path);
  return data::RepairUtf8(found);
}

void Escribe(const fs::path& path, const std::string& page) {
  const std::error_code reason = forms::MakeFolders(path.parent_path().string());
  if (const std::error_code failed = EscribeEntero(path, page)) {
    throw data::Error("No se puede escribir la página " + path.string() + ": " +
                      (reason ? reason : failed).message());
  }
}

// Bars and gaps of a Code 39 character, narrow and wide in turn, a bar first.
std::string_view Patron(char character) {
  static constexpr std::pair<char, std::string_view> kPatterns[] = {
      {'0', "nnnwwnwnn"}, {'1', "wnnwnnnnw"}, {'2', "nnwwnnnnw"}, {'3', "wnwwnnnnn"}, {'4', "nnnwwnnnw"},
      {'5', "wnnwwnnnn"}, {'6', "nnwwwnnnn"}, {'7', "nnnwnnwnw"}, {'8', "wnnwnnwnn"}, {'9', "nnwwnnwnn"},
      {'A', "wnnnnwnnw"}, {'B', "nnwnnwnnw"}, {'C', "wnwnnwnnn"}, {'D', "nnnnwwnnw"}, {'E', "wnnnwwnnn"},
      {'F', "nnwnwwnnn"}, {'G', "nnnnnwwnw"}, {'H', "wnnnnwwnn"}, {'I', "nnwnnwwnn"}, {'J', "nnnnwwwnn"},
      {'K', "wnnnnnnww"}, {'L', "nnwnnnnww"}, {'M', "wnwnnnnwn"}, {'N', "nnnnwnnww"}, {'O', "wnnnwnnwn"},
      {'P', "nnwnwnnwn"}, {'Q', "nnnnnnwww"}, {'R', "wnnnnnwwn"}, {'S', "nnwnnnwwn"}, {'T', "nnnnwnwwn"},
      {'U', "wwnnnnnnw"}, {'V', "nwwnnnnnw"}, {'W', "wwwnnnnnn"}, {'X', "nwnnwnnnw"}, {'Y', "wwnnwnnnn"},
      {'Z', "nwwnwnnnn"}, {'-', "nwnnnnwnw"}, {'*', "nwnnwnwnn"}};
  for (const auto& [known, pattern] : kPatterns) {
    if (known == character) return pattern;
  }
  throw data::Error(std::string("El código de barras no admite el carácter \"") + character + "\"");
}

}  // namespace

Barras BarrasDe(std::string_view text) {
  if (text.find('*') != std::string_view::npos) Patron('\0');  // the mark of start and stop only
  constexpr int kNarrow = 2;
  constexpr int kWide = 5;
  constexpr int kQuiet = 20;  // a scanner needs ten narrow bars of white on each side
  constexpr int kHeight = 60;
  Barras drawn;
  int x = kQuiet;
  for (const char character : "*" + std::string(text) + "*") {
    bool bar = true;
    for (const char element : Patron(character)) {
      const int width = element == 'w' ? kWide : kNarrow;
      if (bar) drawn.barras.push_back({x, width});
      x += width;
      bar = !bar;
    }
    x += kNarrow;  // the gap between two characters
  }
  drawn.ancho = x - kNarrow + kQuiet;
  drawn.alto = kHeight;
  return drawn;
}

std::string CodigoDeBarras(std::string_view text) {
  const Barras drawn = BarrasDe(text);
  const std::string height = std::to_string(drawn.alto);
  std::string bars;
  for (const auto& [x, width] : drawn.barras) {
    bars += "<rect x=\"" + std::to_string(x) + "\" y=\"0\" width=\"" + std::to_string(width) +
            "\" height=\"" + height + "\"/>";
  }
  const std::string width = std::to_string(drawn.ancho);
  return "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"barras\" role=\"img\" viewBox=\"0 0 " + width +
         " " + height + "\" width=\"" + width + "\" height=\"" + height +
         "\" shape-rendering=\"crispEdges\">" + bars + "</svg>";
}

Clase ClaseDeDocumento(const std::string& screen, const std::string& format) {
  // The number belongs to the screen that prints, whatever its format is called.
  if (screen == "frmEntradasWizard") return Clase::Entrada;
  if (screen == "frmSalidasWizard") return Clase::Salida;
  return format == "entrada" ? Clase::Entrada : Clase::Salida;
}

std::string Pagina(data::EngineConnection& connection, const Pedido& wanted, const std::string& plantilla,
                   const std::string& nombre_de_plantilla) {
  const Nombres names = Datos(connection, wanted);
  mustache::mustache page(plantilla);
  std::string result;
  if (page.is_valid()) result = page.render(names.Todos());
  if (!page.is_valid()) {
    throw data::Error("La plantilla " + nombre_de_plantilla + " tiene un error: " + page.error_message());
  }
  return result;
}

std::string ImprimeEnArchivo(data::EngineConnection& connection, const Pedido& wanted) {
  ExigeNombreDeArchivo(wanted.formato);
  const fs::path folder = forms::NativePath(wanted.carpeta);
  const fs::path source = folder / "formatos" / (wanted.formato + ".mustache");
  const std::string page = Pagina(connection, wanted, LeePlantilla(source), source.string());
  const fs::path target =
      folder / "impresos" / (wanted.formato + "-" + std::to_string(wanted.numero) + ".html");
  Escribe(target, page);
  return target.string();
}

}  // namespace tarvik::host
