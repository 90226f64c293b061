#include "common/Numeric.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace brackwell {
namespace {

constexpr bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// "&H1F" and "&O17".
std::optional<double> ReadBased(std::string_view text) {
  const char letter = text.size() > 1 ? text[1] : '\0';
  const int base = letter == 'H' || letter == 'h' ? 16 : letter == 'O' || letter == 'o' ? 8 : 0;
  if (base == 0) return std::nullopt;
  std::uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data() + 2, text.data() + text.size(), value, base);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return static_cast<double>(value);
}

/// Takes a decimal number apart, front to back.
class DecimalReader {
 public:
  explicit DecimalReader(std::string_view text) : mRest(text) {}

  std::optional<double> Read() {
    while (TakeMark('(')) continue;
    if (!TakeNumber()) return std::nullopt;
    while (TakeMark(')')) continue;
    const bool bracketsMatch = mOpen == mClosed && !(mOpen && mSign != '\0');
    if (!mRest.empty() || !bracketsMatch) return std::nullopt;
    const auto value = Value();
    if (!value) return std::nullopt;
    return mSign == '-' || mOpen ? -*value : *value;
  }

 private:
  bool StartsWithDigit() const { return !mRest.empty() && IsDigit(mRest.front()); }

  char Take() {
    const char c = mRest.front();
    mRest.remove_prefix(1);
    return c;
  }

  /// Takes one of what may stand around the digits; each but blanks only once.
  bool TakeMark(char bracket) {
    if (mRest.empty()) return false;
    const char c = mRest.front();
    bool& bracketSeen = bracket == '(' ? mOpen : mClosed;
    if ((c == '+' || c == '-') && mSign == '\0')
      mSign = c;
    else if (c == '$' && !mCurrency)
      mCurrency = true;
    else if (c == bracket && !bracketSeen)
      bracketSeen = true;
    else if (!IsBlank(c))
      return false;
    Take();
    return true;
  }

  bool TakeNumber() {
    while (StartsWithDigit() || (!mDigits.empty() && mRest.starts_with(',')))
      if (const char c = Take(); c != ',') mDigits += c;
    bool hasDigits = !mDigits.empty();
    if (mRest.starts_with('.')) {
      mDigits += Take();
      hasDigits = hasDigits || StartsWithDigit();
      while (StartsWithDigit()) mDigits += Take();
    }
    if (hasDigits) TakeExponent();
    return hasDigits;
  }

  void TakeExponent() {
    if (mRest.empty() || std::string_view("eEdD").find(mRest.front()) == std::string_view::npos) return;
    std::string_view digits = mRest.substr(1);
    const bool negative = digits.starts_with('-');
    if (negative || digits.starts_with('+')) digits.remove_prefix(1);
    if (digits.empty() || !IsDigit(digits.front())) return;
    mDigits += negative ? "e-" : "e";
    for (mRest = digits; StartsWithDigit();) mDigits += Take();
  }

  std::optional<double> Value() const {
    double value = 0;
    const auto [end, error] = std::from_chars(mDigits.data(), mDigits.data() + mDigits.size(), value);
    if (error == std::errc::result_out_of_range && mDigits.find("e-") != std::string::npos) return 0.0;
    if (error != std::errc() || !std::isfinite(value)) return std::nullopt;
    return value;
  }

  std::string_view mRest;
  std::string mDigits;  // as from_chars reads them
  char mSign = '\0';
  bool mCurrency = false;
  bool mOpen = false;
  bool mClosed = false;
};

}  // namespace

bool IsNumeric(std::string_view text) { return ParseNumber(text).has_value(); }

std::optional<double> ParseNumber(std::string_view text) {
  text = Trim(text);
  return text.starts_with('&') ? ReadBased(text) : DecimalReader(text).Read();
}

std::optional<std::int32_t> ParseWholeNumber(std::string_view text) {
  const auto number = ParseNumber(text);
  if (!number) return std::nullopt;
  const double rounded = std::nearbyint(*number);
  using Limits = std::numeric_limits<std::int32_t>;
  if (rounded < Limits::min() || rounded > Limits::max()) return std::nullopt;
  return static_cast<std::int32_t>(rounded);
}

}  // namespace brackwell
