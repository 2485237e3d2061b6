"""A day of sales played through the goods-out wizard, run as a user runs it: on bases of its own, with
files of its own, through the command line."""

import sqlite3

from test_examples import Caso

TITULOS = "factura,articulo,cantidad,precio,cliente\n"


class CasoDelDia(Caso):
    PROGRAMA = "surte_dia.py"

    def tienda(self, existsalidas=0, **existencias):
        """The demonstration shop, with ANA's permission and goods that a delivery brought."""
        anf = self.abre(demo=True)
        anf.sql("UPDATE usuarios SET existsalidas = ? WHERE usuario = 'ANA'", existsalidas)
        for articulo, cantidad in existencias.items():
            articulo = articulo.replace("_", "-")
            anf.sql("INSERT INTO movsinv (ent_sal, operacion, almacen, articulo, cantidad, f_movim, cerrado) "
                    "VALUES ('E', 'A+', 1, ?, ?, '2020-01-01', 0)", articulo, cantidad)
            anf.sql("INSERT INTO existenciaalmacen (almacen, articulo, existencia) VALUES (1, ?, ?)", articulo,
                    cantidad)
            anf.sql("UPDATE prods SET alm1 = ? WHERE articulo = ?", cantidad, articulo)
        anf.cierra()

    def surte(self, renglones, *argumentos, codigo=0, titulos=TITULOS):
        texto = renglones if isinstance(renglones, bytes) else titulos + renglones
        hecho = self.corre(self.PROGRAMA, self.archivo("dia.csv", texto), *argumentos)
        self.assertEqual(hecho.returncode, codigo, hecho.stdout + hecho.stderr)
        return hecho

    def lineas(self, salida):
        return [(f["articulo"], f["cantidad"], f["precio"]) for f in self.abre().sql(
            "SELECT articulo, cantidad, precio FROM salpart WHERE salida = ? ORDER BY id_salida", salida)]

    def existencia(self, articulo):
        """By the ledger, by the warehouse and by the article's own column: one figure, or the test stops here."""
        fila = self.abre().sql(
            "SELECT (SELECT SUM(CASE ent_sal WHEN 'E' THEN cantidad ELSE -cantidad END) FROM movsinv WHERE "
            "articulo = prods.articulo AND almacen = 1) AS movido, (SELECT existencia FROM existenciaalmacen WHERE "
            "articulo = prods.articulo AND almacen = 1) AS existencia, alm1 FROM prods WHERE articulo = ?", articulo)[0]
        self.assertEqual(fila["movido"], fila["existencia"])
        self.assertEqual(fila["movido"], fila["alm1"])
        return fila["movido"]

    def mano(self, disparador):
        """Somebody else's hand in the base, which no screen has: each time what it says happens, it acts."""
        conexion = sqlite3.connect(self.carpeta / "almacen.db")
        self.addCleanup(conexion.close)
        conexion.execute("DROP TRIGGER IF EXISTS mano")
        conexion.execute(f"CREATE TRIGGER mano AFTER {disparador}; END")
        conexion.commit()

    def rechazado(self, hecho, linea, motivo):
        self.assertRegex(hecho.stdout, rf"(?m)^ *{linea}  .*{motivo}")

    def consulta(self, hecho, titulo):
        """The answer that the example printed under one of its questions, by the names of its columns."""
        renglones = hecho.stdout.splitlines()
        desde = renglones.index(f"  {titulo}") + 1
        guiones = next(n for n in range(desde, len(renglones)) if set(renglones[n].strip()) == {"-", " "} or
                       set(renglones[n].strip()) == {"-"})
        self.assertIn("WITH libro AS (", renglones[desde])
        return dict(zip(renglones[guiones - 1].split(), map(float, renglones[guiones + 1].split())))

    # ---- the day ----
