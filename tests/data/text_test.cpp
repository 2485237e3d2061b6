// Text by characters: UTF-8, lengths, case.
#include "data/text.h"

#include <gtest/gtest.h>

namespace tarvik::data {
namespace {

TEST(Utf8, AcceptsEveryCharacter) {
  EXPECT_TRUE(ValidUtf8(""));
  EXPECT_TRUE(ValidUtf8("Ñandú €5 日本 😀"));
  EXPECT_TRUE(ValidUtf8("\xF4\x8F\xBF\xBF")) << "the last one there is";
}

TEST(Utf8, RefusesWhatIsNoCharacter) {
  EXPECT_FALSE(ValidUtf8("\xF1"));              // cut off
  EXPECT_FALSE(ValidUtf8("a\x80"));             // a continuation by itself
  EXPECT_FALSE(ValidUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(ValidUtf8("\xE0\x80\x80"));      // overlong
  EXPECT_FALSE(ValidUtf8("\xF0\x80\x80\x80"));  // overlong
  EXPECT_FALSE(ValidUtf8("\xED\xA0\x80"));      // half of a pair
  EXPECT_FALSE(ValidUtf8("\xF4\x90\x80\x80"));  // behind the last
  EXPECT_FALSE(ValidUtf8("\xC3("));             // continuation missing
  EXPECT_FALSE(ValidUtf8("\xFF"));
}

TEST(Utf8, RepairsEachInvalidByte) {
  EXPECT_EQ(RepairUtf8("Ñandú"), "Ñandú");
  EXPECT_EQ(RepairUtf8("Ca\xF1"
                       "a"),
            "Ca\uFFFDa");
  EXPECT_EQ(RepairUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_TRUE(ValidUtf8(RepairUtf8("\xE2\x82")));
}

TEST(Characters, AreCountedNotBytes) {
  EXPECT_EQ(Length(""), 0U);
  EXPECT_EQ(Length("Caña"), 4U);
  EXPECT_EQ(Length("€😀"), 2U);
  EXPECT_EQ(Length("a\xF1"
                   "b"),
            3U)
      << "an invalid byte counts as one";
}

TEST(Characters, SubstringByCharacters) {
  EXPECT_EQ(Substring("Camión", 4), "ón");
  EXPECT_EQ(Substring("Camión", 4, 1), "ó");
  EXPECT_EQ(Substring("Camión", 0, 4), "Cami");
  EXPECT_EQ(Substring("Camión", 2, 0), "");
  EXPECT_EQ(Substring("Camión", 4, 100), "ón");
  EXPECT_EQ(Substring("Camión", 6), "");
  EXPECT_EQ(Substring("Camión", 99, 3), "");
}

TEST(Trim, TakesBlanksAndNothingElse) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(Trim(""), "");
  EXPECT_EQ(Trim("\ta\n "), "\ta\n");
}

TEST(Case, NamesAreComparedInAsciiLetters) {
  EXPECT_TRUE(EqualsNoCase("f_emision", "F_Emision"));
  EXPECT_FALSE(EqualsNoCase("precio", "precio1"));
  EXPECT_FALSE(EqualsNoCase("[", "{")) << "only letters have a case";
  EXPECT_FALSE(EqualsNoCase("É", "é"));
  EXPECT_EQ(LowerAscii("ALMACEN_1 Ñ"), "almacen_1 Ñ");
}

TEST(Case, UpperKnowsWesternLetters) {
  EXPECT_EQ(Upper(U'a'), U'A');
  EXPECT_EQ(Upper(U'z'), U'Z');
  EXPECT_EQ(Upper(U'ñ'), U'Ñ');
  EXPECT_EQ(Upper(U'é'), U'É');
  EXPECT_EQ(Upper(U'ü'), U'Ü');
  EXPECT_EQ(Upper(U'þ'), U'Þ');
  EXPECT_EQ(Upper(U'ÿ'), U'Ÿ');
  EXPECT_EQ(Upper(U'œ'), U'Œ');
  EXPECT_EQ(Upper(U'š'), U'Š');
  EXPECT_EQ(Upper(U'ž'), U'Ž');
  for (const char32_t same : {U'A', U'Ñ', U'÷', U'ß', U'5', U'{', U'`', U'日'}) EXPECT_EQ(Upper(same), same);
}

TEST(Encoding, OfEachLength) {
  for (const char* text : {"a", "ñ", "€", "😀"}) {
    EXPECT_EQ(Encode(Decode(text)), text);
    EXPECT_EQ(Length(text), 1U);
  }
  EXPECT_EQ(Decode("ñandú"), U'ñ');
  EXPECT_EQ(Decode(""), U'\0');
  EXPECT_EQ(Decode("\xF1"), U'\uFFFD');
  EXPECT_EQ(Encode(0xD800), "\uFFFD");
  EXPECT_EQ(Encode(0x110000), "\uFFFD");
}

}  // namespace
}  // namespace tarvik::data
