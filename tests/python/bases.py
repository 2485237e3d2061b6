"""A fresh base for one test, on the engine that TARVIK_TEST_BASE names: by default the embedded one; on a
server a base of its own, dropped at the test's end."""

import itertools
import os
import re
import tempfile

import tarvik

SERVIDOR = os.environ.get("TARVIK_TEST_BASE", "")
EN_SERVIDOR = SERVIDOR.startswith("postgresql:")

_cuenta = itertools.count(1)


def _en_el_servidor(caso):
    with tempfile.TemporaryDirectory() as ruta:
        # The server's own base takes the statements that make and drop the others.
        anf = tarvik.Anfitrion(base=SERVIDOR, usuario="ANA", estacion="E1", ruta=ruta)
        nombre = f"tarvik_py_{os.getpid()}_{next(_cuenta)}"
        anf.sql(f"CREATE DATABASE {nombre} TEMPLATE template0")

    def quita():
        anf.sql(f"DROP DATABASE {nombre} WITH (FORCE)")
        anf.cierra()

    caso.addCleanup(quita)
    return re.sub(r"^(postgresql://[^/?]*/)[^?]*", rf"\g<1>{nombre}", SERVIDOR)


def en_memoria(caso):
    """For one host."""
    return _en_el_servidor(caso) if EN_SERVIDOR else "sqlite::memory:"


def en_archivo(caso, archivo):
    """For several, one after the other or at once."""
    return _en_el_servidor(caso) if EN_SERVIDOR else f"sqlite:{archivo}"
