#include <langinfo.h>

#include <clocale>

#include "platform/NumberText.h"

namespace brackwell {

std::string DecimalSeparator() {
  // The program itself may run under another locale than its user's.
  const locale_t user = newlocale(LC_NUMERIC_MASK | LC_CTYPE_MASK, "", nullptr);
  if (!user) return ".";
  const std::string separator = nl_langinfo_l(RADIXCHAR, user);
  freelocale(user);
  return separator;
}

}  // namespace brackwell
