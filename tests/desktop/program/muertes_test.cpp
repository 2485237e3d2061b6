// The window's program is killed at its work, again and again on one base: while lines are typed, while a
// document is posted. After each the program opens, completes from its card, and plain statements prove that
// nothing that it had shown as stored is lost, that no line moved twice, and that none is half posted.
// Three rounds in the ordinary run; muertes.sh runs as many as wanted, on both engines.
#include <gtest/gtest.h>
#include <signal.h>

#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <cstdlib>
#include <map>
#include <random>
#include <set>

#include "desktop/frame/main_window.h"
#include "desktop/frame/notices.h"
#include "desktop/platform/qt_platform.h"
#include "desktop/program/program.h"
#include "desktop/reading/half_posted.h"
#include "desktop/style/theme.h"
#include "host/anfitrion.h"
#include "tests/desktop/support.h"
#include "tests/support/base_de_prueba.h"

namespace tarvik::desktop {
namespace {

class Muertes : public ::testing::Test {
  tests::BaseDePrueba base_{tests::BaseDePrueba::Con::kNada};

 protected:
  Muertes() { App(); }

  QString Direccion() {
    return base_.EnServidor() ? QString::fromStdString(base_.Direccion())
                              : QStringLiteral("sqlite:") + carpeta_.filePath(QStringLiteral("tienda.db"));
  }
  // Works until it is killed: in a posting, so much later than its beginning, or anywhere.
  void MataUno() {
    QProcess worker;
    worker.setProcessChannelMode(QProcess::MergedChannels);
    worker.start(QStringLiteral(TARVIK_HIJO), {carpeta_.path(), QStringLiteral("trabaja"), Direccion()});
    ASSERT_TRUE(worker.waitForStarted());
    QByteArray said;
    const bool posting = Al(1, 10) <= 7;
    const QByteArray moment = posting ? QByteArray("finaliza\t") : QByteArray("renglon\t");
    const int times = posting ? Al(1, 3) : Al(1, 20);
    QElapsedTimer since;
    since.start();
    while (said.count(moment) < times && !since.hasExpired(60000) && worker.state() == QProcess::Running) {
      worker.waitForReadyRead(20);
      said += worker.readAll();
    }
    ASSERT_GE(said.count(moment), times) << said.toStdString();
    QThread::usleep(static_cast<unsigned long>(Al(0, 30000)));
    ::kill(static_cast<pid_t>(worker.processId()), SIGKILL);
    worker.waitForFinished();
    Oye(said + worker.readAll());
  }
  // What it printed, without an incomplete last line.
  void Oye(const QByteArray& said) {
    const QList<QByteArray> lines = said.split('\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
      const QList<QByteArray> parts = lines[i].split('\t');
      if (parts.size() != 3) continue;
      const bool in = parts[1] == "Entrada";
      if (parts[0] == "renglon") (in ? entradas_ : salidas_).insert(parts[2].toInt());
      if (parts[0] == "afectado") (in ? entradas_afectadas_ : salidas_afectadas_).insert(parts[2].toInt());
    }
  }
  // The program opens and does what its card offers.
  void AbreYCompleta() {
    Program program(theme_,
                    {Direccion(), QStringLiteral("ANA"), QStringLiteral("E1"), carpeta_.path(), {}, true});
    std::vector<std::string> boxes;
    program.Platform().on_box = [&](forms::BoxKind, const std::string& text, int) {
      boxes.push_back(text);
      return true;
    };
    program.Window().show();
    auto& host = program.Host();
    const auto half = host.AMedias().size();
    a_medias_ += static_cast<int>(half);
    EXPECT_TRUE(QTest::qWaitFor([&] { return program.Window().Half().ToComplete().size() == half; }, 20000));
    if (half == 0) return;
    for (const char* caption : {"Completar", "Completar todos"}) {
      if (auto* button = program.Window().Notices().Button("a medias", caption)) button->click();
    }
    ASSERT_FALSE(boxes.empty());
    EXPECT_TRUE(boxes.back().starts_with("Se complet")) << boxes.back();
    EXPECT_TRUE(host.AMedias().empty());
  }
  void Prueba() {
    const auto base = data::OpenBase(Direccion().toStdString());
    const auto connection = base->Connect();
    const auto none = [&](const std::string& what, const std::string& question) {
      const auto rows = connection->Run(question, {});
      EXPECT_TRUE(rows.rows.empty()) << what << ": " << data::ToText(rows.rows[0][0]);
    };
    for (const auto& [head, number, lines, line, operation] :
         {std::array<std::string, 5>{"entradas", "entrada", "entpart", "id_entrada", "EN"},
          std::array<std::string, 5>{"salidas", "salida", "salpart", "id_salida", "SA"}}) {
      const std::string moves = "(SELECT COUNT(*) FROM movsinv m WHERE m." + line + " = p." + line +
                                " AND m.operacion = '" + operation + "')";
      const std::string of = "SELECT p." + line + " FROM " + lines + " p JOIN " + head + " h ON h." + number +
                             " = p." + number + " WHERE ";
      none("a posted line that has not moved once", of + "h.estado = 'CO' AND " + moves + " <> 1");
      none("a pending line that has moved", of + "h.estado <> 'CO' AND " + moves + " <> 0");
      none("a movement without its line", "SELECT m.id FROM movsinv m WHERE m.operacion = '" + operation +
                                              "' AND NOT EXISTS (SELECT 1 FROM " + lines + " p WHERE p." +
                                              line + " = m." + line + " AND p.cantidad = m.cantidad)");
    }
    const auto there = [&](const std::set<int>& said, const std::string& question) {
      std::set<int> found;
      for (const auto& row : connection->Run(question, {}).rows)
        found.insert(static_cast<int>(data::ToNumber(row[0])));
      for (const int number : said) EXPECT_TRUE(found.contains(number)) << number << " of " << question;
    };
    there(entradas_, "SELECT id_entrada FROM entpart");
    there(salidas_, "SELECT id_salida FROM salpart");
    there(entradas_afectadas_, "SELECT entrada FROM entradas WHERE estado = 'CO'");
    there(salidas_afectadas_, "SELECT salida FROM salidas WHERE estado = 'CO'");
    const auto stock = Existencias();
    for (const auto& [place, amount] : stock) {
      EXPECT_NEAR(amount - inicio_[place], Movido(*connection, place), 1e-6) << place.second;
    }
  }
  using Lugar = std::pair<double, std::string>;
  std::map<Lugar, double> Existencias() {
    std::map<Lugar, double> stock;
    const auto base = data::OpenBase(Direccion().toStdString());
    for (const auto& row :
         base->Connect()->Run("SELECT almacen, articulo, existencia FROM existenciaalmacen", {}).rows) {
      stock[{data::ToNumber(row[0]), data::ToText(row[1])}] = data::ToNumber(row[2]);
    }
    return stock;
  }
  static double Movido(data::EngineConnection& connection, const Lugar& place) {
    const auto rows = connection.Run(
        "SELECT COALESCE(SUM(CASE WHEN ent_sal = 'E' THEN cantidad ELSE -cantidad END), 0) FROM movsinv "
        "WHERE "
        "almacen = ? AND articulo = ? AND operacion IN ('EN', 'SA')",
        {place.first, place.second});
    return data::ToNumber(rows.rows.at(0).at(0));
  }
  int Al(int from, int to) { return std::uniform_int_distribution<int>(from, to)(azar_); }
  static int Cuantas() {
    const int asked = qEnvironmentVariableIntValue("TARVIK_MUERTES");
    return asked > 0 ? asked : 3;
  }

  QTemporaryDir carpeta_;
  Theme theme_{Theme::Mode::Light};
  std::mt19937 azar_{20261121};
  std::map<Lugar, double> inicio_;
  std::set<int> entradas_, salidas_, entradas_afectadas_, salidas_afectadas_;
  int a_medias_ = 0;
};

TEST_F(Muertes, NothingIsLostTwiceOrHalf) {
  AbreYCompleta();  // makes the base
  inicio_ = Existencias();
  const int times = Cuantas();
  for (int i = 0; i < times && !HasFailure(); ++i) {
    MataUno();
    AbreYCompleta();
    Prueba();
  }
  RecordProperty("muertes", times);
  RecordProperty("renglones", static_cast<int>(entradas_.size() + salidas_.size()));
  RecordProperty("a_medias", a_medias_);
  std::printf("muertes %d, renglones acusados %zu, documentos afectados %zu, a medias %d\n", times,
              entradas_.size() + salidas_.size(), entradas_afectadas_.size() + salidas_afectadas_.size(),
              a_medias_);
  EXPECT_GT(entradas_.size(), 0U);
}

}  // namespace
}  // namespace tarvik::desktop
