// Routines that take too long: asked about, stopped, and ended with the program.
#include "tests/python_hooks/apoyo.h"

namespace tarvik::tests {
namespace {

TEST_F(Ganchos, ElLimiteDetieneUnaVueltaSinFin) {
  Archivo("lenta.py",
          "def ENTRADA009(forma, ambiente):\n"
          "    forma.cEstado = 'empezó'\n"
          "    while True:\n"
          "        try:\n"
          "            pass\n"
          "        except Exception:\n"
          "            pass\n");
  EXPECT_TRUE(Carga({}, 150).empty());
  const auto antes = std::chrono::steady_clock::now();
  auto& f = ConRenglones({{"A-100", "2"}});
  EXPECT_LT(std::chrono::steady_clock::now() - antes, std::chrono::seconds(20));
  const Corrida* run = observador.Ultima("ENTRADA009");
  ASSERT_TRUE(run && run->error);
  EXPECT_TRUE(
      run->error->texto.starts_with("La rutina ENTRADA009 se detuvo porque no había terminado a los "))
      << run->error->texto;
  EXPECT_EQ(fs::path(run->error->archivo).filename(), "lenta.py");
  EXPECT_GE(run->error->linea, 3);
  EXPECT_GE(run->milisegundos, 150);
  EXPECT_EQ(observador.preguntas.size(), 1U);
  EXPECT_EQ(Reportes().size(), 1U);
  EXPECT_EQ(Uno("SELECT COUNT(*) FROM entpart"), "1");
  EXPECT_TRUE(f.Open());
}

TEST_F(Ganchos, ElLimiteSacaAUnaRutinaDeUnaEspera) {
  Archivo("espera.py", "import time\ndef ENTRADA001(forma, ambiente):\n    time.sleep(60)\n");
  EXPECT_TRUE(Carga({}, 100).empty());
  auto& f = Nueva();
  const Corrida* run = observador.Ultima("ENTRADA001");
  ASSERT_TRUE(run && run->error);
  EXPECT_LT(run->milisegundos, 20'000);
  EXPECT_TRUE(f.Open());
}

TEST_F(Ganchos, ElOperadorPuedeSeguirEsperando) {
  Archivo(
      "espera.py",
      "import time\ndef ENTRADA001(forma, ambiente):\n    time.sleep(0.9)\n    forma.cEstado = 'terminó'\n");
  observador.veces_que_espera = 1000;
  EXPECT_TRUE(Carga({}, 100).empty());
  EXPECT_EQ(Nueva().cEstado, "terminó");
  EXPECT_GE(observador.preguntas.size(), 1U);
  EXPECT_EQ(observador.preguntas[0].first, "ENTRADA001");
  EXPECT_FALSE(observador.Ultima("ENTRADA001")->error);
}

TEST_F(Ganchos, UnArchivoQueNoTerminaDeCargarTambienSeDetiene) {
  Archivo("eterno.py", "while True:\n    pass\n");
  Archivo("otro.py", "def ENTRADA001(forma, ambiente):\n    forma.cEstado = 'bien'\n");
  const auto fallos = Carga({}, 150);
  ASSERT_EQ(fallos.size(), 1U);
  EXPECT_TRUE(fallos[0].texto.starts_with("El archivo eterno.py se detuvo porque no había terminado a los "))
      << fallos[0].texto;
  EXPECT_EQ(Nueva().cEstado, "bien");
}

TEST_F(Ganchos, UnaRutinaQueTodoLoAtrapaSeDetieneIgual) {
  Archivo("terca.py",
          "import time\n"
          "def vuelta():\n"
          "    while True:\n"
          "        try:\n"
          "            time.sleep(0.01)\n"
          "        except BaseException:\n"
          "            pass\n"
          "        finally:\n"
          "            time.sleep(0.01)\n"
          "def ENTRADA001(forma, ambiente):\n"
          "    while True:\n"
          "        try:\n"
          "            vuelta()\n"
          "        except:\n"
          "            continue\n"
          "def ENTRADA008(forma, ambiente):\n"
          "    forma.cEstado = 'sigue'\n");
  EXPECT_TRUE(Carga({}, 150).empty());
  auto& f = Nueva();
  const Corrida* run = observador.Ultima("ENTRADA001");
  ASSERT_TRUE(run && run->error);
  EXPECT_TRUE(run->error->texto.starts_with("La rutina ENTRADA001 se detuvo")) << run->error->texto;
  EXPECT_LT(run->milisegundos, 10'000);
  EXPECT_EQ(observador.preguntas.size(), 1U);  // told once to stop, it is not asked about again
  // The routines after it run as ever.
  EXPECT_EQ(f.cEstado, "sigue");
  EXPECT_FALSE(observador.Ultima("ENTRADA008")->error);
}

TEST_F(Ganchos, AlTerminarElProgramaNoSePregunta) {
  Archivo("lenta.py", "def ENTRADA001(forma, ambiente):\n    while True:\n        pass\n");
  observador.veces_que_espera = 1000;
  EXPECT_TRUE(Carga({}, 100).empty());
  plataforma.on_wait = [] { return true; };
  Nueva();
  plataforma.on_wait = nullptr;
  const Corrida* run = observador.Ultima("ENTRADA001");
  ASSERT_TRUE(run && run->error);
  EXPECT_EQ(run->error->texto, "La rutina ENTRADA001 se detuvo porque el programa se cierra");
  EXPECT_TRUE(observador.preguntas.empty());
  EXPECT_GE(run->milisegundos, 900);  // it had its time to come to an end by itself
}

TEST_F(Ganchos, AlTerminarSeDetieneAunqueNadieLaVigile) {
  Archivo("lenta.py", "import time\ndef ENTRADA001(forma, ambiente):\n    time.sleep(60)\n");
  EXPECT_TRUE(Carga({}, 0).empty());
  plataforma.on_wait = [] { return true; };
  Nueva();
  plataforma.on_wait = nullptr;
  ASSERT_TRUE(observador.Ultima("ENTRADA001")->error);
  EXPECT_LT(observador.Ultima("ENTRADA001")->milisegundos, 10'000);
}

TEST_F(Ganchos, AlTerminarLaRutinaCortaTerminaLoSuyo) {
  Archivo(
      "corta.py",
      "import time\ndef ENTRADA001(forma, ambiente):\n    time.sleep(0.4)\n    forma.cEstado = 'terminó'\n");
  EXPECT_TRUE(Carga({}, 100).empty());
  plataforma.on_wait = [] { return true; };
  EXPECT_EQ(Nueva().cEstado, "terminó");
  plataforma.on_wait = nullptr;
  EXPECT_FALSE(observador.Ultima("ENTRADA001")->error);
}

TEST_F(Ganchos, LaQueCorreDentroDeOtraSeDetieneYLuegoLaOtra) {
  Archivo("dos.py",
          "def ENTRADA001(forma, ambiente):\n"
          "    forma.txtFields[4].Text = 'A-100'\n"
          "    forma.PonDescripcion()\n"
          "    while True:\n"
          "        pass\n"
          "def ENTRADA009(forma, ambiente):\n"
          "    while True:\n"
          "        pass\n");
  EXPECT_TRUE(Carga({}, 0).empty());
  plataforma.on_wait = [] { return true; };
  Nueva();
  plataforma.on_wait = nullptr;
  for (const char* key : {"ENTRADA009", "ENTRADA001"}) {
    ASSERT_TRUE(observador.Ultima(key)) << key;
    ASSERT_TRUE(observador.Ultima(key)->error) << key;
    EXPECT_EQ(observador.Ultima(key)->error->texto,
              std::string("La rutina ") + key + " se detuvo porque el programa se cierra");
  }
}

}  // namespace
}  // namespace tarvik::tests
