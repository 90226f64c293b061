#include "platform/Sandbox.h"

namespace brackwell {

bool CanSandbox() { return true; }

}  // namespace brackwell
