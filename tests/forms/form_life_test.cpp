// A form's life: loading at first use, showing, modal shows, unloading and its refusals, ending.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class FormLife : public FormsBench {};

TEST_F(FormLife, SettingTheCaptionIsAFirstUseAndTheCallersCaptionStays) {
  form->at_load = [&] { form->Caption("de la carga"); };
  EXPECT_FALSE(form->Open());
  form->Caption("Entrada: 7");
  EXPECT_TRUE(form->Open());
  EXPECT_FALSE(form->Visible());
  EXPECT_EQ(form->Caption(), "Entrada: 7");
  EXPECT_EQ(form->Taken(), Record{"load"});
}

TEST_F(FormLife, ReadingTheCaptionLoadsNothing) {
  EXPECT_EQ(form->Caption(), "Prueba");
  EXPECT_FALSE(form->Open());
}

TEST_F(FormLife, LoadingRunsOnce) {
  form->Load();
  form->Caption("x");
  form->Show(false);
  form->Show(false);
  const Record record = form->Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "load"), 1);
}

TEST_F(FormLife, AFormIsAmongTheScreensFromItsLoadingToItsUnloading) {
  std::size_t during = 0;
  form->at_load = [&] { during = platform.Screens().size(); };
  form->Load();
  EXPECT_EQ(during, 1u);
  auto other = std::make_shared<TestForm>(platform, "otra");
  other->Show(false);
  EXPECT_EQ(platform.Screens().front(), form);
  EXPECT_EQ(platform.Screens().back(), other);
  form->Unload();
  EXPECT_EQ(platform.Screens().size(), 1u);
  EXPECT_EQ(platform.Screens().back(), other);
}

TEST_F(FormLife, AShownFormLivesOnWithoutItsMaker) {
  form->Show(false);
  std::weak_ptr<TestForm> seen = form;
  form.reset();
  ASSERT_FALSE(seen.expired());
  EXPECT_TRUE(seen.lock()->Visible());
  seen.lock()->Unload();
  EXPECT_TRUE(seen.expired());
}

TEST_F(FormLife, AFormThatIsNeverUsedLeavesNoMark) {
  std::weak_ptr<TestForm> seen = form;
  form.reset();
  EXPECT_TRUE(seen.expired());
  EXPECT_TRUE(platform.Screens().empty());
}

TEST_F(FormLife, AFormWhoseLoadingFailsIsNoForm) {
  form->at_load = Fails("no carga");
  EXPECT_THROW(form->Show(false), data::Error);
  EXPECT_FALSE(form->Open());
  EXPECT_FALSE(form->Visible());
  EXPECT_TRUE(platform.Screens().empty());
}

TEST_F(FormLife, UnloadingAsksThenEnds) {
  Shown();
  EXPECT_TRUE(form->Unload());
  EXPECT_EQ(form->Taken(), (Record{"query code", "unload"}));
  EXPECT_FALSE(form->Open());
  EXPECT_FALSE(form->Visible());
  EXPECT_EQ(form->ActiveControl(), nullptr);
  EXPECT_FALSE(form->Unload());
  EXPECT_TRUE(form->record.empty());
}

TEST_F(FormLife, TheCloseBoxSaysThatItWasTheCloseBox) {
  Shown();
  form->Close();
  EXPECT_EQ(form->Taken(), (Record{"query box", "unload"}));
}

TEST_F(FormLife, EitherQuestionMayRefuseAndTheFormStaysAsItWas) {
  Shown();
  form->refuse_query = true;
  EXPECT_FALSE(form->Unload());
  EXPECT_EQ(form->Taken(), Record{"query code"});
  form->refuse_query = false;
  form->refuse_unload = true;
  EXPECT_FALSE(form->Unload());
  EXPECT_EQ(form->Taken(), (Record{"query code", "unload"}));
  EXPECT_TRUE(form->Open());
  EXPECT_TRUE(form->Visible());
  EXPECT_EQ(form->ActiveControl(), &form->first);
  EXPECT_EQ(platform.Screens().size(), 1u);
  form->refuse_unload = false;
  EXPECT_TRUE(form->Unload());
}

TEST_F(FormLife, AnUnloadInsideAnUnloadIsLeftAlone) {
  Shown();
  bool inner = true;
  form->at_unload = [&] { inner = form->Unload(); };
  EXPECT_TRUE(form->Unload());
  EXPECT_FALSE(inner);
  EXPECT_EQ(form->Taken(), (Record{"query code", "unload"}));
}

TEST_F(FormLife, AnErrorWhileUnloadingKeepsTheFormAndTheNextTryWorks) {
  Shown();
  form->at_unload = Fails("no cierra");
  EXPECT_THROW(form->Unload(), data::Error);
  EXPECT_TRUE(form->Open());
  form->at_unload = nullptr;
  EXPECT_TRUE(form->Unload());
}

TEST_F(FormLife, AnErrorBehindTheCloseBoxIsToldToThePlatform) {
  Shown();
  form->at_unload = Fails("no cierra");
  form->Close();
  EXPECT_EQ(unhandled, Record{"no cierra"});
  EXPECT_TRUE(form->Open());
}

TEST_F(FormLife, UnloadingRaisesNoLeavingLogic) {
  Shown();
  form->Enter(form->second);
  form->record.clear();
  form->Unload();
  EXPECT_EQ(form->Taken(), (Record{"query code", "unload"}));
}

TEST_F(FormLife, ShowingAnotherFormRaisesNoLeavingLogic) {
  Shown();
  auto other = std::make_shared<TestForm>(platform, "otra");
  other->Show(false);
  EXPECT_TRUE(form->record.empty());
  EXPECT_EQ(platform.ActiveForm(), other.get());
  other->Unload();
  EXPECT_EQ(platform.ActiveForm(), form.get());
}

TEST_F(FormLife, DiscardingAsksNothing) {
  Shown();
  form->refuse_query = form->refuse_unload = true;
  form->Discard();
  EXPECT_TRUE(form->record.empty());
  EXPECT_FALSE(form->Open());
  EXPECT_TRUE(platform.Screens().empty());
}

TEST_F(FormLife, AnEndedFormIsNotShownAgain) {
  Shown();
  form->Unload();
  form->record.clear();
  form->Show(false);
  EXPECT_FALSE(form->Visible());
  EXPECT_TRUE(platform.Screens().empty());
  EXPECT_TRUE(form->record.empty());
  form->first.Text("se puede leer");
  EXPECT_EQ(form->first.Text(), "se puede leer");
  // Its change logic is as ever; a hand reaches it no more.
  EXPECT_EQ(form->Taken(), Record{"first change se puede leer"});
  form->Type(form->first, "x");
  form->Press(Named("F5"));
  form->Click(form->button);
  form->Paint();
  EXPECT_THROW(form->first.SetFocus(), data::Error);
  EXPECT_FALSE(form->Unload());
  EXPECT_TRUE(form->record.empty());
}

TEST_F(FormLife, HidingKeepsTheFormLoaded) {
  Shown();
  form->Hide();
  EXPECT_FALSE(form->Visible());
  EXPECT_TRUE(form->Open());
  EXPECT_EQ(platform.ActiveForm(), nullptr);
  EXPECT_TRUE(form->record.empty());
  EXPECT_TRUE(form->first.HasFocus());
  form->Show(false);
  EXPECT_EQ(platform.ActiveForm(), form.get());
  EXPECT_TRUE(form->record.empty()) << "nothing is loaded again";
}

TEST_F(FormLife, AModalShowRunsTheFormAndThenReturnsWithItGone) {
  bool shown = false;
  platform.on_modal = [&](Form& modal) { shown = modal.Visible(); };
  form->Show(true);
  EXPECT_TRUE(shown);
  EXPECT_FALSE(form->Open());
}

TEST_F(FormLife, AModalFormThatEndedItselfIsNotUnloadedTwice) {
  platform.on_modal = [&](Form& modal) { modal.Unload(); };
  form->Show(true);
  const Record record = form->Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "unload"), 1);
}

TEST_F(FormLife, AModalShowWhoseCloseIsRefusedReturnsAndTheFormStays) {
  form->refuse_unload = true;
  form->Show(true);
  EXPECT_TRUE(form->Open());
  EXPECT_TRUE(form->Visible());
}

TEST_F(FormLife, AFormThatLoadingEndedIsNotShown) {
  form->at_load = [&] { form->Unload(); };
  form->Show(true);
  EXPECT_FALSE(form->Visible());
  EXPECT_TRUE(platform.Screens().empty());
}

TEST_F(FormLife, PaintingAndResizingReachOnlyAnOpenForm) {
  form->Paint();
  EXPECT_TRUE(form->record.empty());
  Shown();
  form->Paint();
  form->Resize(9000, 6000);
  EXPECT_EQ(form->Taken(), (Record{"paint", "resize"}));
  EXPECT_EQ(form->ScaleWidth(), 9000);
  EXPECT_EQ(form->ScaleHeight(), 6000);
}

TEST_F(FormLife, ThePlatformHearsAFormComeAndGo) {
  Record heard;
  platform.on_screen_loaded = [&](Form& f) { heard.push_back("+" + f.Name()); };
  platform.on_screen_unloaded = [&](Form& f) { heard.push_back("-" + f.Name()); };
  form->Load();
  form->Unload();
  EXPECT_EQ(heard, (Record{"+prueba", "-prueba"}));
}

}  // namespace
}  // namespace tarvik::forms
