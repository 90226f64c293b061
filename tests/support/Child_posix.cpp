#include "support/Child_posix.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <system_error>

namespace brackwell {
namespace {

void Require(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

}  // namespace

int InChild(const std::function<int()>& step) {
  const pid_t child = fork();
  Require(child >= 0, "fork");
  if (child == 0) {
    try {
      _exit(step());
    } catch (...) {
      _exit(254);
    }
  }
  int status = 0;
  Require(waitpid(child, &status, 0) == child, "waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void BecomeOrdinaryUser() {
  if (geteuid() != 0) return;
  constexpr int Nobody = 65534;
  Require(setgroups(0, nullptr) == 0, "setgroups");
  Require(setresgid(Nobody, Nobody, Nobody) == 0, "setresgid");
  Require(setresuid(Nobody, Nobody, Nobody) == 0, "setresuid");
}

void ForbidUnnamedFiles() {
  constexpr auto Flags = offsetof(seccomp_data, args) + 2 * sizeof(seccomp_data::args[0]);
  sock_filter refuse[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_openat, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, Flags),
      BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, O_TMPFILE & ~O_DIRECTORY, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EOPNOTSUPP),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{std::size(refuse), refuse};
  Require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new privileges");
  Require(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0, "filter");
  Require(open("/tmp", O_TMPFILE | O_RDWR, 0600) < 0 && errno == EOPNOTSUPP, "unnamed files still there");
}

}  // namespace brackwell
