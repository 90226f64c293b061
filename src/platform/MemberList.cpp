#include "platform/MemberList.h"

#include <algorithm>

#include "platform/CaseRules.h"

namespace brackwell {

void MemberList::Clear() {
  mNames.clear();
  mGathered.clear();
  mFiles.clear();
  mSubFolders.clear();
}

void MemberList::Gather(std::string_view name, bool isFolder, bool isLink) {
  mGathered.push_back({.NameAt = static_cast<std::uint32_t>(mNames.size()),
                       .NameLength = static_cast<std::uint16_t>(name.size()),
                       .IsFolder = isFolder,
                       .IsLink = isLink});
  mNames += name;
  if (mGathered.size() % 1000 == 0 && mTick) mTick();
}

void MemberList::Order() {
  const auto folders = std::ranges::count_if(mGathered, &Gathered::IsFolder);
  mSubFolders.reserve(folders);
  mFiles.reserve(mGathered.size() - folders);
  for (const Gathered& member : mGathered) {
    const std::string_view name(mNames.data() + member.NameAt, member.NameLength);
    (member.IsFolder ? mSubFolders : mFiles).push_back({name, member.IsLink});
  }
  mGathered = {};
  Sort(mFiles);
  Sort(mSubFolders);
}

void MemberList::Sort(std::vector<Member>& members) {
  unsigned comparisons = 0;
  std::sort(members.begin(), members.end(), [&](const Member& a, const Member& b) {
    if ((++comparisons & 0xFFFF) == 0 && mTick) mTick();
    return OrderOfNames(a.Name, b.Name) < 0;
  });
}

}  // namespace brackwell
