#include "platform/Win32.h"

#include <gtest/gtest.h>

#include "platform/Paths.h"

namespace brackwell::win32 {
namespace {

using namespace std::string_literals;

TEST(Win32Text, AllOfUnicodeComesAndGoes) {
  EXPECT_EQ(Widen("a\u00e9\u20ac\U0001F600"), L"a\u00e9\u20ac\U0001F600");
  EXPECT_EQ(Narrow(L"a\u00e9\u20ac\U0001F600\U0010FFFF"), "a\u00e9\u20ac\U0001F600\U0010FFFF");
}

TEST(Win32Text, HalfSurrogatesComeBackAsTheyWere) {
  for (const std::wstring& name : {L"\xD800"s, L"x\xDFFFy"s, L"\xDC00\xD800"s, L"\xD83D\xD83D\xDE00"s})
    EXPECT_EQ(Widen(Narrow(name)), name);
  EXPECT_EQ(Narrow(L"\xD800"s), "\xED\xA0\x80");
}

TEST(Win32Text, BytesThatAreNoTextBecomeReplacementCharacters) {
  EXPECT_EQ(Widen("a\xFFz"), L"a\xFFFDz");
  EXPECT_EQ(Widen("\xC3"), L"\xFFFD");                       // cut off
  EXPECT_EQ(Widen("\xC3(")[1], L'(');                        // what follows is kept
  EXPECT_EQ(Widen("\xE0\x80\xAF"), L"\xFFFD\xFFFD\xFFFD");   // "/" in disguise
  EXPECT_EQ(Widen("\xF4\x90\x80\x80").find(L'\xFFFD'), 0u);  // beyond Unicode
}

TEST(Win32Paths, AbsoluteOnesAreTakenAsTheyAre) {
  EXPECT_EQ(NativePath("C:\\a\\aux.c"), L"\\\\?\\C:\\a\\aux.c");
  EXPECT_EQ(NativePath("C:/a/end./"), L"\\\\?\\C:\\a\\end.");
  EXPECT_EQ(NativePath("C:\\"), L"\\\\?\\C:\\");
  EXPECT_EQ(NativePath("\\\\server\\share\\a"), L"\\\\?\\UNC\\server\\share\\a");
  EXPECT_EQ(NativePath("\\\\?\\C:\\a"), L"\\\\?\\C:\\a");
}

TEST(Win32Paths, OthersAreWorkedOut) {
  wchar_t current[MAX_PATH];
  ASSERT_GT(GetCurrentDirectoryW(MAX_PATH, current), 0u);
  EXPECT_EQ(UsualPath(NativePath("a")), JoinPath(Narrow(current), "a"));
  EXPECT_EQ(NativePath("C:\\a\\..\\b\\.\\\\c"), L"\\\\?\\C:\\b\\c");
  EXPECT_EQ(NativePath(""), L"");
  const std::string deep = "C:\\" + std::string(400, 'x');
  EXPECT_EQ(UsualPath(NativePath(deep + "\\..\\" + std::string(300, 'y'))), "C:\\" + std::string(300, 'y'));
}

TEST(Win32Paths, UsersSeeThemWithoutThePrefix) {
  EXPECT_EQ(UsualPath(L"\\\\?\\C:\\a"), "C:\\a");
  EXPECT_EQ(UsualPath(L"\\\\?\\UNC\\server\\share"), "\\\\server\\share");
  EXPECT_EQ(UsualPath(L"D:\\"), "D:\\");
}

TEST(Win32Errors, HaveOurNumbers) {
  EXPECT_EQ(ErrorOf(ERROR_FILE_NOT_FOUND, FileError::FileNotFound), FileError::FileNotFound);
  EXPECT_EQ(ErrorOf(ERROR_FILE_NOT_FOUND), FileError::PathNotFound);
  EXPECT_EQ(ErrorOf(ERROR_BAD_NETPATH, FileError::FileNotFound), FileError::PathNotFound);
  EXPECT_EQ(ErrorOf(ERROR_SHARING_VIOLATION), FileError::PermissionDenied);
  EXPECT_EQ(ErrorOf(ERROR_ALREADY_EXISTS), FileError::FileAlreadyExists);
  EXPECT_EQ(ErrorOf(ERROR_HANDLE_DISK_FULL), FileError::DiskFull);
  EXPECT_EQ(ErrorOf(ERROR_NOT_READY), FileError::DiskNotReady);
  EXPECT_EQ(ErrorOf(ERROR_TOO_MANY_OPEN_FILES), FileError::TooManyFiles);
  EXPECT_EQ(ErrorOf(ERROR_CRC), FileError::DeviceError);
  EXPECT_EQ(ErrorOf(ERROR_INVALID_FUNCTION), FileError::PathFileAccess);
}

}  // namespace
}  // namespace brackwell::win32
