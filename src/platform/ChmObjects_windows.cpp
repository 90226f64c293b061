#include "platform/ChmObjects.h"

namespace brackwell {

/// The system shows such a file itself (platform/Help.h), so none has to be read. One that it cannot show is
/// damaged.
std::optional<ChmObjects> ReadChm(const std::string& /*path*/) { return std::nullopt; }

}  // namespace brackwell
