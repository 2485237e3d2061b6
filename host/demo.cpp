// The demonstration catalogue, as data: hardware, work clothes, and one of everything the screens ask
// for. Its documents and its stock come from whoever tries the screens.
#include "host/demo.h"

#include "host/preparacion.h"

#include <string>
#include <vector>

namespace tarvik::host {
namespace {

struct Articulo {
  const char* clave;
  const char* descripcion;
  const char* unidad;
  double precio;
  double costo;
  const char* impuesto;
  const char* ubicacion;
  const char* linea;
  int controlado = 1;
  double por_surtir = 0;
};

// A shop that has begun its own catalogues keeps its rows.
void Pon(data::EngineConnection& connection, const std::string& insert,
         const std::vector<data::Value>& values) {
  connection.Run(insert + " ON CONFLICT DO NOTHING", values);
}

constexpr Articulo kArticulos[] = {
    {"MAR-16", "Martillo de uña 16 oz mango de fibra", "PZA", 189.00, 118.40, "IVA16", "A-01", "HERR"},
    {"MAR-20", "Martillo de bola 20 oz", "PZA", 164.50, 101.20, "IVA16", "A-01", "HERR"},
    {"DES-PL6", "Desarmador plano 1/4 x 6 pulgadas", "PZA", 48.90, 26.70, "IVA16", "A-02", "HERR"},
    {"DES-CR2", "Desarmador de cruz número 2", "PZA", 46.50, 25.10, "IVA16", "A-02", "HERR"},
    {"DES-J06", "Juego de 6 desarmadores", "JGO", 215.00, 131.00, "IVA16", "A-02", "HERR"},
    {"PIN-EL8", "Pinza de electricista 8 pulgadas", "PZA", 229.00, 146.30, "IVA16", "A-03", "HERR"},
    {"PIN-PR10", "Pinza de presión 10 pulgadas", "PZA", 254.00, 161.80, "IVA16", "A-03", "HERR"},
    {"LLA-AJ10", "Llave ajustable 10 pulgadas", "PZA", 198.00, 124.90, "IVA16", "A-04", "HERR"},
    {"LLA-CJ12", "Juego de 12 llaves combinadas milimétricas", "JGO", 879.00, 561.00, "IVA16", "A-04",
     "HERR"},
    {"FLE-5M", "Flexómetro de 5 metros", "PZA", 92.00, 51.60, "IVA16", "A-05", "HERR"},
    {"NIV-24", "Nivel de aluminio 24 pulgadas", "PZA", 237.00, 149.00, "IVA16", "A-05", "HERR"},
    {"SEG-12", "Arco y segueta 12 pulgadas", "PZA", 118.00, 70.20, "IVA16", "A-06", "HERR"},
    {"TAL-12", "Taladro percutor 1/2 pulgada 650 W", "PZA", 1299.00, 884.00, "IVA16", "B-01", "ELEC", 1, 2},
    {"ESM-45", "Esmeriladora angular 4 1/2 pulgadas", "PZA", 1049.00, 702.50, "IVA16", "B-01", "ELEC"},
    {"BRO-J13", "Juego de 13 brocas para metal", "JGO", 174.00, 99.80, "IVA16", "B-02", "ELEC"},
    {"DIS-CM45", "Disco de corte para metal 4 1/2 pulgadas", "PZA", 23.50, 12.10, "IVA16", "B-02", "ELEC"},
    {"CAB-12", "Cable THW calibre 12", "MTR", 16.80, 10.45, "IVA16", "B-03", "ELEC"},
    {"CIN-AIS", "Cinta de aislar negra 18 m", "PZA", 21.00, 10.90, "IVA16", "B-03", "ELEC"},
    {"FOC-9W", "Foco LED 9 W luz fría", "PZA", 38.00, 19.70, "IVA16", "B-04", "ELEC"},
    {"CLA-25", "Clavo estándar 2 1/2 pulgadas", "KG", 42.00, 26.30, "IVA16", "C-01", "FIJA"},
    {"PIJ-8X1", "Pija para madera 8 x 1 pulgada", "PZA", 0.85, 0.38, "IVA16", "C-01", "FIJA"},
    {"TAQ-14", "Taquete de plástico 1/4 pulgada", "PZA", 0.60, 0.22, "IVA16", "C-02", "FIJA"},
    {"TOR-38X2", "Tornillo hexagonal 3/8 x 2 pulgadas", "PZA", 5.40, 2.95, "IVA16", "C-02", "FIJA"},
    {"PVC-12", "Tubo de PVC hidráulico 1/2 pulgada", "TRM", 68.00, 41.50, "IVA16", "D-01", "PLOM"},
    {"COD-12", "Codo de PVC 1/2 pulgada", "PZA", 4.20, 1.85, "IVA16", "D-01", "PLOM"},
    {"LLV-ESF12", "Llave de esfera 1/2 pulgada", "PZA", 97.00, 58.40, "IVA16", "D-02", "PLOM"},
    {"TEF-12", "Cinta de teflón 1/2 pulgada", "PZA", 9.50, 4.10, "IVA16", "D-02", "PLOM"},
    {"PIN-VIN19", "Pintura vinílica blanca 19 litros", "CUB", 1189.00, 792.00, "IVA16", "E-01", "PINT", 1, 1},
    {"BRO-4", "Brocha de 4 pulgadas", "PZA", 62.00, 33.40, "IVA16", "E-02", "PINT"},
    {"ROD-9", "Rodillo de 9 pulgadas con maneral", "PZA", 79.00, 44.00, "IVA16", "E-02", "PINT"},
    {"GUA-CAR", "Guante de carnaza, par", "PAR", 74.00, 41.20, "IVA16", "F-01", "SEGU"},
    {"LEN-SEG", "Lente de seguridad claro", "PZA", 43.00, 21.60, "IVA16", "F-01", "SEGU"},
    {"CAS-BLA", "Casco de seguridad blanco", "PZA", 119.00, 68.00, "IVA16", "F-02", "SEGU"},
    {"LIB-FER", "Manual del instalador eléctrico", "PZA", 245.00, 160.00, "IVA0", "F-03", "LIBR"},
    {"SRV-AFIL", "Servicio de afilado de herramienta", "SRV", 55.00, 0.00, "IVA16", "", "SERV", 0},
};

struct Presentacion {
  const char* clave;
  const char* articulo;
  double cantidad;
  const char* dato1;
  const char* dato2;
  const char* unidad;
  int libre;
};

constexpr Presentacion kPresentaciones[] = {
    {"7501206600016", "MAR-16", 0, "Código de barras", "", "PZA", 0},
    {"7501206600023", "MAR-20", 0, "Código de barras", "", "PZA", 0},
    {"7501206611159", "DES-PL6", 0, "Código de barras", "", "PZA", 0},
    {"7501206611166", "DES-CR2", 0, "Código de barras", "", "PZA", 0},
    {"7501206622254", "TAL-12", 0, "Código de barras", "", "PZA", 0},
    {"7501206633366", "CIN-AIS", 0, "Código de barras", "", "PZA", 0},
    {"CIN-AIS-C12", "CIN-AIS", 12, "Caja con 12", "Cinta de aislar", "CAJ", 0},
    {"FOC-9W-C12", "FOC-9W", 12, "Caja con 12", "Foco LED", "CAJ", 0},
    {"DIS-C25", "DIS-CM45", 25, "Caja con 25", "Disco de corte", "CAJ", 0},
    {"PIJ-8X1-B100", "PIJ-8X1", 100, "Bolsa con 100", "Pija", "BOL", 0},
    {"TAQ-14-B100", "TAQ-14", 100, "Bolsa con 100", "Taquete", "BOL", 0},
    {"CAB-12-R100", "CAB-12", 100, "Rollo de 100 metros", "Cable", "ROL", 0},
    {"CAB-12-MED", "CAB-12", 1, "A la medida", "Cable cortado", "MTR", 1},
    {"CLA-25-GRA", "CLA-25", 1, "A granel", "Clavo", "KG", 1},
};

struct Par {
  const char* clave;
  const char* texto;
};

constexpr Par kColores[] = {{"AZ", "Azul marino"}, {"CA", "Caqui"}, {"NE", "Negro"}};
constexpr int kColoresVisuales[] = {0x6B2B1F, 0x6FA6C3, 0x202020};  // 0xBBGGRR
constexpr Par kTallasDeCamisa[] = {
    {"CH", "Chica"}, {"MD", "Mediana"}, {"GD", "Grande"}, {"XG", "Extra grande"}};
constexpr Par kTallasDeBota[] = {{"26", "26 cm"}, {"27", "27 cm"}, {"28", "28 cm"}};

void PonArticulo(data::EngineConnection& connection, const Articulo& article, const data::Value& modelo,
                 const data::Value& color, const data::Value& talla) {
  Pon(connection,
      "INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u, ubicacion, linea, modelo, "
      "color, talla, Invent, Por_Surt, ALM1, ALM2) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, 0)",
      {article.clave, article.descripcion, article.unidad, article.precio, article.impuesto, article.costo,
       article.ubicacion, article.linea, modelo, color, talla, article.controlado, article.por_surtir});
}

template <std::size_t N>
void PonPares(data::EngineConnection& connection, const char* statement, const Par (&pairs)[N]) {
  for (const auto& [key, text] : pairs) Pon(connection, statement, {key, text});
}

// A model's articles: each colour in each size. The boots are not made in khaki, since a matrix
// is seldom full.
template <std::size_t N>
void PonModelo(data::EngineConnection& connection, const Par& modelo, const Par (&tallas)[N],
               const Articulo& patron) {
  Pon(connection, "INSERT INTO modelos (modelo, descrip) VALUES (?, ?)", {modelo.clave, modelo.texto});
  for (const auto& color : kColores) {
    if (std::string(modelo.clave) == "BOT" && std::string(color.clave) == "CA") continue;
    for (const auto& talla : tallas) {
      const std::string key = std::string(modelo.clave) + "-" + color.clave + "-" + talla.clave;
      const std::string text = std::string(modelo.texto) + " " + color.texto + " " + talla.texto;
      Articulo article = patron;
      article.clave = key.c_str();
      article.descripcion = text.c_str();
      PonArticulo(connection, article, modelo.clave, color.clave, talla.clave);
    }
  }
}

void PonCatalogos(data::EngineConnection& connection) {
  Pon(connection, "INSERT INTO impuestos (impuesto, valor, descrip) VALUES ('IVA16', 16, 'IVA 16 %')", {});
  Pon(connection, "INSERT INTO impuestos (impuesto, valor, descrip) VALUES ('IVA0', 0, 'IVA 0 %')", {});
  Pon(connection, "INSERT INTO ALMACEN (almacen, descrip) VALUES (1, 'Almacén central')", {});
  Pon(connection, "INSERT INTO ALMACEN (almacen, descrip) VALUES (2, 'Piso de venta')", {});
  Pon(connection, "INSERT INTO usuarios (usuario, existsalidas) VALUES ('ANA', 1)", {});
  Pon(connection, "INSERT INTO usuarios (usuario, existsalidas) VALUES ('BETO', 0)", {});
  Pon(connection, "INSERT INTO usuarios (usuario, existsalidas) VALUES ('CARLA', 1)", {});
  Pon(connection, "INSERT INTO monedas (moneda, Tc, Base) VALUES ('MXN', 1, 1)", {});
  Pon(connection, "INSERT INTO monedas (moneda, Tc, Base) VALUES ('USD', 17.25, 0)", {});

  constexpr Par kIn[] = {
      {"COM", "Compra a proveedor"}, {"DEV", "Devolución de cliente"}, {"A++", "Ajuste por sobrante"}};
  constexpr Par kOut[] = {
      {"VTA", "Venta de mostrador"}, {"MER", "Merma o daño"}, {"TRA", "Traspaso entre almacenes"}};
  PonPares(connection, "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, 'E', ?)", kIn);
  PonPares(connection, "INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES (?, 'S', ?)", kOut);
  constexpr Par kClientes[] = {{"C001", "Constructora del Valle, S.A. de C.V."},
                               {"C002", "Instalaciones Hernández"},
                               {"C003", "Talleres Unidos de Occidente"},
                               {"C004", "Lucía Ortega Ramírez"}};
  PonPares(connection, "INSERT INTO clients (cliente, nombre) VALUES (?, ?)", kClientes);
  constexpr Par kEmpleados[] = {
      {"E01", "Jorge Medina Cruz"}, {"E02", "Patricia Solís Vega"}, {"E03", "Raúl Campos Ibarra"}};
  PonPares(connection, "INSERT INTO empleados (empleado, nombre) VALUES (?, ?)", kEmpleados);
  constexpr Par kEstaciones[] = {{"E1", "Recepción"}, {"E2", "Mostrador"}, {"E3", "Embarques"}};
  PonPares(connection, "INSERT INTO ESTACIONES (ESTACION, descrip) VALUES (?, ?)", kEstaciones);
  constexpr Par kSucursales[] = {{"CEN", "Centro"}, {"NTE", "Norte"}};
  PonPares(connection, "INSERT INTO sucursal (sucursal, descrip) VALUES (?, ?)", kSucursales);
  constexpr Par kVendedores[] = {{"V1", "Marta Quiroz"}, {"V2", "Hugo Beltrán"}};
  PonPares(connection, "INSERT INTO vends (vend, Nombre) VALUES (?, ?)", kVendedores);

  const std::vector<std::vector<data::Value>> addresses = {
      {1, "Av. Industria 1450, Col. Ferrocarril", "C001"},
      {2, "Obra Los Encinos, lote 12", "C001"},
      {3, "Calle Hidalgo 88, Centro", "C002"},
      {4, "Blvd. de las Torres 2300, bodega 7", "C003"}};
  for (const auto& address : addresses) {
    Pon(connection, "INSERT INTO diremb (id, direccion, cliente) VALUES (?, ?, ?)", address);
  }
}

void PonArticulos(data::EngineConnection& connection) {
  for (const auto& article : kArticulos) PonArticulo(connection, article, "", "", "");
  for (const auto& second : kPresentaciones) {
    Pon(connection,
        "INSERT INTO clavesadd (clave, articulo, cantidad, Dato1, Dato2, unidad, Libre) "
        "VALUES (?, ?, ?, ?, ?, ?, ?)",
        {second.clave, second.articulo, second.cantidad, second.dato1, second.dato2, second.unidad,
         second.libre});
  }
  for (std::size_t i = 0; i < std::size(kColores); ++i) {
    Pon(connection, "INSERT INTO colores (color, descrip, visualcolor) VALUES (?, ?, ?)",
        {kColores[i].clave, kColores[i].texto, kColoresVisuales[i]});
  }
  PonPares(connection, "INSERT INTO tallas (talla, descrip) VALUES (?, ?)", kTallasDeCamisa);
  PonPares(connection, "INSERT INTO tallas (talla, descrip) VALUES (?, ?)", kTallasDeBota);
  PonModelo(connection, {"CAM", "Camisa de trabajo"}, kTallasDeCamisa,
            {"", "", "PZA", 289.00, 172.50, "IVA16", "G-01", "ROPA"});
  PonModelo(connection, {"BOT", "Bota industrial"}, kTallasDeBota,
            {"", "", "PAR", 749.00, 486.00, "IVA16", "G-02", "ROPA"});
}

void PonCompra(data::EngineConnection& connection) {
  Pon(connection, "INSERT INTO compra2 (id) VALUES (1)", {});
  int line = 0;
  for (const char* article : {"MAR-16", "TAL-12", "CIN-AIS", "CAM-AZ-MD"}) {
    Pon(connection, "INSERT INTO compra2part (Id, articulo, compra) VALUES (?, ?, 1)", {++line, article});
  }
}

}  // namespace

void PonDemostracion(data::EngineConnection& connection) {
  const auto empty = [&] { return connection.Run("SELECT 1 FROM prods LIMIT 1", {}).rows.empty(); };
  if (!empty()) return;
  data::Transaction whole(connection);
  UnaALaVez(connection);
  if (!empty()) return;  // another station was faster
  PonCatalogos(connection);
  PonArticulos(connection);
  PonCompra(connection);
  whole.Commit();
}

}  // namespace tarvik::host
