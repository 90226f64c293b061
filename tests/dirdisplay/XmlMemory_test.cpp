#include "dirdisplay/XmlMemory.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "dirdisplay/XmlMessages.h"

namespace brackwell {
namespace {

/// Blocks of all sizes, each filled with a letter of its own.
class Blocks {
 public:
  explicit Blocks(unsigned seed) : mRandom(seed) {}

  void Step() {
    if (mBlocks.empty() || mRandom() % 3 == 0) return Add();
    Block& block = mBlocks[mRandom() % mBlocks.size()];
    EXPECT_TRUE(IsWhole(block));
    if (mRandom() % 2 == 0) return Resize(block);
    xmlFree(block.Memory);
    block = mBlocks.back();
    mBlocks.pop_back();
  }
  void Check() const {
    for (const Block& block : mBlocks) EXPECT_TRUE(IsWhole(block));
  }

 private:
  struct Block {
    char* Memory;
    std::size_t Size;
    char Letter;
  };

  std::size_t AnySize() { return mRandom() % (std::size_t{1} << (mRandom() % 18)); }
  void Add() {
    const std::size_t size = AnySize();
    Block block{static_cast<char*>(xmlMalloc(size)), size, static_cast<char>('a' + mRandom() % 26)};
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.Memory) % 16, 0u);
    std::memset(block.Memory, block.Letter, size);
    mBlocks.push_back(block);
  }
  void Resize(Block& block) {
    const std::size_t size = AnySize();
    block.Memory = static_cast<char*>(xmlRealloc(block.Memory, size));
    const std::size_t kept = std::min(size, block.Size);
    EXPECT_EQ(std::string(block.Memory, kept), std::string(kept, block.Letter));
    std::memset(block.Memory, block.Letter, size);
    block.Size = size;
  }
  static bool IsWhole(const Block& block) {
    return std::string_view(block.Memory, block.Size) == std::string(block.Size, block.Letter);
  }

  std::mt19937 mRandom;
  std::vector<Block> mBlocks;
};

TEST(XmlMemory, BlocksKeepWhatIsInThem) {
  const XmlMemory memory;
  Blocks blocks(1);
  for (int i = 0; i < 20'000; ++i) blocks.Step();
  blocks.Check();
}

TEST(XmlMemory, WhatIsReleasedIsUsedAgain) {
  const XmlMemory memory;
  for (const std::size_t size : {1, 100, 1000, 1025, 100'000}) {
    xmlFree(xmlMalloc(size));
    const std::size_t used = memory.Used();
    for (int i = 0; i < 100; ++i) xmlFree(xmlMalloc(size));
    EXPECT_EQ(memory.Used(), used) << size;
  }
}

TEST(XmlMemory, WhatIsLastGrowsWhereItIs) {
  XmlMemory memory;
  void* const begin = xmlMalloc(2000);
  void* text = begin;
  for (std::size_t size = 3000; size < 50'000'000; size *= 2) {
    text = xmlRealloc(text, size);
    EXPECT_EQ(text, begin);
    static_cast<char*>(text)[size - 1] = 'x';
  }
  EXPECT_FALSE(memory.IsTooMuch());
}

TEST(XmlMemory, WhatIsAsTooMuchIsRefused) {
  XmlMemory memory;
  EXPECT_EQ(xmlMalloc(std::size_t{1} << 60), nullptr);
  constexpr std::size_t Most = std::numeric_limits<std::ptrdiff_t>::max();
  EXPECT_EQ(xmlMalloc(Most), nullptr);
  void* const block = xmlMalloc(10);
  EXPECT_EQ(xmlRealloc(block, Most), nullptr);
  EXPECT_THROW(memory.Take(std::size_t{1} << 60), std::bad_alloc);
  EXPECT_NE(memory.Take(10), nullptr);
}

TEST(XmlMemory, WhatWasTakenElsewhereGoesBackThere) {
  { const XmlMemory known; }
  xmlChar* const before = xmlStrdup(BAD_CAST "before");
  const XmlMemory outer;
  xmlChar* const middle = xmlStrdup(BAD_CAST "middle");
  {
    const XmlMemory inner;
    xmlFree(xmlRealloc(middle, 1000));
    xmlFree(xmlRealloc(before, 1000));
    static_cast<void>(xmlStrdup(BAD_CAST "inner"));
  }
  xmlChar* const after = xmlStrdup(BAD_CAST "after");
  EXPECT_STREQ(reinterpret_cast<const char*>(after), "after");
}

TEST(XmlMemory, TheLastErrorDoesNotOutliveIt) {
  {
    const XmlMemory memory;
    const XmlMessages quiet;
    EXPECT_EQ(xmlReadMemory("<a><b></a>", 10, "any", nullptr, 0), nullptr);
    EXPECT_NE(xmlGetLastError(), nullptr);
  }
  EXPECT_EQ(xmlGetLastError(), nullptr);
  const XmlMessages quiet;
  EXPECT_EQ(xmlReadMemory("<a><b></a>", 10, "any", nullptr, 0), nullptr);
  xmlResetLastError();
}

TEST(XmlMemory, OtherThreadsHaveTheirOwn) {
  const XmlMemory memory;
  const std::size_t used = memory.Used();
  std::thread([] {
    xmlFree(xmlRealloc(xmlMalloc(100), 10'000));
    const XmlMemory own;
    Blocks blocks(2);
    for (int i = 0; i < 1000; ++i) blocks.Step();
  }).join();
  EXPECT_EQ(memory.Used(), used);
}

}  // namespace
}  // namespace brackwell
