// Puts a request string together from options and values. The grammar has no escapes: a value with both kinds of
// quotes, or one beyond the length of a token, cannot be sent, and building stops with a text that says so.
#ifndef KIT_REQUEST_BUILDER_H
#define KIT_REQUEST_BUILDER_H

#include <initializer_list>
#include <string>
#include <string_view>

namespace kit {

// The value as a token of its own: in double quotes, or in single ones when it holds a double quote.
[[nodiscard]] std::string QuoteValue(std::string_view value);

class RequestBuilder {
public:
  explicit RequestBuilder(std::string_view name) : text(name) {}

  void Add(std::string_view option, std::initializer_list<std::string_view> values = {});
  // Adds nothing for an empty value.
  void AddIfGiven(std::string_view option, std::string_view value);

  [[nodiscard]] const std::string &Text() const { return text; }
  // Empty when everything could be carried; else what could not, and why.
  [[nodiscard]] const std::string &Problem() const { return problem; }

private:
  std::string text;
  std::string problem;
};

} // namespace kit

#endif
