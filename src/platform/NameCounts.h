#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace brackwell {

/// How many members of a folder bear each name, case ignored. Made for very many that change all the time: of
/// a name it keeps 64 bits that are mixed from it, so two names are taken for one about as often as a disk
/// returns wrong bytes.
class NameCounts {
 public:
  using Key = std::uint64_t;

  static Key KeyOf(std::string_view name);

  int Count(Key name) const { return mSlots[SlotOf(name)].Count; }
  void Add(Key name);
  /// No effect on a name that nobody bears.
  void Remove(Key name);

 private:
  struct Slot {
    Key Name = 0;
    int Count = 0;
    bool IsUsed = false;  // also once nobody bears the name any more: those behind it must still be found
  };

  std::size_t SlotOf(Key name) const;
  void Grow();

  std::vector<Slot> mSlots = std::vector<Slot>(1024);  // a power of two
  std::size_t mUsed = 0;
};

}  // namespace brackwell
