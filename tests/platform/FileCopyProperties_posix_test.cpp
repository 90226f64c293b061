#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/posix_acl.h>
#include <linux/posix_acl_xattr.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <initializer_list>

#include "platform/FileSystemObject.h"
#include "support/Child_posix.h"
#include "support/ErrorNumber.h"
#include "support/TempTree.h"

// What belongs to a file beside its content: a copy onto a file leaves it alone, a new file takes it from its
// source and lets in nobody whom the source does not.

namespace brackwell {
namespace {

using Names = std::vector<std::string>;

constexpr int Nobody = 65534;
constexpr char AccessList[] = "system.posix_acl_access";
constexpr char DefaultList[] = "system.posix_acl_default";

struct Entry {
  std::uint16_t Tag;
  std::uint16_t Rights;
  std::uint32_t Id = ACL_UNDEFINED_ID;
};

std::string ListOf(std::initializer_list<Entry> entries) {
  const posix_acl_xattr_header header{POSIX_ACL_XATTR_VERSION};
  std::string value(reinterpret_cast<const char*>(&header), sizeof header);
  for (const Entry& entry : entries) {
    const posix_acl_xattr_entry packed{entry.Tag, entry.Rights, entry.Id};
    value.append(reinterpret_cast<const char*>(&packed), sizeof packed);
  }
  return value;
}

/// The mask lets through what the group does not have: its mode is 0660.
std::string ListThatKeepsTheGroupOut() {
  return ListOf({{ACL_USER_OBJ, 6}, {ACL_GROUP_OBJ, 0}, {ACL_MASK, 6}, {ACL_OTHER, 0}});
}

std::string ListWithANamedUser() {
  return ListOf({{ACL_USER_OBJ, 6}, {ACL_USER, 4, 1234}, {ACL_GROUP_OBJ, 6}, {ACL_MASK, 6}, {ACL_OTHER, 4}});
}

class FileProperties : public testing::Test {
 protected:
  FileProperties() { chmod(mTree.Path().c_str(), 0777); }

  int CopyError(const std::string& source, const std::string& target) {
    return ErrorNumber([&] { mFiles->CopyFile(mTree.Path(source), mTree.Path(target), true); });
  }
  struct stat StatusOf(const std::string& name) {
    struct stat status {};
    EXPECT_EQ(lstat(mTree.Path(name).c_str(), &status), 0) << name;
    return status;
  }
  mode_t ModeOf(const std::string& name) { return StatusOf(name).st_mode & 07777; }
  void Mode(const std::string& name, mode_t mode) { ASSERT_EQ(chmod(mTree.Path(name).c_str(), mode), 0); }
  void HardLink(const std::string& name, const std::string& newName) {
    ASSERT_EQ(link(mTree.Path(name).c_str(), mTree.Path(newName).c_str()), 0);
  }
  bool Set(const std::string& name, const char* attribute, const std::string& value) {
    return setxattr(mTree.Path(name).c_str(), attribute, value.data(), value.size(), 0) == 0;
  }
  std::string Get(const std::string& name, const char* attribute) {
    char value[256] = {};
    const auto length = getxattr(mTree.Path(name).c_str(), attribute, value, sizeof value);
    return length < 0 ? "<none>" : std::string(value, static_cast<std::size_t>(length));
  }

  TempTree mTree;
  const std::unique_ptr<FileSystemObject> mFiles = CreateFileSystemObject();
};

using OfAFileThatIsThere = FileProperties;
using OfANewFile = FileProperties;
using OfANewFolder = FileProperties;

// --- A copy onto a file that is there

TEST_F(OfAFileThatIsThere, ModeAndOwnerStay) {
  mTree.File("source", "new", 30);
  mTree.File("target", "old");
  Mode("source", 0750);
  Mode("target", 0626);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(mTree.Path("target").c_str(), Nobody, Nobody), 0);
  }
  const struct stat before = StatusOf("target");
  ASSERT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(mTree.Read("target"), "new");
  EXPECT_EQ(ModeOf("target"), 0626u);
  EXPECT_EQ(StatusOf("target").st_uid, before.st_uid);
  EXPECT_EQ(StatusOf("target").st_gid, before.st_gid);
  EXPECT_EQ(mFiles->GetFile(mTree.Path("target")).DateLastModified, TempTree::Time(30));
}

TEST_F(OfAFileThatIsThere, AccessListAndAttributesStay) {
  mTree.File("source", "new");
  mTree.File("target", "old");
  if (!Set("target", "user.of", "target") || !Set("source", "user.of", "source") ||
      !Set("source", "user.more", "source") || !Set("target", AccessList, ListWithANamedUser()))
    GTEST_SKIP() << "no extended attributes or access lists in the folder for temporary files";
  ASSERT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(mTree.Read("target"), "new");
  EXPECT_EQ(Get("target", "user.of"), "target");
  EXPECT_EQ(Get("target", "user.more"), "<none>");
  EXPECT_EQ(Get("target", AccessList), ListWithANamedUser());
}

TEST_F(OfAFileThatIsThere, ItsOtherNamesStay) {
  const std::string content(300'000, 'n');
  mTree.File("source", content, 30);
  mTree.File("target", "old");
  Mode("target", 0640);
  HardLink("target", "other name");
  int ticks = 0;
  mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true, [&] { ++ticks; });
  EXPECT_GT(ticks, 0);
  EXPECT_EQ(mTree.Read("other name"), content);
  EXPECT_EQ(StatusOf("target").st_ino, StatusOf("other name").st_ino);
  EXPECT_EQ(ModeOf("target"), 0640u);
  EXPECT_EQ(mFiles->GetFile(mTree.Path("target")).DateLastModified, TempTree::Time(30));
  EXPECT_EQ(mTree.List(), (Names{"other name", "source", "target"}));
}

/// Half a copy would be worse than one that ends a moment later.
TEST_F(OfAFileThatIsThere, TheEndOfTheRunWaitsUntilOneWithOtherNamesIsWritten) {
  mTree.File("source", "new");
  mTree.File("target", "old");
  HardLink("target", "other name");
  const auto copy = [&] {
    std::atomic<bool> isBeingWritten = false;
    std::atomic<bool> isEnded = false;
    const pid_t own = getpid();
    BeforeCall(SYS_fdatasync, -1, 0, [&](pid_t process) {
      if (process == own) return;
      isBeingWritten = true;
      while (!isEnded) usleep(1000);
    });
    return ErrorNumber([&] {
      mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true, [&] {
        if (!isBeingWritten) return;
        isEnded = true;
        throw FileSystemError(FileError::DeviceError, "ended");
      });
    });
  };
  EXPECT_EQ(InChild(copy), 0);
  EXPECT_EQ(mTree.Read("other name"), "new");
}

TEST_F(OfAFileThatIsThere, WhatAnotherProgramIsWritingToIsLeftAlone) {
  mTree.File("source", "new");
  mTree.File("target", "old");
  const int writer = open(mTree.Path("target").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  EXPECT_EQ(CopyError("source", "target"), 70);
  ASSERT_EQ(write(writer, "er", 2), 2);
  close(writer);
  EXPECT_EQ(mTree.Read("target"), "older");
  EXPECT_EQ(CopyError("source", "target"), 0);
}

TEST_F(OfAFileThatIsThere, WhatItGetsMeanwhileIsNotLost) {
  mTree.File("source", "new");
  mTree.File("target", "old");
  EXPECT_EQ(ErrorNumber([&] {
              mFiles->CopyFile(mTree.Path("source"), mTree.Path("target"), true,
                               [&] { mTree.File("target", "their own"); });
            }),
            75);
  EXPECT_EQ(mTree.Read("target"), "their own");
  EXPECT_EQ(mTree.List(), (Names{"source", "target"}));
}

TEST_F(OfAFileThatIsThere, ACopyOfTheRenamersIsReplacedNotWrittenInto) {
  mTree.File("source", "new", 30);
  mTree.File("copy", "original");
  Mode("source", 0640);
  HardLink("copy", "original");
  mFiles->CopyAsNewFile(mTree.Path("source"), mTree.Path("copy"));
  EXPECT_EQ(mTree.Read("copy"), "new");
  EXPECT_EQ(mTree.Read("original"), "original");
  EXPECT_EQ(ModeOf("copy"), 0640u);
  mTree.SetReadOnly("copy");
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyAsNewFile(mTree.Path("source"), mTree.Path("copy")); }), 70);
}

TEST_F(OfANewFile, TheRenamersCopyIsOneOfWhatItsSourceLeadsTo) {
  mTree.File("real", "text", 30);
  ASSERT_EQ(symlink("real", mTree.Path("link").c_str()), 0);
  mFiles->CopyAsNewFile(mTree.Path("link"), mTree.Path("copy"));
  EXPECT_TRUE(S_ISREG(StatusOf("copy").st_mode));
  EXPECT_EQ(mTree.Read("copy"), "text");
  EXPECT_EQ(mFiles->GetFile(mTree.Path("copy")).DateLastModified, TempTree::Time(30));
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyAsNewFile(mTree.Path("copy"), mTree.Path("link")); }), 75);
  EXPECT_EQ(ErrorNumber([&] { mFiles->CopyAsNewFile(mTree.Path("none"), mTree.Path("new")); }), 53);
  EXPECT_EQ(mTree.Read("real"), "text");
}

// --- A new file

TEST_F(OfANewFile, TakesAccessListAndUserAttributes) {
  mTree.File("source", "text");
  if (!Set("source", "user.origin", "far away") || !Set("source", AccessList, ListWithANamedUser()))
    GTEST_SKIP() << "no extended attributes or access lists in the folder for temporary files";
  ASSERT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(Get("target", "user.origin"), "far away");
  EXPECT_EQ(Get("target", AccessList), ListWithANamedUser());
  EXPECT_EQ(ModeOf("target"), 0664u);
}

TEST_F(OfANewFile, AMaskDoesNotBecomeTheRightsOfTheGroup) {
  mTree.File("source", "text");
  if (!Set("source", AccessList, ListThatKeepsTheGroupOut())) GTEST_SKIP() << "no access lists";
  ASSERT_EQ(ModeOf("source"), 0660u);
  ASSERT_EQ(CopyError("source", "target"), 0);
  EXPECT_EQ(Get("target", AccessList), ListThatKeepsTheGroupOut());
}

/// On a file system without access lists, which here is one that refuses to take them.
TEST_F(OfANewFile, WithoutAccessListsNobodyGetsMore) {
  const struct {
    std::string List;
    mode_t Mode;
  } cases[] = {
      {ListThatKeepsTheGroupOut(), 0600},
      {ListWithANamedUser(), 0644},
      {ListOf({{ACL_USER_OBJ, 6}, {ACL_USER, 0, 1234}, {ACL_GROUP_OBJ, 4}, {ACL_MASK, 4}, {ACL_OTHER, 4}}),
       0600},
      {ListOf({{ACL_USER_OBJ, 6}, {ACL_GROUP_OBJ, 6}, {ACL_GROUP, 7, 1234}, {ACL_MASK, 4}, {ACL_OTHER, 6}}),
       0644},
  };
  mTree.Folder("plain");
  for (const auto& [list, mode] : cases) {
    mTree.File("source", "text");
    if (!Set("source", AccessList, list)) GTEST_SKIP() << "no access lists";
    mTree.File("plain/target");
    mTree.Remove("plain/target");
    ASSERT_EQ(InChild([&] {
                RefuseCall(SYS_fsetxattr, 4, 0, EOPNOTSUPP);
                return CopyError("source", "plain/target");
              }),
              0);
    EXPECT_EQ(Get("plain/target", AccessList), "<none>");
    EXPECT_EQ(ModeOf("plain/target"), mode);
    mTree.Remove("plain/target");
    mTree.Remove("source");
  }
}

TEST_F(OfANewFile, WhatItsFolderGivesToNewFilesLetsNobodyIn) {
  mTree.File("source", "text");
  mTree.Folder("shared");
  Mode("source", 0660);
  if (!Set("shared", DefaultList, ListWithANamedUser())) GTEST_SKIP() << "no access lists";
  ASSERT_EQ(CopyError("source", "shared/target"), 0);
  EXPECT_EQ(Get("shared/target", AccessList), "<none>");
  EXPECT_EQ(ModeOf("shared/target"), 0660u);
}

/// Whose members may be others to the source, and the other way around.
TEST_F(OfANewFile, AnotherGroupGetsWhatBothOldGroupAndOthersHad) {
  if (geteuid() != 0) GTEST_SKIP() << "only an administrator can choose any group";
  mTree.Folder("shared");
  ASSERT_EQ(chown(mTree.Path("shared").c_str(), 0, Nobody), 0);
  Mode("shared", 02777);
  const struct {
    mode_t Source;
    mode_t Copy;
  } cases[] = {{0640, 0600}, {0644, 0644}, {0664, 0644}, {0604, 0600}, {0755, 0755}, {0660, 0600}};
  for (const auto& [source, copy] : cases) {
    mTree.File("source", "text");
    Mode("source", source);
    ASSERT_EQ(CopyError("source", "shared/target"), 0);
    EXPECT_EQ(StatusOf("shared/target").st_gid, static_cast<gid_t>(Nobody));
    EXPECT_EQ(ModeOf("shared/target"), copy) << std::oct << source;
    mTree.Remove("shared/target");
  }
  if (!Set("source", AccessList, ListWithANamedUser())) GTEST_SKIP() << "no access lists";
  ASSERT_EQ(CopyError("source", "shared/target"), 0);
  EXPECT_EQ(
      Get("shared/target", AccessList),
      ListOf({{ACL_USER_OBJ, 6}, {ACL_USER, 4, 1234}, {ACL_GROUP_OBJ, 4}, {ACL_MASK, 6}, {ACL_OTHER, 4}}));
}

// --- A copy of a folder

TEST_F(OfANewFolder, TheGroupGetsNoMoreThanItsAccessListGives) {
  mTree.File("source/sub/file", "text");
  if (!Set("source/sub", AccessList,
           ListOf({{ACL_USER_OBJ, 7}, {ACL_GROUP_OBJ, 0}, {ACL_MASK, 7}, {ACL_OTHER, 0}})))
    GTEST_SKIP() << "no access lists here";
  const std::string list = Get("source/sub", AccessList);
  mFiles->CopyFolder(mTree.Path("source"), mTree.Path("target"), true);
  EXPECT_EQ(Get("target/sub", AccessList), list);
  EXPECT_EQ(mTree.Read("target/sub/file"), "text");
}

}  // namespace
}  // namespace brackwell
