// The deployer's routines behind the keys of a real screen: loading, running and failing.
#include "tests/python_hooks/apoyo.h"

namespace tarvik::tests {
namespace {

TEST_F(Ganchos, SinCarpetaNoHayInterprete) {
  EXPECT_TRUE(Carga().empty());
  EXPECT_FALSE(rutinas->EnMarcha());
  EXPECT_EQ(rutinas->Carpeta(), (ruta / "ganchos").string());
}

TEST_F(Ganchos, UnaCarpetaSinArchivosPyNoArrancaNada) {
  Archivo("LEEME.txt", "nada");
  fs::create_directories(ruta / "ganchos" / "carpeta.py");
  EXPECT_TRUE(Carga().empty());
  EXPECT_FALSE(rutinas->EnMarcha());
}

TEST_F(Ganchos, LaCarpetaIndicadaQueFaltaSeDice) {
  const auto fallos = Carga((ruta / "no-hay").string());
  ASSERT_EQ(fallos.size(), 1U);
  EXPECT_EQ(fallos[0].archivo, (ruta / "no-hay").string());
  EXPECT_EQ(fallos[0].texto, "no existe la carpeta");
  EXPECT_FALSE(rutinas->EnMarcha());
}

TEST_F(Ganchos, UnaRutinaCambiaUnCampoYSeAnota) {
  Archivo("observaciones.py",
          "import tarvik\n"
          "\n"
          "def ENTRADA001(forma, ambiente):\n"
          "    forma.RichTextBox2.Text = 'Recibe ' + ambiente.Usuario\n"
          "    forma.txtFields[6].Enabled = False\n"
          "    forma.fg2.setTextMatrix(1, 1, 'ñandú')\n");
  EXPECT_TRUE(Carga().empty());
  ASSERT_TRUE(rutinas->EnMarcha());
  ASSERT_EQ(rutinas->Cargadas().size(), 1U);
  EXPECT_EQ(rutinas->Cargadas()[0].clave, "ENTRADA001");
  EXPECT_EQ(rutinas->Cargadas()[0].archivo, (ruta / "ganchos" / "observaciones.py").string());
  EXPECT_EQ(rutinas->Cargadas()[0].linea, 3);

  auto& f = Nueva();
  EXPECT_EQ(f.RichTextBox2.Text(), "Recibe ANA");
  const Corrida* run = observador.Ultima("ENTRADA001");
  ASSERT_TRUE(run);
  EXPECT_EQ(observador.Cambios("ENTRADA001"),
            (std::vector<std::string>{"txtFields(6).Enabled: sí > no", "RichTextBox2:  > Recibe ANA",
                                      "fg2(1, 1):  > ñandú"}));
  EXPECT_FALSE(run->error);
  EXPECT_GE(run->milisegundos, 0);
  EXPECT_LT(run->milisegundos, 5000);
  EXPECT_FALSE(run->cancelado_antes);
  EXPECT_FALSE(run->cancelado_despues);
  EXPECT_EQ(observador.empezadas, std::vector<std::string>{"ENTRADA001"});
  EXPECT_TRUE(bitacora_propia.empty());
}

TEST_F(Ganchos, CancelaProcesoDetieneElRenglon) {
  Archivo("limite.py",
          "def ENTRADA005(forma, ambiente):\n"
          "    if float(forma.txtFields[5].Text.replace(',', '')) > 100:\n"
          "        forma.CancelaProceso = True\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = ConRenglones({{"A-100", "500"}});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  const Corrida* run = observador.Ultima("ENTRADA005");
  ASSERT_TRUE(run);
  EXPECT_FALSE(run->cancelado_antes);
  EXPECT_TRUE(run->cancelado_despues);
  EXPECT_EQ(observador.Cambios("ENTRADA005"), std::vector<std::string>{"CancelaProceso: no > sí"});
  EXPECT_FALSE(f.CancelaProceso);  // taken by the step that obeys

  Renglon(f, "A-100", "5");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_FALSE(observador.Ultima("ENTRADA005")->cancelado_despues);
}

TEST_F(Ganchos, DosArchivosParaUnaClaveCorrenEnOrdenDeNombre) {
  Archivo("20-b.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado += 'b'\n");
  Archivo("10-a.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado += 'a'\n");
  Archivo("30-c.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado += 'c'\n");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "abc");
  ASSERT_EQ(observador.corridas.size(), 3U);
  EXPECT_EQ(fs::path(observador.corridas[0].rutina.archivo).filename(), "10-a.py");
  EXPECT_EQ(fs::path(observador.corridas[2].rutina.archivo).filename(), "30-c.py");
}

TEST_F(Ganchos, LaSegundaNoCorreSiLaPrimeraCancelo) {
  Archivo("10.py", "def ENTRADA005(forma, ambiente):\n    forma.CancelaProceso = True\n");
  Archivo("20.py", "def ENTRADA005(forma, ambiente):\n    forma.cEstado = 'corrió'\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = ConRenglones({{"A-100", "1"}});
  EXPECT_EQ(f.cEstado, "");
  EXPECT_EQ(observador.corridas.size(), 1U);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
}

TEST_F(Ganchos, UnaRutinaQueFallaEsUnErrorDeSuClaveConArchivoYLinea) {
  Archivo("_comun.py",
          "def revisa(forma):\n    forma.cEstado = 'a medias'\n    raise ValueError('Falta el pedido')\n");
  Archivo("pedido.py", "from _comun import revisa\n\ndef ENTRADA005(forma, ambiente):\n    revisa(forma)\n");
  Archivo("zeta.py", "def ENTRADA005(forma, ambiente):\n    forma.cEstado = 'no debe correr'\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = ConRenglones({{"A-100", "2"}});
  EXPECT_EQ(Reportes(), std::vector<std::string>{Reporte("NuevaPartida", "Falta el pedido")});
  const Corrida* run = observador.Ultima("ENTRADA005");
  ASSERT_TRUE(run && run->error);
  EXPECT_EQ(run->error->texto, "Falta el pedido");
  EXPECT_EQ(python::LugarDe(run->error->archivo, run->error->linea), "_comun.py, línea 3");
  EXPECT_TRUE(Contiene(run->rastro, "pedido.py\", line 4"));
  EXPECT_TRUE(Contiene(run->rastro, "ValueError: Falta el pedido"));
  EXPECT_EQ(f.cEstado, "a medias");  // the later file's routine did not run
  ASSERT_EQ(bitacora_propia.size(), 1U);
  EXPECT_TRUE(bitacora_propia[0].starts_with("ENTRADA005 | _comun.py, línea 3: Falta el pedido\n"));
  // The day's log has the text alone, as with any other failure.
  EXPECT_TRUE(Contiene(ArchivoDelDia(), "Description: Falta el pedido código duro: 0\r\n"));
  EXPECT_FALSE(Contiene(ArchivoDelDia(), "línea"));
  // The screen goes on, and the line was stored by the step after the failed one.
  EXPECT_TRUE(f.Open());
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Ganchos, ElErrorDelAnfitrionLlegaConSuTexto) {
  Archivo("campo.py", "def ENTRADA009(forma, ambiente):\n    forma.txtFields[99].Text = 'x'\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = Nueva();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  const Corrida* run = observador.Ultima("ENTRADA009");
  ASSERT_TRUE(run && run->error);
  EXPECT_EQ(run->error->texto, "No existe el control txtFields(99)");
  EXPECT_EQ(run->error->linea, 2);
  EXPECT_EQ(f.txtFields(campo::Descripcion).Text(), "Martillo de uña");
}

TEST_F(Ganchos, PedirElFinDelProgramaNoLoTermina) {
  Archivo("fin.py", "import sys\ndef ENTRADA009(forma, ambiente):\n    sys.exit(3)\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = ConRenglones({{"A-100", "2"}});
  const Corrida* run = observador.Ultima("ENTRADA009");
  ASSERT_TRUE(run && run->error);
  EXPECT_EQ(run->error->texto, "la rutina pidió terminar el programa; el programa sigue abierto");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(f.Open());
}

TEST_F(Ganchos, UnaExcepcionQueNoSabeDescribirseTampocoRompeNada) {
  Archivo("mala.py",
          "class Mala(Exception):\n"
          "    def __str__(self):\n"
          "        raise RuntimeError('ni esto')\n"
          "def ENTRADA009(forma, ambiente):\n"
          "    raise Mala()\n");
  EXPECT_TRUE(Carga().empty());
  ConRenglones({{"A-100", "2"}});
  const Corrida* run = observador.Ultima("ENTRADA009");
  ASSERT_TRUE(run && run->error);
  EXPECT_EQ(run->error->texto, "Mala");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
}

TEST_F(Ganchos, UnArchivoQueNoCargaSeDiceYLosDemasCargan) {
  Archivo("10-sintaxis.py", "x = 1\ndef ENTRADA001(forma, ambiente)\n    pass\n");
  Archivo("20-modulo.py", "import no_existe_este_modulo\n");
  Archivo("30-nombre.py", "\n\nprinta('hola')\n");
  Archivo("40-division.py", "def f():\n    return 1 / 0\nf()\n");
  Archivo("50-fin.py", "raise SystemExit(1)\n");
  Archivo("60-sangria.py", "def f():\npass\n");
  Archivo("70-bytes.py", "x = '\xff\xfe'\n");
  Archivo("90-bueno.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado = 'bien'\n");
  const auto fallos = Carga();
  std::vector<std::string> dichos;
  for (const auto& fallo : fallos)
    dichos.push_back(python::LugarDe(fallo.archivo, fallo.linea) + ": " + fallo.texto);
  ASSERT_EQ(dichos.size(), 7U);
  EXPECT_EQ(dichos[0], "10-sintaxis.py, línea 2: error de sintaxis (expected ':')");
  EXPECT_EQ(dichos[1], "20-modulo.py, línea 1: no se encuentra el módulo «no_existe_este_modulo»");
  EXPECT_EQ(dichos[2], "30-nombre.py, línea 3: no existe el nombre «printa»");
  EXPECT_EQ(dichos[3], "40-division.py, línea 2: ZeroDivisionError: division by zero");
  EXPECT_EQ(dichos[4], "50-fin.py, línea 1: la rutina pidió terminar el programa; el programa sigue abierto");
  EXPECT_TRUE(dichos[5].starts_with("60-sangria.py, línea 2: la sangría no es correcta")) << dichos[5];
  EXPECT_TRUE(dichos[6].starts_with("70-bytes.py")) << dichos[6];
  EXPECT_TRUE(Contiene(dichos[6], "error de sintaxis")) << dichos[6];
  EXPECT_EQ(bitacora_propia.size(), 7U);
  EXPECT_EQ(bitacora_propia[1], "rutinas | " + dichos[1]);
  EXPECT_EQ(Nueva().cEstado, "bien");

  const std::string aviso = python::AvisoDeCarga(fallos);
  EXPECT_TRUE(Contiene(aviso, "\n10-sintaxis.py, línea 2: error de sintaxis")) << aviso;
  EXPECT_TRUE(Contiene(aviso, "trabajan como siempre")) << aviso;
  EXPECT_EQ(aviso.find('!'), std::string::npos);
}

TEST_F(Ganchos, LoQueNuncaSeLlamariaSeAvisa) {
  Archivo("dudas.py",
          "def ENTRADA099(forma, ambiente): pass\n"
          "def ENTRADA005(forma): pass\n"
          "async def ENTRADA009(forma, ambiente): pass\n"
          "def ayudante(): pass\n"
          "ENTRADA012 = 5\n"
          "def ENTRADA006(forma, ambiente, otra=None): pass\n");
  const auto fallos = Carga();
  ASSERT_EQ(fallos.size(), 3U);
  EXPECT_EQ(fallos[0].linea, 1);
  EXPECT_EQ(fallos[0].texto, "ENTRADA099 no es ninguna clave: no se llamará nunca");
  EXPECT_EQ(fallos[1].linea, 2);
  EXPECT_EQ(fallos[1].texto, "ENTRADA005 debe tomar dos argumentos, forma y ambiente: no se llamará");
  EXPECT_EQ(fallos[2].linea, 3);
  ASSERT_EQ(rutinas->Cargadas().size(), 1U);
  EXPECT_EQ(rutinas->Cargadas()[0].clave, "ENTRADA006");
}

TEST_F(Ganchos, UnaRutinaQueDisparaOtraClaveSeAnotaDespuesDeElla) {
  Archivo("dos.py",
          "def ENTRADA001(forma, ambiente):\n"
          "    forma.txtFields[4].Text = 'A-100'\n"
          "    forma.PonDescripcion()\n"
          "def ENTRADA009(forma, ambiente):\n"
          "    forma.txtFields[25].Text = 'dentro'\n");
  EXPECT_TRUE(Carga().empty());
  Nueva();
  ASSERT_GE(observador.corridas.size(), 2U);
  EXPECT_EQ(observador.empezadas.front(), "ENTRADA001");
  EXPECT_EQ(observador.corridas.front().rutina.clave, "ENTRADA009");
  EXPECT_EQ(observador.corridas.back().rutina.clave, "ENTRADA001");
  const auto outer = observador.Cambios("ENTRADA001");
  EXPECT_TRUE(std::find(outer.begin(), outer.end(), "txtFields(25):  > dentro") != outer.end());
}

TEST_F(Ganchos, LaMismaPantallaYElMismoModuloQueEnUnGuion) {
  Archivo("modulo.py",
          "import tarvik\n"
          "def ENTRADA001(forma, ambiente):\n"
          "    assert isinstance(forma, tarvik.frmEntradasWizard), type(forma)\n"
          "    assert isinstance(ambiente, tarvik.Ambiente), type(ambiente)\n"
          "    assert forma.Ambiente.Usuario == 'ANA'\n"
          "    ambiente.Parametros['Turno'] = 2\n"
          "    assert ambiente.Parametros['Turno'] == 2\n"
          "    try:\n"
          "        forma.txtFields[99]\n"
          "    except tarvik.Error as error:\n"
          "        forma.cEstado = str(error)\n");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "No existe el control txtFields(99)");
  EXPECT_FALSE(observador.Ultima("ENTRADA001")->error);
  EXPECT_EQ(data::ToText(anfitrion->Ambiente().Parametro("Turno")), "2");
}

TEST_F(Ganchos, UnArchivoConNombreDeLaBibliotecaNoLaTapa) {
  Archivo("json.py",
          "def ENTRADA001(forma, ambiente):\n    import json\n    forma.cEstado = json.dumps([1])\n");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "[1]");
}

TEST_F(Ganchos, NoQuedaNadaEnLaCarpeta) {
  Archivo("_comun.py", "x = 1\n");
  Archivo("a.py", "import _comun\n");
  EXPECT_TRUE(Carga().empty());
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(ruta / "ganchos")) names.push_back(entry.path().filename());
  EXPECT_EQ(names.size(), 2U);
}

TEST_F(Ganchos, UnArchivoImportadoPorOtroSeEjecutaUnaVez) {
  Archivo("b.py", "import tarvik\ntarvik.veces = getattr(tarvik, 'veces', 0) + 1\n");
  Archivo("a.py", "import b\n");
  Archivo("c.py",
          "import b, tarvik\ndef ENTRADA001(forma, ambiente):\n    forma.cEstado = str(tarvik.veces)\n");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "1");
}

TEST_F(Ganchos, AlTerminarLasClavesQuedanSinRutina) {
  Archivo("a.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado = 'corrió'\n");
  EXPECT_TRUE(Carga().empty());
  rutinas.reset();
  EXPECT_EQ(Nueva().cEstado, "");
}

TEST_F(Ganchos, UnaSegundaVezSeVuelveAEmpezar) {
  Archivo("a.py",
          "import tarvik\ndef ENTRADA001(forma, ambiente):\n    forma.cEstado = tarvik.Error.__name__\n");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "Error");
  EXPECT_TRUE(Carga().empty());
  EXPECT_EQ(Nueva().cEstado, "Error");
}

TEST_F(Ganchos, MuchosCambiosSeCuentanPeroNoSeGuardanTodos) {
  Archivo("muchos.py",
          "def ENTRADA001(forma, ambiente):\n"
          "    for i in range(1, 301):\n"
          "        forma.fg2.setTextMatrix(i, 1, str(i))\n");
  EXPECT_TRUE(Carga().empty());
  Nueva();
  const Corrida* run = observador.Ultima("ENTRADA001");
  ASSERT_TRUE(run);
  EXPECT_FALSE(run->error);
  EXPECT_EQ(run->cambios.size(), python::kCambios);
  EXPECT_EQ(run->cambios.size() + run->cambios_omitidos, 300U);
}

TEST_F(Ganchos, UnaPantallaQueLaRutinaCierraSeVaSinDaño) {
  Archivo("10.py", "def ENTRADA009(forma, ambiente):\n    forma.cierra()\n");
  EXPECT_TRUE(Carga().empty());
  auto& f = Nueva();
  const auto held = f.shared_from_this();
  Teclea(f, f.txtFields(campo::Articulo), "A-100");
  Tecla(f, "Enter");
  plataforma.Advance(1000);
  EXPECT_FALSE(f.Open());
  EXPECT_TRUE(no_atrapados.empty());
  EXPECT_EQ(Nueva().Modo, "ALTA");
}

// What the examples promise, so that they stay true.
TEST_F(Ganchos, LosEjemplosCarganYHacenLoQueDicen) {
  EXPECT_TRUE(Carga(std::string(TARVIK_SOURCE_DIR) + "/examples/ganchos").empty());
  anfitrion->Ambiente().Parametro("CantidadMaxima", 100);
  bitacora.respuestas = {true};
  auto& f = ConRenglones({{"A-100", "101"}});
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "0");
  EXPECT_EQ(Reportes().size(), 1U);
  Renglon(f, "A-200", "100");
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(Contiene(f.RichTextBox2.Text(), "ANA")) << f.RichTextBox2.Text();
  Tecla(f, "F5", f.txtFields(campo::Articulo));
  EXPECT_EQ(Uno("SELECT estado FROM entradas"), "CO");
  std::ifstream book(ruta / "afectadas.csv");
  std::string heading;
  std::string line;
  std::getline(book, heading);
  std::getline(book, line);
  EXPECT_TRUE(Contiene(line, "ANA")) << line;
  int refused = 0;
  for (const auto& run : observador.corridas) {
    if (!run.error) continue;
    ++refused;
    EXPECT_EQ(run.error->texto,
              "La cantidad 101 pasa del máximo de 100. El renglón no se guardó; captúrelo de nuevo con otra "
              "cantidad.");
  }
  EXPECT_EQ(refused, 1);
}

}  // namespace
}  // namespace tarvik::tests
