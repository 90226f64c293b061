#include "dirdisplay/XmlMemory.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <cstddef>
#include <new>
#include <thread>

#include "dirdisplay/XmlMessages.h"

namespace brackwell {
namespace {

constexpr std::size_t Megabyte = std::size_t{1} << 20;

TEST(XmlMemory, CountsWhatTheLibrariesHold) {
  const XmlMemory memory;
  EXPECT_EQ(memory.Used(), 0u);
  void* block = xmlMalloc(1000);
  EXPECT_GE(memory.Used(), 1000u);
  EXPECT_LT(memory.Used(), 1100u);
  block = xmlRealloc(block, 5000);
  EXPECT_GE(memory.Used(), 5000u);
  EXPECT_LT(memory.Used(), 5100u);
  block = xmlRealloc(block, 100);
  EXPECT_LT(memory.Used(), 200u);
  xmlChar* const text = xmlStrdup(BAD_CAST "text");
  EXPECT_STREQ(reinterpret_cast<const char*>(text), "text");
  xmlFree(text);
  xmlFree(block);
  EXPECT_EQ(memory.Used(), 0u);
  xmlFree(nullptr);
  EXPECT_EQ(memory.Used(), 0u);
}

TEST(XmlMemory, SmallBlocksAreNeverRefusedButSaid) {
  XmlMemory memory(Megabyte);
  int said = 0;
  memory.OnExhausted = [&said] { ++said; };
  void* const half = xmlMalloc(Megabyte / 2);
  EXPECT_FALSE(memory.IsExhausted());
  void* const more = xmlMalloc(Megabyte * 3 / 4);
  EXPECT_NE(more, nullptr);
  EXPECT_TRUE(memory.IsExhausted());
  xmlFree(xmlMalloc(1));
  EXPECT_EQ(said, 1);
  xmlFree(half);
  xmlFree(more);
  EXPECT_TRUE(memory.IsExhausted());
}

TEST(XmlMemory, LargeBlocksAreRefused) {
  const XmlMemory memory(10 * Megabyte);
  void* const block = xmlMalloc(6 * Megabyte);
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(xmlMalloc(6 * Megabyte), nullptr);
  EXPECT_EQ(xmlRealloc(block, 12 * Megabyte), nullptr);
  EXPECT_TRUE(memory.IsExhausted());
  xmlFree(block);
  EXPECT_EQ(memory.Used(), 0u);
}

TEST(XmlMemory, WhatIsLongerThanTheLibrariesCanCountIsRefused) {
  const XmlMemory memory(std::size_t{1} << 62);
  EXPECT_EQ(xmlMalloc((std::size_t{1} << 30) + 1), nullptr);
  EXPECT_TRUE(memory.IsExhausted());
}

TEST(XmlMemory, ClaimsCountToo) {
  XmlMemory memory(Megabyte);
  memory.Claim(Megabyte - 100);
  EXPECT_FALSE(memory.IsExhausted());
  EXPECT_THROW(memory.Claim(101), std::bad_alloc);
  EXPECT_TRUE(memory.IsExhausted());
  memory.Claim(100);
  EXPECT_EQ(memory.Used(), Megabyte);
}

TEST(XmlMemory, WhatWasTakenElsewhereGoesBackThere) {
  { const XmlMemory known; }
  xmlChar* const before = xmlStrdup(BAD_CAST "before");
  const XmlMemory outer;
  xmlChar* const middle = xmlStrdup(BAD_CAST "middle");
  xmlChar* kept = nullptr;
  {
    const XmlMemory inner;
    xmlFree(xmlRealloc(middle, 1000));
    xmlFree(xmlRealloc(before, 1000));
    EXPECT_EQ(inner.Used(), 0u);
    kept = xmlStrdup(BAD_CAST "kept");
  }
  EXPECT_STREQ(reinterpret_cast<const char*>(kept), "kept");
  xmlFree(kept);
  EXPECT_EQ(outer.Used(), 0u);
}

TEST(XmlMemory, TheLastErrorDoesNotOutliveIt) {
  {
    const XmlMemory memory;
    const XmlMessages quiet;
    EXPECT_EQ(xmlReadMemory("<a><b></a>", 10, "any", nullptr, 0), nullptr);
    EXPECT_NE(xmlGetLastError(), nullptr);
  }
  EXPECT_EQ(xmlGetLastError(), nullptr);
}

TEST(XmlMemory, OtherThreadsCountForThemselves) {
  XmlMemory memory(Megabyte);
  void* block = nullptr;
  std::thread([&block] { block = xmlMalloc(2 * Megabyte); }).join();
  EXPECT_NE(block, nullptr);
  EXPECT_EQ(memory.Used(), 0u);
  EXPECT_FALSE(memory.IsExhausted());
  xmlFree(block);
}

TEST(XmlMemory, TheUsualLimitIsMuchButNotAll) {
  EXPECT_GT(XmlMemory::UsualLimit(), 16 * Megabyte);
  EXPECT_LT(XmlMemory::UsualLimit(), std::size_t{1} << 60);
}

}  // namespace
}  // namespace brackwell
