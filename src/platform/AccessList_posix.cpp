#include "platform/AccessList_posix.h"

#include <endian.h>
#include <linux/posix_acl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace brackwell::posix {
namespace {

constexpr unsigned AllRights = 7;

int TagOf(const posix_acl_xattr_entry& entry) { return le16toh(entry.e_tag); }

}  // namespace

AccessList::AccessList(std::string_view value) {
  value.remove_prefix(std::min(value.size(), sizeof(posix_acl_xattr_header)));
  mEntries.resize(value.size() / sizeof(posix_acl_xattr_entry));
  if (!mEntries.empty())
    std::memcpy(mEntries.data(), value.data(), mEntries.size() * sizeof(posix_acl_xattr_entry));
}

std::string AccessList::Value() const {
  const posix_acl_xattr_header header{.a_version = htole32(POSIX_ACL_XATTR_VERSION)};
  std::string value(reinterpret_cast<const char*>(&header), sizeof header);
  value.append(reinterpret_cast<const char*>(mEntries.data()),
               mEntries.size() * sizeof(posix_acl_xattr_entry));
  return value;
}

ClassRights AccessList::Unnamed() const {
  return {.Group = RightsOf(ACL_GROUP_OBJ) & RightsOf(ACL_MASK), .Other = RightsOf(ACL_OTHER)};
}

void AccessList::SetUnnamed(const ClassRights& rights) {
  for (posix_acl_xattr_entry& entry : mEntries) {
    const int tag = TagOf(entry);
    if (tag == ACL_GROUP_OBJ) entry.e_perm = htole16(static_cast<std::uint16_t>(rights.Group));
    if (tag == ACL_OTHER) entry.e_perm = htole16(static_cast<std::uint16_t>(rights.Other));
  }
}

ClassRights AccessList::WithoutNames() const {
  ClassRights rights = Unnamed();
  if (!Has(ACL_USER) && !Has(ACL_GROUP)) return rights;
  // They come under the group or under the others then.
  const unsigned named = RightsOf(ACL_USER) & RightsOf(ACL_GROUP) & RightsOf(ACL_MASK);
  rights.Group &= named;
  rights.Other &= named;
  return rights;
}

unsigned AccessList::RightsOf(int tag) const {
  unsigned rights = AllRights;
  for (const posix_acl_xattr_entry& entry : mEntries)
    if (TagOf(entry) == tag) rights &= le16toh(entry.e_perm);
  return rights;
}

bool AccessList::Has(int tag) const {
  return std::ranges::any_of(mEntries, [tag](const auto& entry) { return TagOf(entry) == tag; });
}

}  // namespace brackwell::posix
