#include "platform/CodePage.h"

namespace brackwell {

const UpperHalf& SystemCodePage() { return CodePage1252; }

}  // namespace brackwell
