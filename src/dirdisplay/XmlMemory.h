#pragma once

#include <cstddef>
#include <functional>

namespace brackwell {

/// Counts what one document and the transformation of it take: all that libxml2 and libxslt allocate on its
/// thread while it is alive, and what is claimed. They nest: events that run meanwhile may begin and end
/// another.
///
/// The libraries do not survive being refused a small allocation: they go on without what they asked for. So
/// beyond the limit they are refused only large ones, and have to be told to end their work.
class XmlMemory {
 public:
  /// Half of what is free now. A copy of a tree that is being made is completed, and it can be as large as
  /// half of what was taken before.
  static std::size_t UsualLimit();

  explicit XmlMemory(std::size_t limit = UsualLimit());
  ~XmlMemory();
  XmlMemory(const XmlMemory&) = delete;
  XmlMemory& operator=(const XmlMemory&) = delete;

  /// Counts memory that is taken elsewhere. Throws std::bad_alloc where there is too little left.
  void Claim(std::size_t size);

  std::size_t Used() const;
  /// More was wanted than there is.
  bool IsExhausted() const { return mExhausted; }
  /// Called once that is so, in the midst of an allocation: it must not allocate.
  std::function<void()> OnExhausted;

  /// The bytes that the libraries hold, as far as they have taken and given them back on this thread.
  static std::ptrdiff_t Held();

 private:
  static void* Malloc(std::size_t size);
  static void* Realloc(void* memory, std::size_t size);
  static char* Strdup(const char* text);
  static void Free(void* memory);
  static bool MayTake(std::size_t size);

  std::size_t Left() const;
  void Exhaust();

  const std::size_t mLimit;
  const std::ptrdiff_t mHeldBefore;
  std::size_t mClaimed = 0;
  bool mExhausted = false;
  XmlMemory* const mOuter;
};

}  // namespace brackwell
