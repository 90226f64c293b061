#include "dirdisplay/XmlMemory.h"

#include <libxml/catalog.h>
#include <libxml/parser.h>
#include <libxml/xmlmemory.h>
#include <libxslt/xslt.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "platform/Memory.h"

namespace brackwell {
namespace {

/// From here on an allocation can be refused: strings, buffers and sets of nodes get this large, and the
/// libraries look whether they could grow.
constexpr std::size_t Large = std::size_t{1} << 20;
/// The libraries count in int and double what they let grow.
constexpr std::size_t MostAtOnce = std::size_t{1} << 30;

thread_local XmlMemory* theCurrent = nullptr;
thread_local std::ptrdiff_t theHeld = 0;

std::ptrdiff_t SizeOf(void* memory) { return static_cast<std::ptrdiff_t>(AllocatedSize(memory)); }

}  // namespace

std::size_t XmlMemory::UsualLimit() {
  constexpr std::uint64_t Most = std::numeric_limits<std::ptrdiff_t>::max();
  return static_cast<std::size_t>(std::min(Most, AvailableMemory() / 2));
}

/// The functions take and give back what those that the libraries have at first do, so nothing that was taken
/// before is lost, and other users of the libraries in the program are not disturbed.
XmlMemory::XmlMemory(std::size_t limit) : mLimit(limit), mHeldBefore(theHeld), mOuter(theCurrent) {
  [[maybe_unused]] static const bool prepared = [] {
    xmlInitParser();
    xmlInitializeCatalog();
    xsltInit();
    return xmlMemSetup(Free, Malloc, Realloc, Strdup) == 0;
  }();
  theCurrent = this;
}

XmlMemory::~XmlMemory() {
  xmlResetLastError();  // the library keeps it for the thread
  theCurrent = mOuter;
}

void XmlMemory::Claim(std::size_t size) {
  if (size > Left()) {
    Exhaust();
    throw std::bad_alloc();
  }
  mClaimed += size;
}

std::size_t XmlMemory::Used() const {
  return static_cast<std::size_t>(std::max<std::ptrdiff_t>(theHeld - mHeldBefore, 0)) + mClaimed;
}

std::size_t XmlMemory::Left() const { return mLimit - std::min(mLimit, Used()); }

void XmlMemory::Exhaust() {
  if (!mExhausted && OnExhausted) OnExhausted();
  mExhausted = true;
}

std::ptrdiff_t XmlMemory::Held() { return theHeld; }

bool XmlMemory::MayTake(std::size_t size) {
  if (!theCurrent || (size <= theCurrent->Left() && size <= MostAtOnce)) return true;
  theCurrent->Exhaust();
  return size < Large;
}

void* XmlMemory::Malloc(std::size_t size) {
  void* const memory = MayTake(size) ? std::malloc(size) : nullptr;
  theHeld += SizeOf(memory);
  return memory;
}

void* XmlMemory::Realloc(void* memory, std::size_t size) {
  const std::ptrdiff_t before = SizeOf(memory);
  void* const resized = MayTake(size) ? std::realloc(memory, size) : nullptr;
  if (resized) theHeld += SizeOf(resized) - before;
  return resized;
}

char* XmlMemory::Strdup(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* const memory = Malloc(size);
  return memory ? static_cast<char*>(std::memcpy(memory, text, size)) : nullptr;
}

void XmlMemory::Free(void* memory) {
  theHeld -= SizeOf(memory);
  std::free(memory);
}

}  // namespace brackwell
