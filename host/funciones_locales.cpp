// The global helper of the stand-alone host.
#include "host/funciones_locales.h"

#include <cmath>
#include <utility>

#include "data/error.h"
#include "data/number.h"
#include "data/schema.h"
#include "data/text.h"
#include "host/conexion_observada.h"
#include "host/constructor_sql.h"
#include "host/numeracion.h"
#include "host/paciencia.h"
#include "host/textos.h"
#include "service/contract/mensajes.h"

namespace tarvik::host {
namespace {

// The number of the first column of the first row; 0 where there is none.
double PrimerNumero(const data::Rows& rows) {
  return rows.rows.empty() ? 0 : data::ToNumber(rows.rows.front().front());
}

std::string NombreDeTecla(std::string_view braced) {
  static const std::pair<std::string_view, const char*> names[] = {
      {"TAB", "Tab"},     {"ENTER", "Enter"},  {"ESC", "Esc"},       {"UP", "Up"},      {"DOWN", "Down"},
      {"LEFT", "Left"},   {"RIGHT", "Right"},  {"DELETE", "Delete"}, {"DEL", "Delete"}, {"BACKSPACE", "Back"},
      {"BACK", "Back"},   {"BS", "Back"},      {"SPACE", "Space"},   {"HOME", "Home"},  {"END", "End"},
      {"PGUP", "PageUp"}, {"PGDN", "PageDown"}};
  for (const auto& [known, name] : names) {
    if (data::EqualsNoCase(known, braced)) return name;
  }
  if (braced.size() > 1 && (braced[0] == 'f' || braced[0] == 'F')) return "F" + std::string(braced.substr(1));
  return std::string(braced);
}

// One name between braces, then a blank and a count if it is to be pressed more than once.
void AgregaTecla(std::string_view braced, std::vector<forms::Key>& keys) {
  double times = 1;
  std::string_view name = braced;
  const auto blank = braced.rfind(' ');
  if (blank != std::string_view::npos && blank > 0) {
    const auto count = data::ParseNumber(braced.substr(blank + 1));
    if (count && *count >= 1 && *count <= 1000) {
      times = *count;
      name = braced.substr(0, blank);
    }
  }
  const auto key = forms::KeyNamed(NombreDeTecla(name));
  if (!key) throw data::Error("No existe la tecla {" + std::string(braced) + "}");
  for (int i = 0; i < static_cast<int>(times); ++i) keys.push_back(*key);
}

}  // namespace

std::vector<forms::Key> TeclasDe(std::string_view keys) {
  std::vector<forms::Key> result;
  while (!keys.empty()) {
    if (keys.front() == '{') {
      // The name has at least one character, so that "{}}" is the key of a brace.
      const auto end = keys.size() > 2 ? keys.find('}', 2) : std::string_view::npos;
      if (end == std::string_view::npos) {
        throw data::Error("Las teclas \"" + std::string(keys) + "\" no cierran la llave");
      }
      AgregaTecla(keys.substr(1, end - 1), result);
      keys.remove_prefix(end + 1);
    } else {
      const char32_t character = data::Decode(keys);
      result.push_back(forms::KeyFor(character));
      keys.remove_prefix(std::min(keys.size(), data::Substring(keys, 0, 1).size()));
    }
  }
  return result;
}

void FuncionesLocales::AbreRecordset(const std::string& text, data::Connection& connection,
                                     data::RecordsetRef& out) {
  testigo_.Servicio("AbreRecordset");
  out = std::make_shared<data::Recordset>(connection.Select(text));
}

void FuncionesLocales::AbreConsulta(const std::string& text, data::Connection& connection,
                                    data::RecordsetRef& out) {
  testigo_.Servicio("AbreConsulta");
  out = std::make_shared<data::Recordset>(connection.Select(text));
}

void FuncionesLocales::NuevoId(const std::string& name, data::Connection& connection, std::int32_t& out) {
  testigo_.Servicio("NuevoId");
  // A number that was drawn and got lost on the way is a gap, and does no harm.
  data::EngineConnection& engine = MotorDe(connection);
  out = ConPaciencia(engine, [&] { return SiguienteNumero(engine, name); });
}

double FuncionesLocales::ANumero(const data::Value& value) {
  testigo_.Servicio("ANumero");
  return data::ToNumber(value);
}

std::string FuncionesLocales::TextoDe(const data::Value& value) {
  testigo_.Servicio("TextoDe");
  return data::ToText(value);
}

bool FuncionesLocales::EstaVacio(const std::string& text) {
  testigo_.Servicio("EstaVacio");
  return text.find_first_not_of(' ') == std::string::npos;
}

bool FuncionesLocales::ExisteClave(const data::Value& value, const std::string& column,
                                   const std::string& table, data::Connection& connection) {
  testigo_.Servicio("ExisteClave");
  // Names cannot be bound, so only the schema's own reach the statement.
  const data::Table* known_table = data::FindTable(table);
  const data::Column* known = data::FindColumn(table, column);
  if (known_table == nullptr || known == nullptr) {
    throw data::Error("No existe la columna " + column + " en la tabla " + table);
  }
  if (value.IsNull()) return false;
  data::Value wanted = data::ToText(value);
  if (known->type != data::ColumnType::Text && known->type != data::ColumnType::Date) {
    const auto number = data::ParseNumber(data::ToText(value));
    if (!number) return false;
    wanted = *number;
    if (known->type != data::ColumnType::Number) {
      if (*number != std::trunc(*number) || std::abs(*number) > 9e15) return false;
      wanted = static_cast<std::int64_t>(*number);
    }
  }
  const auto found = MotorDe(connection)
                         .Run("SELECT 1 FROM " + std::string(known_table->name) + " WHERE " +
                                  std::string(known->name) + " = ? LIMIT 1",
                              {wanted});
  return !found.rows.empty();
}

void FuncionesLocales::TraeMensaje(int number, service::Ambiente&, std::string& out) {
  testigo_.Servicio("TraeMensaje");
  std::string text = LeeMensaje(engine_, number);
  testigo_.MensajeTraido(number, text);
  out = std::move(text);
}

void FuncionesLocales::MuestraMensaje(const std::string& text, int style, service::Ambiente&) {
  testigo_.Servicio("MuestraMensaje");
  platform_.ShowBox(forms::BoxKind::Message, text, style);
}

void FuncionesLocales::MuestraError(const std::string& text) {
  testigo_.Servicio("MuestraError");
  platform_.ShowBox(forms::BoxKind::Error, text, forms::kBoxPlain);
}

void FuncionesLocales::Pregunta(const std::string& text, int style, bool& out) {
  testigo_.Servicio("Pregunta");
  out = platform_.ShowBox(forms::BoxKind::Question, text, style);
}

void FuncionesLocales::FechaValida(const data::Date& date, service::Ambiente& ambiente, bool& out) {
  testigo_.Servicio("FechaValida");
  const auto closed = engine_.Run("SELECT 1 FROM movsinv WHERE f_movim > ? AND cerrado <> 0 LIMIT 1", {date});
  if (!closed.rows.empty()) {
    std::string text;
    TraeMensaje(service::mensaje::PeriodoCerrado, ambiente, text);
    MuestraMensaje(text, forms::kBoxInformation, ambiente);
  }
  out = closed.rows.empty();
}

void FuncionesLocales::FechaDeTrabajo(int a, int b, data::Date& out) {
  testigo_.Servicio("FechaDeTrabajo");
  out = platform_.Now().date.PlusDays(a).PlusMonths(b);
}

std::unique_ptr<service::Query> FuncionesLocales::NuevoQuery() {
  testigo_.Servicio("NuevoQuery");
  return std::make_unique<ConstructorSql>(testigo_);
}

void FuncionesLocales::PresentaForma(forms::Form& screen, service::Ambiente&) {
  testigo_.Servicio("PresentaForma");
  testigo_.Presentada(screen);
}

void FuncionesLocales::RegresaForma(forms::Form& screen, service::Ambiente&, const std::string& name) {
  cierres_.Termina(screen);
  testigo_.Servicio("RegresaForma");
  testigo_.Regresada(screen, name);
}

void FuncionesLocales::EnviaTeclas(const std::string& keys, bool wait) {
  testigo_.Servicio("EnviaTeclas");
  // Read to the end before the first is sent: half of the keys would be worse than none.
  for (const auto& key : TeclasDe(keys)) {
    platform_.Post([&platform = platform_, key] {
      forms::Form* active = platform.ActiveForm();
      if (active == nullptr) return;
      const auto held = active->weak_from_this().lock();  // the key may close the screen
      active->Press(key);
    });
  }
  if (wait) platform_.ProcessEvents();
}

int FuncionesLocales::TeclaMayuscula(int& key, forms::Control&) {
  testigo_.Servicio("TeclaMayuscula");
  if (key > 0) key = static_cast<int>(data::Upper(static_cast<char32_t>(key)));
  return key;
}

int FuncionesLocales::TeclaNumerica(int& key, forms::Control&) {
  testigo_.Servicio("TeclaNumerica");
  const bool digit = key >= '0' && key <= '9';
  const bool mark = key == '+' || key == '-' || key == '.';
  const bool editing =
      key == forms::kKeyBack || key == forms::kKeyTab || key == forms::kKeyEnter || key == forms::kKeyEsc;
  if (!digit && !mark && !editing) key = 0;
  return key;
}

std::string FuncionesLocales::FormateaTexto(forms::TextBox& box, service::Ambiente& ambiente) {
  testigo_.Servicio("FormateaTexto");
  if (box.Tag() != "N") return box.Text();
  const auto number = data::ParseNumber(box.Text());
  if (!number) return box.Text();
  return data::FormatNumber(*number, ambiente.FormatoImporte());
}

void FuncionesLocales::FormateaCantidad(double value, const std::string& format, std::string& out) {
  testigo_.Servicio("FormateaCantidad");
  out = data::FormatNumber(value, format);
}

void FuncionesLocales::NumeroSql(double value, std::string& out) {
  testigo_.Servicio("NumeroSql");
  out = data::PlainNumber(value);
}

void FuncionesLocales::CantidadEnVenta(const std::string& articulo, data::Connection& connection,
                                       double& out) {
  testigo_.Servicio("CantidadEnVenta");
  out = PrimerNumero(MotorDe(connection)
                         .Run("SELECT SUM(salpart.cantidad) FROM salpart INNER JOIN salidas ON "
                              "salidas.salida = salpart.salida "
                              "WHERE salidas.estado = 'PE' AND salpart.articulo = ?",
                              {articulo}));
}

void FuncionesLocales::CantidadPorSurtir(const std::string& articulo, data::Connection& connection,
                                         double& out) {
  testigo_.Servicio("CantidadPorSurtir");
  out = PrimerNumero(MotorDe(connection).Run("SELECT Por_Surt FROM prods WHERE articulo = ?", {articulo}));
}

void FuncionesLocales::AgregaArchivoLog(const std::string& path, const std::string& text) {
  testigo_.Servicio("AgregaArchivoLog");
  platform_.AppendFile(path, text);
}

void FuncionesLocales::ExisteArchivo(const std::string& path, bool& out) {
  testigo_.Servicio("ExisteArchivo");
  out = platform_.FileExists(path);
}

void FuncionesLocales::BorraArchivo(const std::string& path) {
  testigo_.Servicio("BorraArchivo");
  platform_.DeleteFile(path);
}

}  // namespace tarvik::host
