#include "host/cli/split_parameter.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace cli {

namespace {

constexpr std::string_view digits = "0123456789";
// What fits into 64 bits with any number of decimals among them.
constexpr size_t maxDigits = 17;

// A decimal number as a count of units of 10 to the power of -decimals.
struct Decimal {
  int64_t units = 0;
  size_t decimals = 0;
};

std::optional<Decimal> TakeNumber(std::string_view &text) {
  const size_t whole = std::min(text.find_first_not_of(digits), text.size());
  size_t length = whole;
  if (whole < text.size() && text[whole] == '.')
    length = std::min(text.find_first_not_of(digits, whole + 1), text.size());
  Decimal number{0, length > whole ? length - whole - 1 : 0};
  std::string all(text.substr(0, whole));
  if (length > whole)
    all += text.substr(whole + 1, number.decimals);
  if (whole == 0 || length == whole + 1 || all.size() > maxDigits)
    return std::nullopt;
  std::from_chars(all.data(), all.data() + all.size(), number.units);
  text.remove_prefix(length);
  return number;
}

// False when the sum has too many digits.
bool Add(Decimal &sum, Decimal number, bool isNegative) {
  const auto widen = [](Decimal &each, size_t decimals) {
    for (; each.decimals < decimals; ++each.decimals)
      if (__builtin_mul_overflow(each.units, 10, &each.units))
        return false;
    return true;
  };
  if (!widen(sum, number.decimals) || !widen(number, sum.decimals))
    return false;
  return !__builtin_add_overflow(sum.units, isNegative ? -number.units : number.units, &sum.units);
}

std::string Format(const Decimal &number) {
  std::string text = std::to_string(number.units < 0 ? -number.units : number.units);
  if (text.size() <= number.decimals)
    text.insert(0, number.decimals + 1 - text.size(), '0');
  if (number.decimals > 0) {
    text.insert(text.size() - number.decimals, ".");
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.'))
      text.pop_back();
  }
  return (number.units < 0 ? "-" : "") + text;
}

// The value of numbers with a plus or minus between them and no blanks: with blanks it is meant as a calculation.
std::optional<std::string> Calculate(std::string_view text) {
  Decimal sum;
  bool isNegative = text.starts_with('-');
  if (isNegative)
    text.remove_prefix(1);
  for (;;) {
    const std::optional<Decimal> number = TakeNumber(text);
    if (!number || !Add(sum, *number, isNegative))
      return std::nullopt;
    if (text.empty())
      return Format(sum);
    if (text[0] != '-' && text[0] != '+')
      return std::nullopt;
    isNegative = text[0] == '-';
    text.remove_prefix(1);
  }
}

} // namespace

std::string HintAtNumber(std::string_view parameter) {
  const auto parts = SplitParameter(parameter);
  const auto value = parts ? Calculate(parts->second) : std::nullopt;
  if (!value || *value == parts->second)
    return {};
  return "-p " + std::string(parameter) + " is an expression with the value " + *value + "; as text it is -p \"" +
         parts->first + "='" + parts->second + "'\"";
}

std::string FindParameterFault(const std::vector<std::string> &parameters) {
  for (const std::string &parameter : parameters)
    if (!SplitParameter(parameter))
      return "-p wants NAME=EXPRESSION, not \"" + parameter + "\"";
  return {};
}

} // namespace cli
