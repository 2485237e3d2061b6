// The one road of a key: the form, the control, the character, the edit with its change, the release.
#include "tests/forms/test_form.h"

namespace tarvik::forms {
namespace {

class Keys : public FormsBench {};

TEST_F(Keys, TheRoadOfACharacter) {
  TestForm& f = Shown();
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.Taken(),
            (Record{"form down 65", "first down 65", "first press 97", "first change a", "first up 65"}));
}

TEST_F(Keys, AKeyThatTypesNothingHasNoPress) {
  TestForm& f = Shown();
  f.Press(Named("F5"));
  EXPECT_EQ(f.Taken(), (Record{"form down 116", "first down 116", "first up 116"}));
}

TEST_F(Keys, EnterEscAndBackHaveBothCodeAndCharacter) {
  TestForm& f = Shown();
  f.Press(Named("Enter"));
  EXPECT_EQ(f.Taken(), (Record{"form down 13", "first down 13", "first press 13", "first up 13"}));
  f.Press(Named("Esc"));
  EXPECT_EQ(f.Taken(), (Record{"form down 27", "first down 27", "first press 27", "first up 27"}));
  f.Press(Named("Back"));
  EXPECT_EQ(f.Taken(), (Record{"form down 8", "first down 8", "first press 8", "first up 8"}));
}

TEST_F(Keys, TheFormMaySwallowAKeyBeforeTheControlSeesIt) {
  TestForm& f = Shown();
  f.at_key = [](int& code) { code = 0; };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.first.Text(), "");
  const Record record = f.Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "first down 65"), 0);
  EXPECT_EQ(std::count(record.begin(), record.end(), "first press 97"), 0);
}

TEST_F(Keys, AControlThatTakesAKeyForItselfTypesNothing) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [](int& code, int) { code = 0; };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.first.Text(), "");
  EXPECT_EQ(f.Taken(), (Record{"form down 65", "first up 65"}));
}

TEST_F(Keys, APressMaySwapOrSwallowTheCharacter) {
  TestForm& f = Shown();
  f.first.OnKeyPress = [](int& character) { character = character == 'x' ? 0 : 'B'; };
  f.Type(f.first, "axa");
  EXPECT_EQ(f.first.Text(), "BB");
}

TEST_F(Keys, TypingGoesOverTheSelection) {
  TestForm& f = Shown();
  f.first.Text("viejo");
  f.first.SelectAll();
  f.record.clear();
  f.Type(f.first, "ñu");
  EXPECT_EQ(f.first.Text(), "ñu");
  const Record record = f.Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "first change ñ"), 1);
}

TEST_F(Keys, AllEventsOfAPressGoToTheControlThatHadTheFocusAtItsStart) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [&](int&, int) { f.second.SetFocus(); };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.first.Text(), "a");
  EXPECT_EQ(f.second.Text(), "");
  EXPECT_EQ(f.Taken(), (Record{"form down 65", "first lost", "second got", "first press 97", "first change a",
                               "first up 65"}));
}

TEST_F(Keys, WhereTheFormMovesTheFocusTheKeyStillGoesToTheOldControl) {
  TestForm& f = Shown();
  f.at_key = [&](int&) { f.second.SetFocus(); };
  f.Press(Named("F3"));
  EXPECT_EQ(f.Taken(),
            (Record{"form down 114", "first lost", "second got", "first down 114", "first up 114"}));
}

TEST_F(Keys, EachCharacterGoesWhereTheFocusIsThen) {
  TestForm& f = Shown();
  f.first.OnChange = [&] { f.second.SetFocus(); };
  f.Type(f.first, "abc");
  EXPECT_EQ(f.first.Text(), "a");
  EXPECT_EQ(f.second.Text(), "bc");
}

TEST_F(Keys, NothingIsTypedWhereTheFocusCannotGo) {
  TestForm& f = Shown();
  f.second.Enabled(false);
  f.Type(f.second, "abc");
  EXPECT_EQ(f.second.Text(), "");
  EXPECT_EQ(f.first.Text(), "");
  EXPECT_TRUE(f.record.empty());
}

TEST_F(Keys, WithNoFocusAKeyReachesOnlyTheForm) {
  TestForm& f = Shown();
  f.first.Enabled(false);
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.Taken(), Record{"form down 65"});
}

TEST_F(Keys, TheRoadEndsWhereTheFormIsUnloaded) {
  TestForm& f = Shown();
  f.first.OnKeyDown = [&](int&, int) { f.Unload(); };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.Taken(), (Record{"form down 65", "query code", "unload"}));
  EXPECT_EQ(f.first.Text(), "");
}

TEST_F(Keys, UnloadingOnThePressEndsTheRoadToo) {
  TestForm& f = Shown();
  f.first.OnKeyPress = [&](int&) { f.Unload(); };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.first.Text(), "");
  const Record record = f.Taken();
  EXPECT_EQ(std::count(record.begin(), record.end(), "first up 65"), 0);
}

TEST_F(Keys, AControlThatAKeyDisabledIsNotEdited) {
  TestForm& f = Shown();
  f.first.OnKeyPress = [&](int&) { f.first.Enabled(false); };
  f.Press(KeyFor('a'));
  EXPECT_EQ(f.first.Text(), "");
}

TEST_F(Keys, EachEventIsABoundaryAndTheRoadGoesOn) {
  TestForm& f = Shown();
  f.at_key = [](int&) { throw data::Error("forma"); };
  f.first.OnKeyDown = [](int&, int) { throw data::Error("baja"); };
  f.first.OnKeyPress = [](int&) { throw data::Error("letra"); };
  f.first.OnChange = Fails("cambio");
  f.first.OnKeyUp = [](int&, int) { throw data::Error("sube"); };
  f.Press(KeyFor('a'));
  EXPECT_EQ(unhandled, (Record{"forma", "baja", "letra", "cambio", "sube"}));
  EXPECT_EQ(f.first.Text(), "a");
}

TEST_F(Keys, TheUnhandledErrorNamesItsForm) {
  TestForm& f = Shown();
  Form* told = nullptr;
  platform.on_unhandled = [&](Form* of, const std::string&) { told = of; };
  f.first.OnChange = Fails("cambio");
  f.Type(f.first, "a");
  EXPECT_EQ(told, &f);
}

TEST_F(Keys, KeysHaveTheUsualCodes) {
  const std::pair<const char*, int> known[] = {{"Enter", 13}, {"Tab", 9},    {"Esc", 27},   {"Up", 38},
                                               {"Down", 40},  {"Left", 37},  {"Right", 39}, {"Delete", 46},
                                               {"Back", 8},   {"Space", 32}, {"F1", 112},   {"F2", 113},
                                               {"F5", 116},   {"F8", 119},   {"F12", 123}};
  for (const auto& [name, code] : known) {
    const auto key = KeyNamed(name);
    ASSERT_TRUE(key.has_value()) << name;
    EXPECT_EQ(key->code, code) << name;
  }
}

TEST_F(Keys, ACharacterIsItsOwnNameAndAnyOtherNameIsNone) {
  EXPECT_EQ(KeyNamed("a")->code, 65);
  EXPECT_EQ(KeyNamed("A")->code, 65);
  EXPECT_EQ(KeyNamed("A")->shift, kShift);
  EXPECT_EQ(KeyNamed("7")->code, 55);
  EXPECT_EQ(KeyNamed("ñ")->character, U'ñ');
  for (const char* name : {"", "F0", "F13", "F99", "F1x", "Intro", "enter"})
    EXPECT_FALSE(KeyNamed(name)) << name;
}

TEST_F(Keys, ThePointIsNeverTheDeleteKey) {
  TestForm& f = Shown();
  EXPECT_EQ(KeyFor('.').code, 190);
  f.first.Text("99");
  f.first.SelStart(1);
  f.Press(KeyFor('.'));
  EXPECT_EQ(f.first.Text(), "9.9");
  for (char c = '!'; c < 127; ++c) {
    const int code = KeyFor(static_cast<char32_t>(c)).code;
    const bool taken = (code >= 33 && code <= 46) || (code >= 112 && code <= 123);
    EXPECT_FALSE(taken) << c;
  }
}

}  // namespace
}  // namespace tarvik::forms
