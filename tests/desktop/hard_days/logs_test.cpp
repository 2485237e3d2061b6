// Logs that can not be written.
#include "data/error.h"
#include "tests/desktop/hard_days/dia_dificil.h"

namespace tarvik::desktop {
namespace {

class SinBitacora : public DiaDificil {
 protected:
  // A line whose posting fails at one step, where the day's log has to be written.
  void FailingLine() {
    program->Host().Gancho(
        "ENTRADA005", [](forms::Form&, host::AmbienteLocal&) { throw data::Error("Falla del negocio"); });
    Article(1, "4");
  }
  void ExpectToldAndStillThere(frmEntradasWizard& form) {
    ASSERT_EQ(boxes.size(), 2u) << AllSaid();
    EXPECT_NE(boxes[0].find("Falla del negocio"), std::string::npos) << boxes[0];
    EXPECT_NE(boxes[1].find("No se puede"), std::string::npos) << boxes[1];
    EXPECT_NE(boxes[1].find(DayLog().filename().string()), std::string::npos) << boxes[1];
    EXPECT_TRUE(form.Open());
    EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "1");
    EXPECT_EQ(form.txtFields(campo::Articulo).Text(), Escritorio::Article(1))
        << "what was typed is still there";
    program->Host().Gancho("ENTRADA005", {});
    boxes.clear();
    form.Enter(form.txtFields(campo::Precio));
    Settle();
    Press(Qt::Key_Return);
    Settle();
    EXPECT_TRUE(boxes.empty()) << AllSaid();
    EXPECT_EQ(One("SELECT COUNT(*) FROM entpart"), "2");
  }
};

TEST_F(SinBitacora, AFullDiskUnderTheDaysLogAndTheProgramsOwnIsTold) {
  fs::create_directories(File("web"));
  fs::create_symlink("/dev/full", DayLog());
  fs::create_symlink("/dev/full", File("programa.log"));
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  FailingLine();
  ExpectToldAndStillThere(form);
}

TEST_F(SinBitacora, AFolderThatMayOnlyBeReadIsTold) {
  frmEntradasWizard& form = Receiving();
  Article(0, "3");
  fs::permissions(folder.path().toStdString(), fs::perms(0555));
  {
    const SinPermiso nobody;
    FailingLine();
  }
  fs::permissions(folder.path().toStdString(), fs::perms(0755));
  EXPECT_FALSE(fs::exists(File("programa.log")));
  ExpectToldAndStillThere(form);
}

TEST_F(SinBitacora, TheBoxDoesNotSayNotedWhenNothingCouldBeNoted) {
  fs::create_symlink("/dev/full", File("programa.log"));
  frmEntradasWizard& form = Receiving();
  // An event without a trap of its own.
  program->Host().Gancho("ENTRADA008",
                         [](forms::Form&, host::AmbienteLocal&) { throw data::Error("Falla del negocio"); });
  program->Platform().on_box = nullptr;
  Lector reader({Qt::Key_Return});
  form.Enter(form.txtFields(campo::Cantidad));
  Settle();
  program->Host().Gancho("ENTRADA008", {});
  ASSERT_EQ(reader.read.size(), 1) << reader.read.join('|').toStdString();
  EXPECT_TRUE(reader.read[0].contains(QStringLiteral("Falla del negocio")));
  EXPECT_FALSE(reader.read[0].contains(QStringLiteral("el error quedó anotado")))
      << reader.read[0].toStdString();
}

}  // namespace
}  // namespace tarvik::desktop
