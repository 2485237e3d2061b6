// How long a revision of a million movements takes. Too long for every run: it is asked for by name, with
// --gtest_also_run_disabled_tests --gtest_filter=*UnMillon*.
#include <chrono>
#include <iostream>

#include "tests/host/revision_apoyo.h"

namespace tarvik::tests {
namespace {

class UnMillon : public Libros {
 protected:
  // 500 articles in two warehouses; 16,000 documents of 50 lines each, half in and half out, and of these
  // last every fourth a transfer: a million movements with their balances.
  void Llena() {
    const std::string numbers = EnServidor() ? "(SELECT g AS n FROM generate_series(1, 400000) g)"
                                             : "(WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n + 1 "
                                               "FROM c WHERE n < 400000) SELECT n FROM "
                                               "c)";
    const std::string article = "'P' || (l.n % 500)";
    Sql("INSERT INTO entradas (entrada, tipo_doc, f_emision, almacen, estado, ocupado) SELECT l.n, 'COM', "
        "'2024-03-05', 1, 'CO', 0 FROM " +
        numbers + " l WHERE l.n <= 8000");
    Sql("INSERT INTO salidas (salida, folio, estacion, tipo_doc, f_emision, almacen, almt, estraspaso, "
        "estado, ocupado) "
        "SELECT l.n, l.n, 'E1', 'VTA', '2024-03-05', 1, 2, CASE WHEN l.n % 2 = 0 THEN 1 ELSE 0 END, 'CO', 0 "
        "FROM " +
        numbers + " l WHERE l.n <= 8000");
    Sql("INSERT INTO entpart (id_entrada, entrada, articulo, cantidad, precio) SELECT l.n, (l.n + 49) / "
        "50, " +
        article + ", 3 + l.n % 7, 10 FROM " + numbers + " l");
    Sql("INSERT INTO salpart (id_salida, salida, articulo, cantidad, precio) SELECT l.n, (l.n + 49) / 50, " +
        article + ", 1 + l.n % 2, 10 FROM " + numbers + " l");
    const std::string ledger =
        "INSERT INTO movsinv (ent_sal, operacion, movimiento, documento, articulo, cantidad, Precio, "
        "almacen, f_movim, "
        "cerrado, usuario, usuhora, importe, ";
    Sql(ledger +
        "id_entrada) SELECT 'E', 'EN', entrada, entrada, articulo, cantidad, precio, 1, '2024-03-05', 0, "
        "'ANA', "
        "'10:00:00', 30, id_entrada FROM entpart ORDER BY id_entrada");
    Sql(ledger +
        "id_salida) SELECT 'S', 'SA', salida, salida, articulo, cantidad, precio, 1, '2024-03-05', 0, 'ANA', "
        "'10:00:00', 30, id_salida FROM salpart ORDER BY id_salida");
    Sql(ledger +
        "id_salida) SELECT 'E', 'T+', p.salida, p.salida, p.articulo, p.cantidad, 0, 2, '2024-03-05', 0, "
        "'ANA', "
        "'10:00:00', 30, p.id_salida FROM salpart p INNER JOIN salidas s ON s.salida = p.salida WHERE "
        "s.estraspaso = 1 "
        "ORDER BY p.id_salida");
    Sql("UPDATE movsinv SET saldo = s.saldo FROM (SELECT id AS cual, SUM(CASE WHEN ent_sal = 'E' THEN "
        "cantidad ELSE "
        "-cantidad END) OVER (PARTITION BY articulo, almacen ORDER BY id) AS saldo FROM movsinv) s WHERE "
        "movsinv.id = "
        "s.cual");
    Sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) SELECT almacen, articulo, SUM(CASE "
        "WHEN ent_sal "
        "= 'E' THEN cantidad ELSE -cantidad END) FROM movsinv GROUP BY almacen, articulo");
    Sql("INSERT INTO prods (articulo, ALM1, ALM2) SELECT articulo, SUM(CASE WHEN almacen = 1 THEN existencia "
        "END), "
        "SUM(CASE WHEN almacen = 2 THEN existencia END) FROM existenciaalmacen GROUP BY articulo");
    Sql("INSERT INTO series (nombre, valor) VALUES ('MovEnt', 8000), ('Salida', 8000)");
    if (EnServidor()) Sql("ANALYZE");
  }
  template <class Act>
  void Mide(const std::string& what, Act act) {
    const auto begin = std::chrono::steady_clock::now();
    const Observaciones found = act();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    std::cout << what << ": " << took.count() << " s, " << found.size() << " observaciones\n";
  }
};

TEST_F(UnMillon, DISABLED_IsReadInSeconds) {
  Llena();
  ASSERT_EQ(Uno("SELECT COUNT(*) FROM movsinv"), "1000000");
  Mide("revisión", [&] {
    const Observaciones found = Revisa();
    EXPECT_EQ(Dichas(found), "");
    return found;
  });
  Mide("mirada rápida", [&] { return host::Rapida(Quien()); });
  Sql("UPDATE existenciaalmacen SET existencia = existencia + 1");
  Mide("revisión con todas las existencias dañadas", [&] { return Revisa(); });
}

}  // namespace
}  // namespace tarvik::tests
