#include "platform/Sandbox.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "support/Child_posix.h"

namespace brackwell {
namespace {

TEST(CanSandbox, NotAnAdministrator) {
  if (geteuid() != 0) GTEST_SKIP() << "not an administrator";
  EXPECT_FALSE(CanSandbox());
}

TEST(CanSandbox, LeavesThisProcessWhereItIs) {
  EXPECT_EQ(InChild([] {
              BecomeOrdinaryUser();
              const auto before = std::filesystem::read_symlink("/proc/self/ns/user");
              const bool first = CanSandbox();
              const bool second = CanSandbox();
              return first == second && std::filesystem::read_symlink("/proc/self/ns/user") == before ? 0 : 1;
            }),
            0);
}

TEST(CanSandbox, LeavesNoProcessBehind) {
  EXPECT_EQ(InChild([] {
              BecomeOrdinaryUser();
              CanSandbox();
              return waitpid(-1, nullptr, 0) == -1 && errno == ECHILD ? 0 : 1;
            }),
            0);
}

TEST(CanSandbox, NotWhereNoProcessCanBeStarted) {
  EXPECT_EQ(InChild([] {
              BecomeOrdinaryUser();
              const rlimit none{0, 0};
              setrlimit(RLIMIT_NPROC, &none);
              return CanSandbox() ? 1 : 0;
            }),
            0);
}

TEST(CanShareMemory, WhereSystemsUsuallyCan) {
  if (!std::filesystem::exists("/dev/shm")) GTEST_SKIP() << "a container without a place for it";
  EXPECT_TRUE(CanShareMemory());
}

}  // namespace
}  // namespace brackwell
