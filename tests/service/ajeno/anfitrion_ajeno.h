// The smallest program around the module: every interface of service/contract/host_services.h in the fewest
// lines that let a goods-in line be received. A start for whoever writes a real one. Nothing here comes from
// host/ or from an engine; what a service of a real program must do besides stands in the contract.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "data/connection.h"
#include "data/error.h"
#include "data/number.h"
#include "data/statement.h"
#include "data/text.h"
#include "forms/headless_platform.h"
#include "service/contract/host_services.h"

namespace tarvik::ajeno {

// A base that answers by heart, and notes what it is told to write.
class Conexion : public data::Connection {
 public:
  std::vector<std::pair<std::string, data::Rows>> respuestas;  // a part of the question, and its rows
  std::vector<std::string> escrito;

  data::Rows Select(std::string_view text) override {
    data::RequireOneStatement(text);
    for (const auto& [parte, filas] : respuestas) {
      if (text.find(parte) != std::string_view::npos) return filas;
    }
    return {};
  }
  data::Rows Execute(std::string_view text) override {
    if (data::IsSelect(text)) return Select(text);
    data::RequireOneStatement(text);
    escrito.emplace_back(text);
    return {};
  }
};

class Ambiente : public service::Ambiente {
 public:
  ajeno::Conexion conexion;
  std::string ruta = ".";

  data::Connection& Conexion() override { return conexion; }
  std::string Usuario() override { return "ANA"; }
  std::string Estacion() override { return "CAJA"; }
  std::string Moneda() override { return "MXN"; }
  std::string ClaveLocal() override { return ""; }
  std::string FormatoImporte() override { return "###,###,##0.00"; }
  std::string FormatoCantidad() override { return "###,###,##0.####"; }
  data::RecordsetRef Parametros() override {
    return std::make_shared<data::Recordset>(
        data::Rows{{"Almacen", "Lector", "PorSurt", "EnVenta"}, {{1, 0, 0, 0}}});
  }
  std::string RutaBase() override { return ruta; }
  int ValorFechaA() override { return 0; }
  int ValorFechaB() override { return 0; }
  void ValorDeGancho(const data::Value&) override {}
};

class Query : public service::Query {
 public:
  Query() = default;

  void Conexion(data::Connection& connection) override { conexion_ = &connection; }
  void Limpia() override { *this = Query(conexion_); }
  void TipoSentencia(std::string_view kind) override {
    tipo_ = kind;
    directa_.clear();
  }
  void AgregaCampo(std::string_view tabla, std::string_view campo, const data::Value& valor) override {
    if (tabla_ != tabla) columnas_ = valores_ = pares_ = "";
    tabla_ = tabla;
    const bool numero = valor.As<std::int64_t>() || valor.As<double>();
    const std::string texto = data::ToText(valor);
    const std::string literal = valor.IsNull() ? "NULL" : numero ? texto : data::Quoted(texto);
    const std::string coma = columnas_.empty() ? "" : ", ";
    columnas_ += coma + std::string(campo);
    valores_ += coma + literal;
    pares_ += coma + std::string(campo) + " = " + literal;
  }
  void Condicion(std::string_view text) override { condicion_ = text; }
  void TextoSql(std::string& text) override {
    text = !directa_.empty()    ? directa_
           : columnas_.empty()  ? ""
           : tipo_ == "INSERT"  ? "INSERT INTO " + tabla_ + " (" + columnas_ + ") VALUES (" + valores_ + ")"
           : condicion_.empty() ? ""
                                : "UPDATE " + tabla_ + " SET " + pares_ + " WHERE " + condicion_;
  }
  void SentenciaDirecta(std::string_view text) override { directa_ = text; }
  void Ejecuta() override {
    std::string text;
    TextoSql(text);
    if (!text.empty()) conexion_->Execute(text);
  }

 private:
  explicit Query(data::Connection* conexion) : conexion_(conexion) {}

  data::Connection* conexion_ = nullptr;
  std::string tipo_, tabla_, columnas_, valores_, pares_, condicion_, directa_;
};

class Funciones : public service::Funciones {
 public:
  explicit Funciones(forms::Platform& plataforma) : plataforma_(plataforma) {}

  void AbreRecordset(const std::string& text, data::Connection& connection,
                     data::RecordsetRef& out) override {
    out = std::make_shared<data::Recordset>(connection.Select(text));
  }
  void AbreConsulta(const std::string& text, data::Connection& connection, data::RecordsetRef& out) override {
    AbreRecordset(text, connection, out);
  }
  void NuevoId(const std::string&, data::Connection&, std::int32_t& out) override { out = ++ultimo_; }
  double ANumero(const data::Value& value) override { return data::ToNumber(value); }
  std::string TextoDe(const data::Value& value) override { return data::ToText(value); }
  bool EstaVacio(const std::string& text) override { return data::Trim(text).empty(); }
  bool ExisteClave(const data::Value& value, const std::string& column, const std::string& table,
                   data::Connection& connection) override {
    const std::string pregunta = "SELECT 1 FROM " + table + " WHERE " + column + " = ";
    return !connection.Select(pregunta + data::Quoted(data::ToText(value))).rows.empty();
  }
  void TraeMensaje(int number, service::Ambiente&, std::string& out) override {
    out = std::to_string(number);
  }
  void MuestraMensaje(const std::string& text, int style, service::Ambiente&) override {
    plataforma_.ShowBox(forms::BoxKind::Message, text, style);
  }
  void MuestraError(const std::string& text) override {
    plataforma_.ShowBox(forms::BoxKind::Error, text, forms::kBoxPlain);
  }
  void Pregunta(const std::string& text, int style, bool& out) override {
    out = plataforma_.ShowBox(forms::BoxKind::Question, text, style);
  }
  void FechaValida(const data::Date&, service::Ambiente&, bool& out) override { out = true; }
  void FechaDeTrabajo(int, int, data::Date& out) override { out = plataforma_.Now().date; }
  std::unique_ptr<service::Query> NuevoQuery() override { return std::make_unique<Query>(); }
  void PresentaForma(forms::Form&, service::Ambiente&) override {}
  void RegresaForma(forms::Form&, service::Ambiente&, const std::string&) override {}
  void EnviaTeclas(const std::string&, bool) override {}
  int TeclaMayuscula(int& key, forms::Control&) override {
    return key = static_cast<int>(data::Upper(static_cast<char32_t>(key)));
  }
  int TeclaNumerica(int& key, forms::Control&) override { return key; }
  std::string FormateaTexto(forms::TextBox& field, service::Ambiente&) override { return field.Text(); }
  void FormateaCantidad(double value, const std::string& format, std::string& out) override {
    out = data::FormatNumber(value, format);
  }
  void NumeroSql(double value, std::string& out) override { out = data::PlainNumber(value); }
  void CantidadEnVenta(const std::string&, data::Connection&, double& out) override { out = 0; }
  void CantidadPorSurtir(const std::string&, data::Connection&, double& out) override { out = 0; }
  void AgregaArchivoLog(const std::string& path, const std::string& text) override {
    plataforma_.AppendFile(path, text);
  }
  void ExisteArchivo(const std::string& path, bool& out) override { out = plataforma_.FileExists(path); }
  void BorraArchivo(const std::string& path) override { plataforma_.DeleteFile(path); }

 private:
  forms::Platform& plataforma_;
  std::int32_t ultimo_ = 0;
};

// No routines, no printer, no pickers and no posting: what can't be had is a failure with a word to the
// operator. A screen works without them up to the point where it asks.
class Host : public service::Host, private service::ConsultasCatalogo {
 public:
  forms::HeadlessPlatform plataforma;

  forms::Platform& Plataforma() override { return plataforma; }
  service::Funciones& Funciones() override { return funciones_; }
  service::ConsultasCatalogo& ConsultasCatalogo() override { return *this; }
  std::unique_ptr<service::MovimientoInventario> NuevoMovimiento() override { NoHay("afectación"); }
  std::unique_ptr<service::BuscadorCatalogo> NuevoBuscador() override { NoHay("búsqueda"); }
  std::unique_ptr<service::AuxiliarNumerico> NuevoAuxiliar() override { NoHay("calculadora"); }
  std::unique_ptr<service::ListaArticulos> NuevaLista() override { NoHay("lista de artículos"); }

 private:
  void BuscaCatalogo(const std::string&, forms::Form&, service::Ambiente&) override {}
  void ImprimeDocumento(const std::string&, std::int32_t, service::Ambiente&, forms::Form&) override {
    NoHay("impresora");
  }
  [[noreturn]] static void NoHay(const char* que) {
    throw data::Error(std::string("Este programa no tiene ") + que);
  }

  ajeno::Funciones funciones_{plataforma};
};

}  // namespace tarvik::ajeno
