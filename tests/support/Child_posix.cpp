#include "support/Child_posix.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <fstream>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

namespace brackwell {
namespace {

void Require(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

void Filter(sock_filter* steps, std::size_t count) {
  const sock_fprog program{static_cast<unsigned short>(count), steps};
  Require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new privileges");
  Require(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0, "filter");
}

using CallFilter = std::array<sock_filter, 6>;

/// What becomes of the system call `number` where its argument at `position` has these low 32 bits; a
/// negative position stands for any arguments.
CallFilter OnCall(int number, int position, unsigned value, unsigned action) {
  constexpr std::size_t Size = sizeof(seccomp_data::args[0]);
  const bool isAny = position < 0;
  const auto argument = static_cast<unsigned>(offsetof(seccomp_data, args) +
                                              (isAny ? 0 : static_cast<std::size_t>(position)) * Size);
  const unsigned char onOthers = isAny ? 0 : 1;
  return {{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(number), 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, onOthers),
      BPF_STMT(BPF_RET | BPF_K, action),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  }};
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

bool TakeMountsOfItsOwn() {
  const auto map = [](const char* file, unsigned id) { std::ofstream(file) << id << ' ' << id << " 1"; };
  const uid_t user = geteuid();
  const gid_t group = getegid();
  if (user == 0)
    return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
  if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
  std::ofstream("/proc/self/setgroups") << "deny";
  map("/proc/self/uid_map", user);
  map("/proc/self/gid_map", group);
  return true;
}

bool ShrinkDisk(const std::string& place, std::size_t size) {
  if (TakeMountsOfItsOwn() &&
      mount("tmpfs", place.c_str(), "tmpfs", 0, ("size=" + std::to_string(size)).c_str()) == 0)
    return true;
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{size, size};
  setrlimit(RLIMIT_FSIZE, &limit);
  return false;
}

void RefuseCall(int number, int position, unsigned value, int error) {
  CallFilter refuse = OnCall(number, position, value, SECCOMP_RET_ERRNO | static_cast<unsigned>(error));
  Filter(refuse.data(), refuse.size());
}

void BeforeCall(int number, int position, unsigned value, std::function<void(pid_t)> step) {
  // Begun before there is a filter, so that its own calls pass.
  std::promise<int> listening;
  std::thread([step = std::move(step), listener = listening.get_future()]() mutable {
    const int calls = listener.get();
    for (;;) {
      seccomp_notif call{};
      if (ioctl(calls, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0) continue;
      step(static_cast<pid_t>(call.pid));
      seccomp_notif_resp goOn{.id = call.id, .val = 0, .error = 0, .flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE};
      ioctl(calls, SECCOMP_IOCTL_NOTIF_SEND, &goOn);  // fails where the step has killed the caller
    }
  }).detach();
  CallFilter filter = OnCall(number, position, value, SECCOMP_RET_USER_NOTIF);
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  Require(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0, "no new privileges");
  const auto calls =
      syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program);
  Require(calls >= 0, "listener");
  listening.set_value(static_cast<int>(calls));
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
  Filter(refuse, std::size(refuse));
  Require(open("/tmp", O_TMPFILE | O_RDWR, 0600) < 0 && errno == EOPNOTSUPP, "unnamed files still there");
}

}  // namespace brackwell
