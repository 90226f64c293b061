#include "platform/NameCounts.h"

#include <functional>
#include <utility>

#include "platform/CaseRules.h"

namespace brackwell {

NameCounts::Key NameCounts::KeyOf(std::string_view name) { return std::hash<std::string>()(Upper(name)); }

/// Where the name is, or where it would be.
std::size_t NameCounts::SlotOf(Key name) const {
  const std::size_t mask = mSlots.size() - 1;
  std::size_t at = name & mask;
  while (mSlots[at].IsUsed && mSlots[at].Name != name) at = (at + 1) & mask;
  return at;
}

void NameCounts::Add(Key name) {
  if (mUsed * 2 >= mSlots.size()) Grow();
  Slot& slot = mSlots[SlotOf(name)];
  if (!slot.IsUsed) ++mUsed;
  slot = {.Name = name, .Count = slot.Count + 1, .IsUsed = true};
}

void NameCounts::Remove(Key name) {
  Slot& slot = mSlots[SlotOf(name)];
  if (slot.Count > 0) --slot.Count;
}

void NameCounts::Grow() {
  const std::vector<Slot> old = std::exchange(mSlots, std::vector<Slot>(mSlots.size() * 4));
  mUsed = 0;
  for (const Slot& slot : old) {
    if (slot.Count == 0) continue;
    mSlots[SlotOf(slot.Name)] = slot;
    ++mUsed;
  }
}

}  // namespace brackwell
