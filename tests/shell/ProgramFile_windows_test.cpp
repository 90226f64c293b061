#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/Program.h"
#include "platform/Win32.h"

// The program's file as it was built, and what the manifest that it shares with the tests asks for.

namespace brackwell {
namespace {

const std::wstring ProgramFile = win32::NativePath(BRACKWELL_PROGRAM_FOLDER "/brackwell.exe");

class VersionBlock : public testing::Test {
 protected:
  void SetUp() override {
    mBlock.resize(GetFileVersionInfoSizeW(ProgramFile.c_str(), nullptr));
    ASSERT_TRUE(
        GetFileVersionInfoW(ProgramFile.c_str(), 0, static_cast<DWORD>(mBlock.size()), mBlock.data()));
  }

  /// One of its texts.
  std::string Text(const std::wstring& name) const {
    void* text = nullptr;
    UINT length = 0;
    const std::wstring path = L"\\StringFileInfo\\040904B0\\" + name;
    return VerQueryValueW(mBlock.data(), path.c_str(), &text, &length)
               ? win32::Narrow(static_cast<const wchar_t*>(text))
               : "none";
  }

  std::vector<std::byte> mBlock;
};

TEST_F(VersionBlock, HasTheNumbersThatAboutShows) {
  void* data = nullptr;
  UINT size = 0;
  ASSERT_TRUE(VerQueryValueW(mBlock.data(), L"\\", &data, &size));
  const auto& version = *static_cast<const VS_FIXEDFILEINFO*>(data);
  EXPECT_EQ(HIWORD(version.dwFileVersionMS), ProgramMajor);
  EXPECT_EQ(LOWORD(version.dwFileVersionMS), ProgramMinor);
  EXPECT_EQ(HIWORD(version.dwFileVersionLS), ProgramRevision);
}

TEST_F(VersionBlock, NamesTheProgram) {
  EXPECT_EQ(Text(L"ProductName"), ProgramTitle);
  EXPECT_EQ(Text(L"FileDescription"), ProgramTitle);
  EXPECT_EQ(Text(L"Comments"), ProgramDescription);
  EXPECT_EQ(Text(L"ProductVersion"), ProgramVersion);
  EXPECT_EQ(Text(L"LegalCopyright"), "Copyright 2026 The Brackwell developers");
}

TEST(ProgramFileTest, HasAnIcon) {
  EXPECT_EQ(ExtractIconExW(ProgramFile.c_str(), -1, nullptr, nullptr, 0), 1U);
}

TEST(ProgramFileTest, HasAManifest) {
  const HMODULE program = LoadLibraryExW(ProgramFile.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
  ASSERT_TRUE(program);
  const HRSRC found = FindResourceW(program, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(24));
  ASSERT_TRUE(found);
  const std::string manifest(static_cast<const char*>(LockResource(LoadResource(program, found))),
                             SizeofResource(program, found));
  for (const char* wish : {">UTF-8</activeCodePage>", ">true</longPathAware>", ">PerMonitorV2</dpiAwareness>",
                           "\"asInvoker\"", "Common-Controls"})
    EXPECT_NE(manifest.find(wish), std::string::npos) << wish;
  FreeLibrary(program);
}

TEST(Manifest, TheCodePageIsUtf8) { EXPECT_EQ(GetACP(), static_cast<UINT>(CP_UTF8)); }

}  // namespace
}  // namespace brackwell
