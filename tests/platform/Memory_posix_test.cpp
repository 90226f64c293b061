#include "platform/Memory_posix.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <limits>

#include "platform/Memory.h"
#include "support/TempTree.h"

namespace brackwell {
namespace {

using posix::FreeMemory;

constexpr std::uint64_t Nothing = std::numeric_limits<std::uint64_t>::max();

/// A made-up machine with 1,000,000 KB free.
class MemoryTest : public testing::Test {
 protected:
  MemoryTest() {
    Tree.File("meminfo",
              "MemTotal:        8000000 kB\nMemFree:          200000 kB\nMemAvailable:    1000000 kB\n");
  }

  void Group(const std::string& path, const std::string& limit, const std::string& used,
             const std::string& stat = "anon 5\n") {
    Tree.File("groups" + path + "/memory.max", limit + "\n");
    Tree.File("groups" + path + "/memory.current", used + "\n");
    Tree.File("groups" + path + "/memory.stat", stat);
  }
  std::uint64_t Free() const {
    return FreeMemory(
        {.Machine = Tree.Path("meminfo"), .OwnGroups = Tree.Path("cgroup"), .Groups = Tree.Path("groups")});
  }

  TempTree Tree;
};

TEST_F(MemoryTest, IsWhatTheMachineHasWithoutGroups) {
  EXPECT_EQ(Free(), 1'024'000'000u);
  Tree.File("cgroup", "0::/\n");
  EXPECT_EQ(Free(), 1'024'000'000u);
}

TEST_F(MemoryTest, IsNoNumberWhereNothingIsTold) {
  Tree.Remove("meminfo");
  EXPECT_GT(Free(), Nothing / 2);
}

TEST_F(MemoryTest, IsTheLeastOfAllGroupsAbove) {
  Tree.File("cgroup", "0::/slice/unit\n");
  Group("/slice/unit", "max", "300");
  EXPECT_EQ(Free(), 1'024'000'000u);
  Group("/slice/unit", "1000", "300");
  EXPECT_EQ(Free(), 700u);
  Group("/slice", "800", "300");
  EXPECT_EQ(Free(), 500u);
  Group("/slice", "100", "300");
  EXPECT_EQ(Free(), 0u);
}

TEST_F(MemoryTest, CachesOfAGroupAreFree) {
  Tree.File("cgroup", "0::/unit\n");
  Group("/unit", "1000", "900", "anon 300\ninactive_file 100\nactive_file 200\nslab_reclaimable 300\n");
  EXPECT_EQ(Free(), 700u);
  Group("/unit", "1000", "500", "inactive_file 900\n");
  EXPECT_EQ(Free(), 1000u);
}

TEST_F(MemoryTest, InAContainerTheTopIsItsOwnGroup) {
  Tree.File("cgroup", "0::/outside/name\n");
  Group("", "1000", "400");
  EXPECT_EQ(Free(), 600u);
}

TEST_F(MemoryTest, GroupsOfTheFirstVersion) {
  Tree.File("cgroup", "5:cpu,cpuacct:/other\n4:devices,memory:/job\n0::/\n");
  Tree.File("groups/memory/job/memory.limit_in_bytes", "5000");
  Tree.File("groups/memory/job/memory.usage_in_bytes", "3000");
  Tree.File("groups/memory/job/memory.stat", "cache 2500\ntotal_inactive_file 1000\ntotal_active_file 500\n");
  Tree.File("groups/memory/other/memory.limit_in_bytes", "1");
  Tree.File("groups/memory/other/memory.usage_in_bytes", "1");
  EXPECT_EQ(Free(), 3500u);
  Tree.File("groups/memory/memory.limit_in_bytes", "9223372036854771712");
  Tree.File("groups/memory/memory.usage_in_bytes", "4000");
  EXPECT_EQ(Free(), 3500u);
}

TEST_F(MemoryTest, NonsenseIsPassedOver) {
  Tree.File("cgroup", "\nx\n1:\n::\n0::/unit");
  Group("/unit", "many", "few");
  Tree.File("meminfo", "MemAvailable:\nMemAvailable: much\n");
  EXPECT_GT(Free(), Nothing / 2);
}

TEST(Memory, ThisMachineTells) {
  EXPECT_GT(AvailableMemory(), 0u);
  EXPECT_LT(AvailableMemory(), Nothing / 2);
}

TEST(Memory, ALimitOfTheProcessCounts) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_AS, &before), 0);
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  // Some is left, since a sanitizer needs memory of its own.
  constexpr std::uint64_t Some = 256 << 20;
  const rlim_t limit = pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE)) + Some;
  const rlimit little{.rlim_cur = limit, .rlim_max = before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_AS, &little), 0);
  const std::uint64_t left = AvailableMemory();
  setrlimit(RLIMIT_AS, &before);
  EXPECT_LE(left, Some);
}

TEST(Memory, ABlockIsAtLeastAsLargeAsAskedFor) {
  void* const block = std::malloc(1000);
  EXPECT_GE(AllocatedSize(block), 1000u);
  std::free(block);
  EXPECT_EQ(AllocatedSize(nullptr), 0u);
}

}  // namespace
}  // namespace brackwell
