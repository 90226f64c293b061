#include <gtest/gtest.h>

#include <fstream>

#include "platform/FileSystemObject.h"
#include "platform/PendingFile_windows.h"
#include "platform/Win32.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// After windows.h.
#include <sddl.h>

// What a rewritten file keeps on Windows, and how one that others have open is treated.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;
using win32::Handle;
using win32::NativePath;

class TextFileOnWindows : public testing::Test {
 protected:
  std::wstring Native(const std::string& name) { return NativePath(mTree.Path(name)); }

  int RewriteError(const std::string& name, const std::string& content) {
    return ErrorNumber([&] {
      const auto writer = mFiles->OpenTextFile(mTree.Path(name))->Rewrite();
      writer->Write(content);
      writer->Close();
    });
  }

  Handle OpenSharing(const std::string& name, DWORD share) {
    return Handle(CreateFileW(Native(name).c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  FILE_BASIC_INFO BasicsOf(const std::string& name) {
    FILE_BASIC_INFO basics{};
    const Handle file = win32::Open(Native(name), FILE_READ_ATTRIBUTES);
    EXPECT_TRUE(GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &basics, sizeof basics));
    return basics;
  }

  std::wstring AccessListOf(const std::string& name) {
    std::byte security[4096];
    DWORD size = 0;
    wchar_t* text = nullptr;
    if (!GetFileSecurityW(Native(name).c_str(), DACL_SECURITY_INFORMATION, security, sizeof security,
                          &size) ||
        !ConvertSecurityDescriptorToStringSecurityDescriptorW(security, SDDL_REVISION_1,
                                                              DACL_SECURITY_INFORMATION, &text, nullptr))
      return L"<none>";
    const std::wstring result = text;
    LocalFree(text);
    return result;
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

TEST_F(TextFileOnWindows, KeepsAttributes) {
  constexpr DWORD Attributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
  mTree.File("file", "old", 10);
  ASSERT_TRUE(SetFileAttributesW(Native("file").c_str(), Attributes));
  const FILE_BASIC_INFO before = BasicsOf("file");
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(mTree.Read("file"), "new");
  EXPECT_EQ(BasicsOf("file").FileAttributes, Attributes);
  EXPECT_GT(BasicsOf("file").LastWriteTime.QuadPart, before.LastWriteTime.QuadPart);
}

TEST_F(TextFileOnWindows, KeepsTheDateOfCreation) {
  mTree.File("file", "old");
  FILE_BASIC_INFO basics{};
  basics.CreationTime.QuadPart = 116444736000000000;
  ASSERT_TRUE(SetFileInformationByHandle(win32::Open(Native("file"), FILE_WRITE_ATTRIBUTES).Get(),
                                         FileBasicInfo, &basics, sizeof basics));
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(BasicsOf("file").CreationTime.QuadPart, 116444736000000000);
}

TEST_F(TextFileOnWindows, KeepsTheAccessList) {
  mTree.File("file", "old");
  PSECURITY_DESCRIPTOR everybody = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(L"D:P(A;;FA;;;WD)", SDDL_REVISION_1,
                                                                   &everybody, nullptr));
  ASSERT_TRUE(SetFileSecurityW(Native("file").c_str(), DACL_SECURITY_INFORMATION, everybody));
  LocalFree(everybody);
  const std::wstring before = AccessListOf("file");
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(mTree.Read("file"), "new");
  EXPECT_EQ(AccessListOf("file"), before);
}

TEST_F(TextFileOnWindows, KeepsOtherStreams) {
  mTree.File("file", "old");
  std::ofstream(mTree.Path("file") + ":zone") << "internet";
  EXPECT_EQ(RewriteError("file", "new"), 0);
  EXPECT_EQ(mTree.Read("file"), "new");
  EXPECT_EQ(mTree.Read("file:zone"), "internet");
}

TEST_F(TextFileOnWindows, ANewFileCanBeginAsACopy) {
  mTree.File("file", "the old content");
  win32::PendingFile pending(mTree.Path("file"), mTree.Path("file"), {});
  win32::WriteAll(pending.File(), "new", mTree.Path("file"));
  pending.Commit(true);
  EXPECT_EQ(mTree.Read("file"), "new old content");
  EXPECT_EQ(mTree.List(), Names{"file"});
}

TEST_F(TextFileOnWindows, ANewFileCanBeginAsACopyOfAReadOnlyOne) {
  mTree.File("model", "the old content");
  mTree.SetReadOnly("model");
  {
    win32::PendingFile pending(mTree.Path("file"), mTree.Path("model"), {});
    pending.Commit(true);
    const win32::PendingFile dropped(mTree.Path("other"), mTree.Path("model"), {});
  }
  EXPECT_EQ(mTree.Read("file"), "the old content");
  EXPECT_EQ(mTree.List(), (Names{"file", "model"}));
}

TEST_F(TextFileOnWindows, AStoppedCopyLeavesNothing) {
  mTree.File("model", std::string(8 << 20, 'x'));
  struct Stopped {};
  const auto stop = [] { throw Stopped{}; };
  EXPECT_THROW(win32::PendingFile(mTree.Path("file"), mTree.Path("model"), stop), Stopped);
  EXPECT_EQ(mTree.List(), Names{"model"});
}

TEST_F(TextFileOnWindows, AFileThatOthersReadIsRewritten) {
  mTree.File("file", "old");
  const Handle other = OpenSharing("file", FILE_SHARE_READ | FILE_SHARE_WRITE);
  EXPECT_EQ(RewriteError("file", "new and longer"), 0);
  EXPECT_EQ(mTree.Read("file"), "new and longer");
  EXPECT_EQ(mTree.List(), Names{"file"});
}

TEST_F(TextFileOnWindows, AFileThatOthersKeepToThemselvesIsRefusedAtOnce) {
  mTree.File("file", "old");
  const Handle other = OpenSharing("file", FILE_SHARE_READ);
  const auto reader = mFiles->OpenTextFile(mTree.Path("file"));
  EXPECT_EQ(ErrorNumber([&] { reader->Rewrite(); }), 70);
  EXPECT_EQ(reader->ReadAll(), "old");
  EXPECT_EQ(mTree.List(), Names{"file"});
}

TEST_F(TextFileOnWindows, AFileThatIsOpenForWritingIsRefused) {
  mTree.File("file", "old");
  const auto reader = mFiles->OpenTextFile(mTree.Path("file"));
  const auto writer = reader->Rewrite();
  writer->Write("new");
  const Handle other = win32::Open(Native("file"), GENERIC_WRITE);
  EXPECT_EQ(ErrorNumber([&] { writer->Close(); }), 70);
  EXPECT_EQ(ErrorNumber([&] { mFiles->OpenTextFile(mTree.Path("file"))->Rewrite(); }), 70);
  EXPECT_EQ(mTree.Read("file"), "old");
}

}  // namespace
}  // namespace brackwell
