#include "tests/power/shop.h"

#include <algorithm>

#include "data/schema.h"

namespace tarvik::tests {

Shop::Shop(const std::string& path, const TempFolder& folder) {
  platform_.clock = [] { return data::DateTime{{2024, 3, 5}, {14, 3, 22}}; };
  platform_.on_box = [this](auto kind, const auto& text, int style) {
    record.respuestas = {true};  // an operator who wants to be done
    return record.Caja(kind, text, style);
  };
  host::Opciones options;
  options.base = "sqlite:" + path;
  options.usuario = "ANA";
  options.estacion = "E1";
  options.ruta = folder.File("datos");
  options.plataforma = &platform_;
  options.testigo = &record;
  options.selector = &record;
  host_ = std::make_unique<host::Anfitrion>(options);
  movements_ = std::make_unique<EntradasSalidas>(*host_);
  movements_->Ambiente = &host_->Ambiente();
  movements_->Parent = &host_->Parent();
}

Shop::~Shop() {
  const auto open = platform_.Screens();
  for (const auto& screen : open) screen->Discard();
}

void Shop::Catalogue() {
  for (const char* text : {
           "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')",
           "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')",
           "INSERT INTO ALMACEN (almacen) VALUES (1)",
           "INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)",
           "INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 1)",
           "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-100', "
           "'Martillo', 'PZA', 100, 'IVA', 61.5)",
           "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u) VALUES ('A-200', "
           "'Clavo', 'KG', 43.1, 'IVA', 20)",
       }) {
    Connection().Run(text, {});
  }
}

void Shop::Receives(int lines) {
  const std::size_t before = platform_.Screens().size();
  movements_->NuevaEntrada();
  if (platform_.Screens().size() == before) return;
  auto& form = dynamic_cast<frmEntradasWizard&>(*platform_.Screens().back());
  const auto alive = form.shared_from_this();
  Escenario::Teclea(form, form.txtFields(campo::Concepto), "COM");
  for (int line = 0; line < lines; ++line) {
    form.Enter(form.txtFields(campo::Articulo));
    Escenario::Renglon(form, line % 2 == 0 ? "A-100" : "A-200", line % 2 == 0 ? "10" : "2.5");
  }
  Escenario::Tecla(form, "F5", form.txtFields(campo::Concepto));
  if (form.Open()) form.Discard();
}

void Shop::Sends(int lines) {
  const std::size_t before = platform_.Screens().size();
  movements_->NuevaSalida();
  if (platform_.Screens().size() == before) return;
  auto& form = dynamic_cast<frmSalidasWizard&>(*platform_.Screens().back());
  const auto alive = form.shared_from_this();
  Escenario::Teclea(form, form.txtFields(campo::Concepto), "VTA");
  for (int line = 0; line < lines; ++line) {
    form.Enter(form.txtFields(campo::Articulo));
    EscenarioDeSalidas::Linea(form, line % 2 == 0 ? "A-100" : "A-200", line % 2 == 0 ? "3" : "0.5");
  }
  Escenario::Tecla(form, "F5", form.txtFields(campo::Concepto));
  if (form.Open()) form.Discard();
}

std::vector<std::string> Shop::Reports() const {
  std::vector<std::string> reports;
  for (const auto& seen : record.mensajes) {
    if (seen.clase == "caja") reports.push_back(seen.texto.substr(seen.texto.find('\n') + 1));
  }
  return reports;
}

std::string Books(sqlite3* handle) {
  std::string books;
  for (const data::Table& table : data::Schema()) {
    books += "\n" + std::string(table.name);
    sqlite3_stmt* rows = nullptr;
    const std::string text = "SELECT * FROM " + std::string(table.name);
    if (sqlite3_prepare_v2(handle, text.c_str(), -1, &rows, nullptr) != SQLITE_OK) {
      books += " no";
      continue;
    }
    std::vector<std::string> lines;
    int code = SQLITE_ROW;
    while ((code = sqlite3_step(rows)) == SQLITE_ROW) {
      std::string& line = lines.emplace_back();
      for (int i = 0; i < sqlite3_column_count(rows); ++i) {
        const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(rows, i));
        line += value != nullptr ? "|" + std::string(value) : "|(null)";
      }
    }
    if (code != SQLITE_DONE) books += std::string(" broken: ") + sqlite3_errmsg(handle);
    sqlite3_finalize(rows);
    std::sort(lines.begin(), lines.end());
    for (const std::string& line : lines) books += "\n  " + line;
  }
  return books;
}

std::string Books(const std::string& path) {
  sqlite3* handle = nullptr;
  sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr);
  std::string books = Books(handle);
  sqlite3_close(handle);
  return books;
}

std::string Unsound(data::EngineConnection& connection) {
  std::string unsound;
  for (const auto& row : connection.Run("PRAGMA integrity_check", {}).rows) {
    const std::string said = data::ToText(row.at(0));
    if (said != "ok") unsound += said + "\n";
  }
  const auto rows = connection.Run(
      "SELECT e.articulo FROM existenciaalmacen e WHERE abs(e.existencia - (SELECT total(CASE m.ent_sal WHEN "
      "'E' THEN m.cantidad ELSE -m.cantidad END) FROM movsinv m WHERE m.articulo = e.articulo AND m.almacen "
      "= "
      "e.almacen)) > 1e-9 UNION SELECT p.articulo FROM prods p LEFT JOIN existenciaalmacen e ON e.articulo = "
      "p.articulo AND e.almacen = 1 WHERE abs(coalesce(p.ALM1, 0) - coalesce(e.existencia, 0)) > 1e-9",
      {});
  for (const auto& row : rows.rows) unsound += "stock of " + data::ToText(row.at(0)) + "\n";
  return unsound;
}

namespace {
Commits* the_listener = nullptr;
}

Commits::Commits(const Disk& disk, int pages) : disk_(disk), pages_(pages) {
  the_listener = this;
  sqlite3_auto_extension(reinterpret_cast<void (*)()>(&Commits::Opened));
}

Commits::~Commits() {
  sqlite3_cancel_auto_extension(reinterpret_cast<void (*)()>(&Commits::Opened));
  the_listener = nullptr;
}

int Commits::Opened(sqlite3* handle, const char**, const void*) {
  the_listener->open_.push_back(handle);
  sqlite3_trace_v2(handle, SQLITE_TRACE_CLOSE, &Commits::Closed, the_listener);
  return SQLITE_OK;
}

int Commits::Closed(unsigned, void* self, void* handle, void*) {
  std::erase(static_cast<Commits*>(self)->open_, static_cast<sqlite3*>(handle));
  return 0;
}

int Commits::Committed(void* self, sqlite3* handle, const char*, int pages) {
  auto& commits = *static_cast<Commits*>(self);
  const std::size_t acts = commits.disk_.Acts().size();
  commits.all_.push_back({acts, Books(handle)});
  if (pages >= commits.pages_)
    sqlite3_wal_checkpoint_v2(handle, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  return SQLITE_OK;
}

void Commits::Begin(const std::string& path) {
  all_.push_back({disk_.Acts().size(), Books(path)});
  for (sqlite3* handle : open_) sqlite3_wal_hook(handle, &Commits::Committed, this);
}

}  // namespace tarvik::tests
