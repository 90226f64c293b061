#include "platform/InPlaceCopy_posix.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <new>
#include <optional>

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

int WriteBytes(int to, off_t at, const char* bytes, std::size_t length) {
  for (std::size_t written = 0; written < length;) {
    const auto step = pwrite(to, bytes + written, length - written, at + static_cast<off_t>(written));
    if (step < 0 && errno == EINTR) continue;
    if (step < 0) return errno;
    written += static_cast<std::size_t>(step);
  }
  return 0;
}

/// Calls `write(bytes, length, done)` for piece after piece of an open file.
template <typename Write>
int ReadPieces(int from, off_t at, off_t length, Write write) {
  char buffer[BufferSize];
  for (off_t done = 0; done < length;) {
    const auto wanted = static_cast<std::size_t>(std::min<off_t>(length - done, BufferSize));
    const auto got = pread(from, buffer, wanted, at + done);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return ENODATA;
    if (const int error = write(buffer, static_cast<std::size_t>(got), done)) return error;
    done += got;
  }
  return 0;
}

/// How far the copy has come. It lies in memory that the process which makes the copy shares with the one
/// that waits for it, since the first may be killed as well.
struct State {
  off_t Begun = 0;   // so many bytes may be new ones
  off_t Copied = 0;  // so many are
  off_t End = 0;     // where the file ends but for what others do; it may be at Begun already
};

class SharedState {
 public:
  explicit SharedState(const State& begin)
      : mPlace(mmap(nullptr, sizeof(State), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (IsThere()) new (mPlace) State(begin);
  }
  ~SharedState() {
    if (IsThere()) munmap(mPlace, sizeof(State));
  }
  SharedState(const SharedState&) = delete;
  SharedState& operator=(const SharedState&) = delete;

  bool IsThere() const { return mPlace != MAP_FAILED; }
  State& Get() const { return *static_cast<State*>(mPlace); }

 private:
  void* const mPlace;
};

/// What the process of its own does: system calls only. Others may add to the file meanwhile, or cut it,
/// which no lock keeps them from; its size tells, and is looked at before each write.
struct Work {
  int Source;
  int Target;
  off_t Size;
  const struct stat& Old;
  State& At;

  int Run() const {
    int error = Reserve();
    if (error == 0) error = Copy();
    if (error == 0) error = Cut();
    if (error == 0 && fdatasync(Target) != 0) error = errno;
    if (error != 0) PutBack({});
    return error;
  }

  /// What is left to do once that process was ended in the middle.
  int Finish(const Tick& tick) const {
    if (At.Copied == Size && SizeNow() == Size && fdatasync(Target) == 0) return 0;
    PutBack(tick);
    return EIO;
  }

 private:
  off_t SizeNow() const {
    struct stat now {};
    return fstat(Target, &now) == 0 ? now.st_size : -1;
  }

  /// A full disk is found before a byte is overwritten.
  int Reserve() const {
    if (Size == 0 || fallocate(Target, FALLOC_FL_KEEP_SIZE, 0, Size) == 0) return 0;
    if (errno != EOPNOTSUPP && errno != ENOSYS && errno != EINVAL) return errno;
    const char zeros[BufferSize] = {};
    while (At.End < Size) {
      const auto length = static_cast<std::size_t>(std::min<off_t>(Size - At.End, BufferSize));
      if (const int error = Write(zeros, length, At.End)) return error;
    }
    return fdatasync(Target) == 0 ? 0 : errno;  // only then do network drives tell that there was no room
  }

  int Copy() const {
    return ReadPieces(Source, 0, Size, [this](const char* bytes, std::size_t length, off_t done) {
      const int error = Write(bytes, length, done);
      if (error == 0) At.Copied = done + static_cast<off_t>(length);
      return error;
    });
  }

  int Write(const char* bytes, std::size_t length, off_t at) const {
    if (SizeNow() != At.End) return ESTALE;
    At.Begun = at + static_cast<off_t>(length);
    const int error = WriteBytes(Target, at, bytes, length);
    if (error == 0) At.End = std::max(At.End, At.Begun);
    return error;
  }

  int Cut() const {
    if (At.End == Size) return 0;
    if (SizeNow() != At.End) return ESTALE;
    if (ftruncate(Target, Size) != 0) return errno;
    At.End = Size;
    return 0;
  }

  /// Where somebody else has cut the file, its content is theirs. What they have added stays behind the old
  /// content.
  void PutBack(const Tick& tick) const {
    const off_t size = SizeNow();
    if (size < At.End) return;
    const off_t ours = std::max(At.End, At.Begun);
    const off_t added = std::max<off_t>(size - ours, 0);
    if (At.Begun > 0 || At.End < Old.st_size) CopyBytes(Source, Size, Target, 0, Old.st_size, tick);
    if (ours != Old.st_size) CopyBytes(Target, ours, Target, Old.st_size, added, tick);
    // Gives back what was reserved, too.
    static_cast<void>(ftruncate(Target, Old.st_size + added) == 0);
    const timespec times[] = {Old.st_atim, Old.st_mtim};
    if (added == 0) futimens(Target, times);
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

/// Nothing where the process was ended before it could report.
std::optional<int> ReadReport(const Handle& report, const Tick& tick) {
  constexpr int Pause = 10;  // milliseconds
  pollfd waiting{.fd = report.Get(), .events = POLLIN, .revents = 0};
  while (tick && poll(&waiting, 1, Pause) == 0) tick();
  for (;;) {
    int error = 0;
    const auto length = read(report.Get(), &error, sizeof error);
    if (length == sizeof error) return error;
    if (length >= 0 || errno != EINTR) return std::nullopt;
  }
}

}  // namespace

int CopyBytes(int from, off_t fromAt, int to, off_t toAt, off_t length, const Tick& tick) {
  return ReadPieces(from, fromAt, length, [&](const char* bytes, std::size_t size, off_t done) {
    const int error = WriteBytes(to, toAt + done, bytes, size);
    if (error == 0 && tick) tick();
    return error;
  });
}

int CopyInPlace(const Handle& source, off_t size, const Handle& target, const struct stat& old,
                const Tick& tick) {
  const SharedState state({.End = old.st_size});
  int ends[2];
  if (!state.IsThere() || pipe2(ends, O_CLOEXEC) != 0) return errno;
  const Handle report(ends[0]);
  Handle reporter(ends[1]);
  const Work work{
      .Source = source.Get(), .Target = target.Get(), .Size = size, .Old = old, .At = state.Get()};
  const pid_t child = Fork([&] { RunAlone(work, reporter.Get()); });
  if (child < 0) return errno;
  reporter.Close();
  const std::optional<int> error = ReadReport(report, tick);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) continue;
  return error ? *error : work.Finish(tick);
}

}  // namespace brackwell::posix
