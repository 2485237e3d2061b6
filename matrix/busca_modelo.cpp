#include "matrix/busca_modelo.h"

#include <memory>
#include <string>
#include <utility>

#include "data/number.h"
#include "data/text.h"
#include "matrix/frm_malla_modelos.h"
#include "service/report/trampa.h"
#include "wizard/campos.h"

namespace tarvik {

using service::Trampa;

namespace {

// What each line needs again, since making one empties the entry row: unit, price, and the tax, which is
// kept in the field of the amount.
constexpr int kDeCadaRenglon[] = {campo::Unidad, campo::Precio, campo::ImporteDelRenglon};

constexpr int kFilaDeClave = 0;
constexpr int kFilaDeTexto = 1;
constexpr int kColumnaDeTexto = 0;
constexpr int kColumnaDeClave = 1;
constexpr int kFijas = 2;
constexpr int kPrimera = 3;        // the first colour's row and the first size's column, after the spacer
constexpr int kEspacio = 10;       // twips
constexpr int kAnchoTexto = 1600;  // twips
constexpr int kAnchoClave = 360;   // twips

// One run of the search.
class Busqueda {
 public:
  explicit Busqueda(CapturaDeModelo& captura)
      : captura_(captura),
        intenta_(captura.Reporta(), "BuscaModelo"),
        plataforma_(captura.Anfitrion().Plataforma()) {}
  // Whatever ended the search: the matrix doesn't outlive it.
  ~Busqueda() {
    if (malla_ && malla_->Open()) malla_->Discard();
  }
  Busqueda(const Busqueda&) = delete;
  Busqueda& operator=(const Busqueda&) = delete;

  bool Corre() {
    if (!EsModelo()) return false;
    intenta_([&] { modelo_ = data::ToText(modelos_->Fields("modelo")); });
    for (std::size_t i = 0; i < std::size(kDeCadaRenglon); ++i) {
      intenta_([&] { guardado_[i] = Texto(kDeCadaRenglon[i]); });
    }
    malla_ = std::make_shared<frmMallaModelos>(captura_.Anfitrion());
    Construye();
    if (!captura_.Abierta()) return false;
    intenta_([&] { malla_->Show(true); });
    if (!captura_.Abierta()) return false;
    if (malla_->Tag() != "Hecho") {
      intenta_([&] { plataforma_.ProcessEvents(); });
      captura_.Vuelve(campo::Articulo);
      return false;
    }
    HazRenglones();
    intenta_([&] { malla_->Unload(); });
    return true;
  }

 private:
  std::string Texto(int campo) { return captura_.Campo(campo).Text(); }
  forms::FlexGrid& Malla() { return malla_->fg2; }
  // Set only on success: after a failure the rows read before stay.
  void Abre(const std::string& sentencia, data::RecordsetRef& out) {
    captura_.Anfitrion().Funciones().AbreRecordset(sentencia, captura_.Contexto().Conexion(), out);
  }
  bool SinFilas(const data::RecordsetRef& filas) {
    return intenta_.Si([&] { return filas->Eof(); });
  }
  static std::string Recortado(const data::RecordsetRef& fila, const char* columna) {
    return data::Trim(data::ToText(fila->Fields(columna)));
  }

  // A number used as a colour, 0xBBGGRR; a colour that has none is 0, which is no colour.
  int Color(const data::Value& valor) {
    const double numero = captura_.Anfitrion().Funciones().ANumero(valor);
    return numero >= 0 && numero <= 0xFFFFFF ? static_cast<int>(numero) : 0;
  }

  bool EsModelo() {
    intenta_([&] {
      modelos_ = std::make_shared<data::Recordset>(captura_.Contexto().Conexion().Execute(
          "SELECT * FROM prods WHERE modelo = '" + Texto(campo::Articulo) + "' AND modelo<>''"));
    });
    return !SinFilas(modelos_);
  }

  void Construye() {
    data::RecordsetRef colores;
    data::RecordsetRef tallas;
    intenta_([&] {
      Abre(
          "SELECT prods.color AS pcolor, colores.descrip AS color, colores.visualcolor AS visualcolor FROM "
          "colores,prods WHERE prods.modelo = '" +
              modelo_ + "' AND colores.color=prods.color GROUP BY prods.color",
          colores);
    });
    intenta_([&] {
      Abre("SELECT prods.talla AS ptalla, tallas.descrip AS talla FROM tallas,prods WHERE prods.modelo = '" +
               modelo_ + "' AND tallas.talla=prods.talla GROUP BY prods.talla",
           tallas);
    });
    intenta_([&] { malla_->Load(); });
    Malla().CellEvents(false);
    intenta_([&] { Malla().Rows(kFijas + 2); });
    intenta_([&] { Malla().Cols(kFijas + 2); });
    intenta_([&] { Malla().FixedRows(kFijas); });
    intenta_([&] { Malla().FixedCols(kFijas); });
    malla_->clrCeldaBloqueada = 0;
    PonColores(colores);
    PonTallas(tallas);
    Espacia();
    Bloquea();
    PonCantidad();
    PonDescripcion();
    intenta_([&] { malla_->Caption("Modelo: " + modelo_); });
    intenta_([&] { Malla().ColWidth(kColumnaDeTexto, kAnchoTexto); });
    intenta_([&] { Malla().ColWidth(kColumnaDeClave, kAnchoClave); });
    intenta_([&] { Malla().Col(kPrimera); });
    intenta_([&] { Malla().Row(kPrimera); });
    if (Malla().Blocked(kPrimera, kPrimera)) intenta_([&] { PasaALaPrimeraLibre(); });
    Malla().CellEvents(true);
  }

  // The cursor may not rest where there is no article: it moves on as if it had come to the first
  // cell from the left. Where nothing is free it stays.
  void PasaALaPrimeraLibre() {
    Malla().Col(kPrimera - 1);
    Malla().CellEvents(true);
    Malla().Col(kPrimera);
    Malla().CellEvents(false);
    if (Malla().Blocked(Malla().Row(), Malla().Col())) Malla().MoveTo(kPrimera, kPrimera);
  }

  void PonColores(const data::RecordsetRef& colores) {
    for (int fila = kPrimera; intenta_.Mientras([&] { return !colores->Eof(); }); ++fila) {
      intenta_([&] { plataforma_.ProcessEvents(); });
      intenta_([&] { Malla().Rows(Malla().Rows() + 1); });
      intenta_([&] { Malla().TextMatrix(fila, kColumnaDeTexto, Recortado(colores, "color")); });
      intenta_([&] { Malla().TextMatrix(fila, kColumnaDeClave, Recortado(colores, "pcolor")); });
      intenta_([&] { Malla().BackColor(fila, kColumnaDeTexto, Color(colores->Fields("visualcolor"))); });
      intenta_([&] { colores->MoveNext(); });
    }
  }

  void PonTallas(const data::RecordsetRef& tallas) {
    for (int columna = kPrimera; intenta_.Mientras([&] { return !tallas->Eof(); }); ++columna) {
      intenta_([&] { plataforma_.ProcessEvents(); });
      intenta_([&] { Malla().Cols(Malla().Cols() + 1); });
      intenta_([&] { Malla().TextMatrix(kFilaDeClave, columna, Recortado(tallas, "ptalla")); });
      intenta_([&] { Malla().TextMatrix(kFilaDeTexto, columna, Recortado(tallas, "talla")); });
      intenta_([&] { tallas->MoveNext(); });
    }
  }

  void Espacia() {
    intenta_([&] { Malla().ColWidth(Malla().FixedCols(), kEspacio); });
    intenta_([&] { Malla().RowHeight(Malla().FixedRows(), kEspacio); });
    intenta_([&] { Malla().ColWidth(Malla().Cols() - 1, kEspacio); });
    intenta_([&] { Malla().RowHeight(Malla().Rows() - 1, kEspacio); });
  }

  // A combination without an article is blocked; the spacers have no key, so they are too.
  void Bloquea() {
    data::RecordsetRef articulo;
    for (int fila = kFijas; fila < Malla().Rows(); ++fila) {
      for (int columna = kFijas; columna < Malla().Cols(); ++columna) {
        intenta_([&] {
          Abre("SELECT modelo FROM prods WHERE color='" + Malla().TextMatrix(fila, kColumnaDeClave) +
                   "' AND talla='" + Malla().TextMatrix(kFilaDeClave, columna) + "' AND modelo = '" +
                   Texto(campo::Articulo) + "'",
               articulo);
        });
        if (!SinFilas(articulo)) continue;
        intenta_([&] { Malla().BackColor(fila, columna, malla_->clrCeldaBloqueada); });
        intenta_([&] { Malla().Blocked(fila, columna, true); });
      }
    }
  }

  void PonCantidad() {
    intenta_([&] { malla_->Tag(Texto(campo::Cantidad)); });
    intenta_([&] { malla_->txtRemanente.Text(Texto(campo::Cantidad)); });
    const bool sin_reparto = intenta_.Si([&] { return data::Val(Texto(campo::Cantidad)) <= 0; });
    if (sin_reparto) {
      intenta_([&] { malla_->txtRemanente.Visible(false); });
      intenta_([&] { malla_->lblCantidadRestante.Visible(false); });
    }
    intenta_([&] { malla_->cmdAceptar.Enabled(sin_reparto); });
  }

  void PonDescripcion() {
    data::RecordsetRef modelo;
    intenta_([&] { Abre("SELECT descrip FROM modelos WHERE modelo='" + modelo_ + "'", modelo); });
    if (SinFilas(modelo)) return;
    intenta_([&] { malla_->txtDescrip.Text(data::ToText(modelo->Fields("descrip"))); });
  }

  void HazRenglones() {
    for (int columna = kPrimera; columna <= Malla().Cols() - 2; ++columna) {
      for (int fila = kPrimera; fila <= Malla().Rows() - 2; ++fila) {
        if (!captura_.Abierta()) return;
        intenta_([&] {
          Abre("SELECT articulo FROM prods WHERE modelo='" + modelo_ + "' AND color='" +
                   Malla().TextMatrix(fila, kColumnaDeClave) + "' AND talla='" +
                   Malla().TextMatrix(kFilaDeClave, columna) + "'",
               captura_.Articulo());
        });
        const std::string cantidad = Malla().TextMatrix(fila, columna);
        if (SinFilas(captura_.Articulo()) || data::Val(cantidad) <= 0) continue;
        HazRenglon(cantidad);
      }
    }
  }

  void HazRenglon(const std::string& cantidad) {
    intenta_(
        [&] { captura_.Campo(campo::Articulo).Text(data::ToText(captura_.Articulo()->Fields("articulo"))); });
    intenta_([&] { captura_.Campo(campo::Cantidad).Text(cantidad); });
    for (std::size_t i = 0; i < std::size(kDeCadaRenglon); ++i) {
      intenta_([&] { captura_.Campo(kDeCadaRenglon[i]).Text(guardado_[i]); });
    }
    captura_.HazRenglon();
  }

  CapturaDeModelo& captura_;
  Trampa intenta_;
  forms::Platform& plataforma_;
  data::RecordsetRef modelos_;
  std::string modelo_;
  std::string guardado_[std::size(kDeCadaRenglon)];
  std::shared_ptr<frmMallaModelos> malla_;
};

}  // namespace

void BuscaModelo(CapturaDeModelo& captura, bool& es_modelo) { es_modelo = Busqueda(captura).Corre(); }

}  // namespace tarvik
