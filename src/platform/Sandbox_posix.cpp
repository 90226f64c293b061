#include "platform/Sandbox.h"

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace brackwell {
namespace {

/// The second step fails where the first is allowed but gives no rights.
bool EnterNamespaces() { return unshare(CLONE_NEWUSER) == 0 && unshare(CLONE_NEWPID | CLONE_NEWNET) == 0; }

}  // namespace

bool CanSandbox() {
  if (geteuid() == 0) return false;
  const pid_t child = fork();  // there is no way back out of a namespace
  if (child == 0) _exit(EnterNamespaces() ? 0 : 1);
  int status = -1;
  while (child > 0 && waitpid(child, &status, 0) == -1 && errno == EINTR) {
  }
  return child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool CanShareMemory() { return access("/dev/shm", W_OK | X_OK) == 0; }

}  // namespace brackwell
