#include "platform/InPlaceCopy_posix.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace brackwell::posix {
namespace {

constexpr std::size_t BufferSize = 64 << 10;  // bytes; on the stack, since a forked process must not allocate

/// Keeps signals off the new process from its first moment on.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &mBefore);
  }
  ~SignalsHeldBack() { pthread_sigmask(SIG_SETMASK, &mBefore, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t mBefore;
};

int WriteBytes(int to, off_t at, const char* bytes, std::size_t length, off_t& done) {
  for (std::size_t written = 0; written < length;) {
    const auto step = pwrite(to, bytes + written, length - written, at + static_cast<off_t>(written));
    if (step < 0 && errno == EINTR) continue;
    if (step < 0) return errno;
    written += static_cast<std::size_t>(step);
    done += step;
  }
  return 0;
}

int AddZeros(int file, off_t from, off_t to) {
  const char zeros[BufferSize] = {};
  for (off_t done = 0; done < to - from;) {
    const auto length = static_cast<std::size_t>(std::min<off_t>(to - from - done, BufferSize));
    if (const int error = WriteBytes(file, from + done, zeros, length, done)) return error;
  }
  return fdatasync(file) == 0 ? 0 : errno;  // only then do network drives tell that there was no room
}

/// What the process of its own does: system calls only.
struct Work {
  int Source;
  int Target;
  off_t Size;
  const struct stat& Old;

  int Run() const {
    off_t done = 0;
    int error = Reserve();
    if (error == 0) error = CopyBytes(Source, 0, Target, 0, Size, done);
    if (error == 0 && (ftruncate(Target, Size) != 0 || fdatasync(Target) != 0)) error = errno;
    if (error != 0) PutBack(done);
    return error;
  }

  /// A full disk is found before a byte is overwritten.
  int Reserve() const {
    if (Size == 0 || fallocate(Target, FALLOC_FL_KEEP_SIZE, 0, Size) == 0) return 0;
    if (errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL) return errno;
    return AddZeros(Target, Old.st_size, Size);
  }

  void PutBack(off_t done) const {
    off_t restored = 0;
    CopyBytes(Source, Size, Target, 0, std::min(done, Old.st_size), restored);
    // Gives back what was reserved, too.
    static_cast<void>(ftruncate(Target, Old.st_size) == 0);
    const timespec times[] = {Old.st_atim, Old.st_mtim};
    futimens(Target, times);
  }
};

[[noreturn]] void RunAlone(const Work& work, int report) {
  setsid();
  // Who ends all processes of our name does not mean this one.
  prctl(PR_SET_NAME, "saving-a-file");
  const int error = work.Run();
  static_cast<void>(write(report, &error, sizeof error) == sizeof error);
  _exit(0);
}

/// The process number of the child, which calls `job`; negative, with errno set, where there is none.
template <typename Job>
pid_t Fork(Job job) {
  const SignalsHeldBack signals;
  const pid_t child = fork();
  if (child == 0) job();
  return child;
}

/// Nothing comes where the process was ended before it could report.
int ReadReport(const Handle& report, const Tick& tick) {
  constexpr int Pause = 10;  // milliseconds
  pollfd waiting{.fd = report.Get(), .events = POLLIN, .revents = 0};
  while (tick && poll(&waiting, 1, Pause) == 0) tick();
  for (;;) {
    int error = 0;
    const auto length = read(report.Get(), &error, sizeof error);
    if (length == sizeof error) return error;
    if (length >= 0 || errno != EINTR) return EIO;
  }
}

}  // namespace

int CopyBytes(int from, off_t fromAt, int to, off_t toAt, off_t length, off_t& done, const Tick& tick) {
  char buffer[BufferSize];
  for (done = 0; done < length;) {
    const auto wanted = static_cast<std::size_t>(std::min<off_t>(length - done, BufferSize));
    const auto got = pread(from, buffer, wanted, fromAt + done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return ENODATA;
    if (const int error = WriteBytes(to, toAt + done, buffer, static_cast<std::size_t>(got), done))
      return error;
    if (tick) tick();
  }
  return 0;
}

int CopyInPlace(const Handle& source, off_t size, const Handle& target, const struct stat& old,
                const Tick& tick) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return errno;
  const Handle report(ends[0]);
  Handle reporter(ends[1]);
  const Work work{.Source = source.Get(), .Target = target.Get(), .Size = size, .Old = old};
  const pid_t child = Fork([&] { RunAlone(work, reporter.Get()); });
  if (child < 0) return errno;
  reporter.Close();
  const int error = ReadReport(report, tick);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
  return error;
}

}  // namespace brackwell::posix
