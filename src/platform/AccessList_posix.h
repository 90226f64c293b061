#pragma once

#include <linux/posix_acl_xattr.h>

#include <string>
#include <string_view>
#include <vector>

namespace brackwell::posix {

/// The rights of a file's group and of all others, as three bits each: read 4, write 2, execute 1.
struct ClassRights {
  unsigned Group = 0;
  unsigned Other = 0;

  /// For a file that has another group than the one these are for: whoever was in the group may be one of the
  /// others now, and the other way around.
  ClassRights ForAnotherGroup() const { return {.Group = Group & Other, .Other = Group & Other}; }
};

/// A file's access list, which the system keeps as an extended attribute. Its mask limits the group and all
/// who are named in it; the file's mode shows the mask in the place of the group's rights.
class AccessList {
 public:
  static constexpr char Attribute[] = "system.posix_acl_access";

  explicit AccessList(std::string_view value);
  std::string Value() const;

  /// What the group and all who are not named may do.
  ClassRights Unnamed() const;
  void SetUnnamed(const ClassRights& rights);
  /// For a file that can have no list: with these nobody may do more than by the list.
  ClassRights WithoutNames() const;

 private:
  /// What all entries with this tag grant.
  unsigned RightsOf(int tag) const;
  bool Has(int tag) const;

  std::vector<posix_acl_xattr_entry> mEntries;
};

}  // namespace brackwell::posix
