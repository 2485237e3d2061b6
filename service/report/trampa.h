// Trampa: the error trap of one procedure. Each step runs by itself; one that fails is reported
// once, and the next one runs with what is there. It undoes nothing and raises nothing.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "service/report/reporte.h"

namespace tarvik::service {

// Example:
//   Trampa intenta{*this, "SalvaCambios"};
//   intenta([&] { Query->Limpia(); });
//   if (intenta.Si([&] { return rs->Eof(); })) return;
//
// A step is one call on a service, recordset, connection or builder, with the calls in its
// arguments, or one assignment to a control.
class Trampa {
 public:
  // Both live at least as long as the trap.
  Trampa(Reportero& reportero, std::string_view procedimiento)
      : reportero_(reportero), procedimiento_(procedimiento) {}
  Trampa(const Trampa&) = delete;
  Trampa& operator=(const Trampa&) = delete;

  // Runs a step. Gives false if it failed, which has then been reported.
  template <class Paso>
  bool operator()(Paso&& paso) {
    try {
      std::forward<Paso>(paso)();
      return true;
    } catch (const data::Unrecoverable&) {
      throw;
    } catch (const std::exception& error) {
      Reporta(error);
      return false;
    }
  }

  // A test. One that fails is reported and counts as true: the run goes on with the first statement
  // of the block that it guards. So the block first is the one that refuses, ends or finds nothing.
  template <class Prueba>
  bool Si(Prueba&& prueba) {
    bool cierto = true;
    (*this)([&] { cierto = std::forward<Prueba>(prueba)(); });
    return cierto;
  }

  // The test of a loop. One that fails is reported and ends the loop.
  template <class Prueba>
  bool Mientras(Prueba&& prueba) {
    bool sigue = false;
    (*this)([&] { sigue = prueba(); });
    return sigue;
  }

 private:
  void Reporta(const std::exception& error) {
    // 0: this code carries no line numbers. The log's readers know the text by its end.
    reportero_.ReportaError(reportero_.Modulo(), procedimiento_,
                            std::string(error.what()) + " código duro: 0");
  }

  Reportero& reportero_;
  std::string procedimiento_;
};

// The stretch of a procedure in which errors are dropped and the next statement runs.
class Ignora {
 public:
  template <class Paso>
  void operator()(Paso&& paso) const {
    try {
      std::forward<Paso>(paso)();
    } catch (const data::Unrecoverable&) {
      throw;
    } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): dropped by design
    }
  }
  template <class Prueba>
  bool Si(Prueba&& prueba) const {
    bool cierto = true;
    (*this)([&] { cierto = std::forward<Prueba>(prueba)(); });
    return cierto;
  }
};

}  // namespace tarvik::service
