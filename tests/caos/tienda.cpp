#include "tests/caos/tienda.h"

#include <cstdlib>
#include <string_view>

#include "data/schema.h"
#include "host/preparacion.h"

namespace tarvik::caos {

std::string Articulo(int cual) {
  const std::string numero = std::to_string(cual);
  return "A-" + std::string(numero.size() < 2 ? "0" : "") + numero;
}

Carpeta::Carpeta() {
  std::string plantilla = (std::filesystem::temp_directory_path() / "tarvik-caos-XXXXXX").string();
  ruta_ = ::mkdtemp(plantilla.data());
}

Carpeta::~Carpeta() {
  std::error_code falla;
  std::filesystem::remove_all(ruta_, falla);
}

void MontaTienda(const std::string& direccion) {
  const auto base = data::OpenBase(direccion);
  const auto conexion = base->Connect();
  data::PrepareSchema(*conexion);
  host::PonPrimerosContenidos(*conexion);
  const auto pon = [&](const std::string& que, std::initializer_list<data::Value> valores) {
    conexion->Run("INSERT INTO " + que + " ON CONFLICT DO NOTHING", valores);
  };
  data::Transaction todo(*conexion);
  pon("tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')", {});
  pon("tipominv (tipo_movim, ent_sal, descrip) VALUES ('VTA', 'S', 'Venta')", {});
  pon("impuestos (impuesto, valor) VALUES ('EXE', 0)", {});
  for (int almacen = 1; almacen <= kAlmacenes; ++almacen) {
    pon("ALMACEN (almacen) VALUES (?)", {almacen});
  }
  for (int cual = 1; cual <= kArticulos; ++cual) {
    pon("prods (articulo, descrip, unidad, precio1, impuesto, costo_u, Invent) VALUES (?, ?, 'PZA', ?, "
        "'EXE', ?, 0)",
        {Articulo(cual), "Artículo " + std::to_string(cual), 10.0 + cual, 5.0 + cual});
  }
  todo.Commit();
}

BaseDeCaos::BaseDeCaos(const std::string& dada) : direccion_(dada) {
  const char* donde = std::getenv("TARVIK_TEST_BASE");
  if (!direccion_.empty()) {
    // It stands, and is nobody's to drop.
  } else if (donde != nullptr && std::string_view(donde).starts_with("postgresql:")) {
    servida_ = std::make_unique<tests::BaseDePrueba>();
    direccion_ = servida_->Direccion();
  } else {
    direccion_ = "sqlite:" + (carpeta_.Ruta() / "almacen.db").string();
  }
  MontaTienda(direccion_);
}

long Veces(const char* variable, long usual) {
  const char* dada = std::getenv(variable);
  return dada != nullptr && std::atol(dada) > 0 ? std::atol(dada) : usual;
}

}  // namespace tarvik::caos
