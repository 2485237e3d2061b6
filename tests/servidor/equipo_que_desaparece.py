"""A machine that vanishes from the network with a document open: nobody ends its session, no cable says
goodbye. Its document is free within ten seconds, and should the machine come back, it writes nothing more.
Runs by con_red.sh alone."""

import os
import shlex
import subprocess
import sys
import tempfile
import time
import unittest

import tarvik

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "python"))
import bases  # noqa: E402


def cable(como):
    subprocess.run(shlex.split(os.environ["TARVIK_CABLE"]) + [como], check=True)


def captura(forma, cantidad):
    forma.teclea(forma.txtFields[4], "A-100")
    forma.tecla("Enter")
    forma.teclea(forma.txtFields[5], cantidad)
    forma.tecla("Enter")
    forma.tecla("Enter")


def estacion_lejana(base, ruta):
    """Holds a document and goes on when it is told to; says what its operator was shown."""
    anf = tarvik.Anfitrion(base=base, usuario="BETO", estacion="E9", ruta=ruta)
    anf.EntradasSalidas().NuevaEntrada()
    forma = anf.pantallas[-1]
    forma.teclea(forma.txtFields[0], "COM")
    forma.tecla("Enter")
    captura(forma, "5")
    print("lista", flush=True)
    for _ in sys.stdin:
        antes = len(anf.mensajes)
        captura(forma, "7")
        dichos = " / ".join(mensaje.texto for mensaje in anf.mensajes[antes:])
        print(forma.Modo, "|", " ".join(dichos.split()), flush=True)


class EquipoQueDesaparece(unittest.TestCase):
    def test_its_document_is_free_within_ten_seconds_and_it_writes_nothing_more(self):
        temporal = tempfile.TemporaryDirectory()
        self.addCleanup(temporal.cleanup)
        base = bases.en_archivo(self, "")
        anf = tarvik.Anfitrion(base=base, usuario="ANA", estacion="E1", ruta=temporal.name)
        self.addCleanup(anf.cierra)
        anf.sql("INSERT INTO tipominv (tipo_movim, ent_sal, descrip) VALUES ('COM', 'E', 'Compra')")
        anf.sql("INSERT INTO ALMACEN (almacen) VALUES (1)")
        anf.sql("INSERT INTO impuestos (impuesto, valor) VALUES ('IVA', 16)")
        anf.sql("INSERT INTO prods (articulo, descrip, unidad, precio1, impuesto, costo_u, Invent) VALUES ('A-100', "
                "'Artículo', 'PZA', 10, 'IVA', 6, 1)")

        lejana = subprocess.Popen(
            shlex.split(os.environ["TARVIK_EQUIPO"]) +
            [sys.executable, "-B", __file__, base, temporal.name],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(lejana.stdout.close)
        self.addCleanup(lejana.wait)
        self.addCleanup(lejana.kill)
        self.addCleanup(lejana.stdin.close)
        self.assertEqual(lejana.stdout.readline(), "lista\n")
        self.assertEqual([(t.documento, t.usuario, t.viva) for t in anf.tenencias()], [(1, "BETO", True)])

        cable("down")
        desde = time.monotonic()
        while anf.tenencias()[0].viva:
            self.assertLess(time.monotonic() - desde, 12)
            time.sleep(0.2)
        print(f"libre a los {time.monotonic() - desde:.1f} segundos")
        forma = anf.abre("Entrada", 1)
        self.assertEqual(forma.Modo, "MODIFICACION")
        self.assertEqual([t.usuario for t in anf.tenencias()], ["ANA"])
        captura(forma, "3")

        cable("up")
        lejana.stdin.write("\n")
        lejana.stdin.flush()
        modo, dicho = lejana.stdout.readline().split(" | ")
        self.assertEqual(modo, "CONSULTA")
        self.assertIn("La entrada 1 ya no es de esta pantalla: ANA, en la estación E1, la liberó", dicho)
        cantidades = [fila["cantidad"] for fila in anf.sql("SELECT cantidad FROM entpart ORDER BY id_entrada")]
        self.assertEqual(cantidades, [5, 3])


if __name__ == "__main__":
    if len(sys.argv) == 3:  # the machine over there: base, folder
        estacion_lejana(*sys.argv[1:])
    else:
        unittest.main()
