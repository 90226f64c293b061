#include "platform/CodePage_windows.h"

#include <gtest/gtest.h>

#include "platform/Win32.h"

namespace brackwell {
namespace {

using win32::ReadCodePage;

TEST(CodePageOnWindows, OfWesternEuropeIsTheOneThatIsKnown) { EXPECT_EQ(ReadCodePage(1252), CodePage1252); }

TEST(CodePageOnWindows, OthersAreTheSystems) {
  const UpperHalf cyrillic = ReadCodePage(1251);
  EXPECT_EQ(cyrillic[0xC0 - 0x80], U'\u0410');
  EXPECT_EQ(cyrillic[0xFF - 0x80], U'\u044F');
  const UpperHalf greek = ReadCodePage(1253);
  EXPECT_EQ(greek[0xE1 - 0x80], U'\u03B1');
}

TEST(CodePageOnWindows, OfMoreBytesPerCharacterAreNone) {
  for (const unsigned number : {932U, 936U, 949U, 950U, 65001U, 12345U})
    EXPECT_EQ(ReadCodePage(number), CodePage1252) << number;
}

TEST(CodePageOnWindows, IsTheSystemsWhateverThisProgramTakesForText) {
  EXPECT_EQ(GetACP(), 65001U);
  wchar_t number[8] = L"";
  ASSERT_NE(GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE, number, 8), 0);
  EXPECT_EQ(SystemCodePage(), ReadCodePage(static_cast<unsigned>(std::stoul(number))));
}

}  // namespace
}  // namespace brackwell
