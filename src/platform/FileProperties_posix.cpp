#include "platform/FileProperties_posix.h"

#include <linux/limits.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "platform/AccessList_posix.h"

namespace brackwell::posix {
namespace {

using Names = std::vector<std::string>;

/// What is granted to, or signed for, the old content only; the system takes it away when a file is written.
bool BelongsToContent(const std::string& attribute) {
  return attribute == "security.capability" || attribute == "security.ima" || attribute == "security.evm";
}

/// In one call for all but a few files.
std::optional<Names> AttributesOf(const Handle& file) {
  char few[1024];
  std::string many;
  const char* list = few;
  auto length = flistxattr(file.Get(), few, sizeof few);
  if (length < 0 && errno == ERANGE) {
    many.resize(XATTR_LIST_MAX);
    list = many.data();
    length = flistxattr(file.Get(), many.data(), many.size());
  }
  if (length < 0) return errno == ENOTSUP ? std::optional(Names()) : std::nullopt;
  Names names;
  for (const char* name = list; name < list + length; name += std::strlen(name) + 1) names.emplace_back(name);
  return names;
}

std::optional<std::string> ValueOf(const Handle& file, const std::string& attribute) {
  const auto size = fgetxattr(file.Get(), attribute.c_str(), nullptr, 0);
  if (size < 0) return std::nullopt;
  std::string value(static_cast<std::size_t>(size), '\0');
  const auto length = fgetxattr(file.Get(), attribute.c_str(), value.data(), value.size());
  if (length != size) return std::nullopt;
  return value;
}

bool CopyAttribute(const Handle& from, const std::string& attribute, const Handle& to) {
  const auto value = ValueOf(from, attribute);
  if (!value) return false;
  if (ValueOf(to, attribute) == value) return true;  // a label that the system has given, say
  return fsetxattr(to.Get(), attribute.c_str(), value->data(), value->size(), 0) == 0;
}

/// A new file may have been given an access list by its folder.
bool RemoveOtherAttributes(const Handle& file, const Names& kept) {
  const auto attributes = AttributesOf(file);
  return attributes && std::all_of(attributes->begin(), attributes->end(), [&](const std::string& attribute) {
           return attribute.starts_with("security.") ||
                  std::find(kept.begin(), kept.end(), attribute) != kept.end() ||
                  fremovexattr(file.Get(), attribute.c_str()) == 0;
         });
}

bool CopyAttributes(const Handle& from, const Handle& to) {
  const auto attributes = AttributesOf(from);
  return attributes && RemoveOtherAttributes(to, *attributes) &&
         std::all_of(attributes->begin(), attributes->end(), [&](const std::string& attribute) {
           return BelongsToContent(attribute) || CopyAttribute(from, attribute, to);
         });
}

bool CopyOwner(const struct stat& status, const Handle& to) {
  struct stat made {};
  if (fstat(to.Get(), &made) != 0) return false;
  if (made.st_uid == status.st_uid && made.st_gid == status.st_gid) return true;
  return fchown(to.Get(), status.st_uid, status.st_gid) == 0;
}

/// The mode of such a file after this user has written to it.
mode_t ModeOnceWritten(mode_t mode) {
  mode &= 07777;
  if (geteuid() == 0) return mode;
  const bool runsAsGroup = (mode & S_IXGRP) != 0;
  return mode & ~(S_ISUID | (runsAsGroup ? S_ISGID : 0U));
}

bool Contains(const Names& names, const char* name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

std::optional<AccessList> AccessListOf(const Handle& file, const Names& attributes) {
  if (!Contains(attributes, AccessList::Attribute)) return std::nullopt;
  const auto value = ValueOf(file, AccessList::Attribute);
  return value ? std::optional(AccessList(*value)) : std::nullopt;
}

bool Set(const AccessList& list, const Handle& file) {
  const std::string value = list.Value();
  return fsetxattr(file.Get(), AccessList::Attribute, value.data(), value.size(), 0) == 0;
}

/// A file that has none of its own may have been given one by its folder.
void RemoveAccessList(const Handle& file) {
  if (Contains(AttributesOf(file).value_or(Names()), AccessList::Attribute))
    fremovexattr(file.Get(), AccessList::Attribute);
}

mode_t WithClasses(mode_t mode, const ClassRights& rights) {
  return (mode & ~static_cast<mode_t>(077)) | rights.Group << 3 | rights.Other;
}

/// `mode` is the source's. The mode last: a change of the access list changes it.
void SetRights(const Handle& to, mode_t mode, std::optional<AccessList> list, bool hasSameGroup) {
  ClassRights rights = list ? list->Unnamed() : ClassRights{.Group = mode >> 3 & 7, .Other = mode & 7};
  if (!hasSameGroup) rights = rights.ForAnotherGroup();
  if (list) list->SetUnnamed(rights);
  if (list && Set(*list, to)) {
    rights.Group = mode >> 3 & 7;  // its mask
  } else {
    RemoveAccessList(to);
    if (list) rights = list->WithoutNames();
  }
  fchmod(to.Get(), WithClasses(mode, rights));
}

}  // namespace

bool CopyProperties(const Handle& from, const struct stat& status, const Handle& to) {
  const mode_t mode = ModeOnceWritten(status.st_mode);
  struct stat made {};
  // The mode last: a change of owner or access list changes it.
  return CopyOwner(status, to) && CopyAttributes(from, to) &&
         (fchmod(to.Get(), mode) == 0 || errno == EPERM) && fstat(to.Get(), &made) == 0 &&
         made.st_uid == status.st_uid && made.st_gid == status.st_gid && (made.st_mode & 07777) == mode;
}

void CopyPropertiesToNew(const Handle& from, const struct stat& status, const Handle& to) {
  const Names attributes = AttributesOf(from).value_or(Names());
  for (const std::string& attribute : attributes)
    if (attribute.starts_with("user.")) CopyAttribute(from, attribute, to);
  struct stat made {};
  const bool known = fstat(to.Get(), &made) == 0;
  const bool hasSameGroup = known && made.st_gid == status.st_gid;
  const bool hasSameOwner = hasSameGroup && made.st_uid == status.st_uid;
  const auto list = AccessListOf(from, attributes);
  mode_t mode = status.st_mode & (hasSameOwner ? 07777 : 0777);
  // Without the list nobody knows what the group may do: the mode shows the list's mask in that place.
  if (!list && Contains(attributes, AccessList::Attribute)) mode &= ~static_cast<mode_t>(S_IRWXG);
  SetRights(to, mode, list, hasSameGroup);
}

}  // namespace brackwell::posix
