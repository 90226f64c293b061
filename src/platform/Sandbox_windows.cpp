#include "platform/Sandbox.h"

namespace brackwell {

bool CanSandbox() { return true; }

bool CanShareMemory() { return true; }

}  // namespace brackwell
