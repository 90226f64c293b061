#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/FileSystemObject.h"

namespace brackwell {

/// The members of a folder, first gathered in any order, then told apart and put in OrderOfNames. Made for
/// very many: the names stand one behind the other. `tick` is called now and then by both steps, and may
/// throw: then begin anew.
class MemberList {
 public:
  explicit MemberList(Tick tick) : mTick(std::move(tick)) {}

  void Clear();
  void Gather(std::string_view name, bool isFolder, bool isLink);
  /// Once all are gathered. From then on the two lists hold.
  void Order();

  const std::vector<Member>& Files() const { return mFiles; }
  const std::vector<Member>& SubFolders() const { return mSubFolders; }

 private:
  struct Gathered {
    std::uint32_t NameAt;
    std::uint16_t NameLength;
    bool IsFolder;
    bool IsLink;
  };

  void Sort(std::vector<Member>& members);

  const Tick mTick;
  std::string mNames;
  std::vector<Gathered> mGathered;
  std::vector<Member> mFiles;
  std::vector<Member> mSubFolders;
};

}  // namespace brackwell
