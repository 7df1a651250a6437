// Puts a request string together from options and values. The classic grammar has no escapes: a value with both kinds
// of quotes, or one beyond the length of a token, cannot be sent, and building stops with a text that says so. A
// request that takes its options as JSON too gets them so when there is such a value.
#ifndef KIT_REQUEST_BUILDER_H
#define KIT_REQUEST_BUILDER_H

#include "kit/request_words.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

// The value as a token of its own: in double quotes, or in single ones when it holds a double quote.
[[nodiscard]] std::string QuoteValue(std::string_view value);

class RequestBuilder {
public:
  using Grammar = RequestWords::Grammar;

  explicit RequestBuilder(std::string_view requestName, Grammar understood = Grammar::Classic)
      : name(requestName), grammar(understood) {}

  void Add(std::string_view option, std::initializer_list<std::string_view> values = {});
  // Adds nothing for an empty value.
  void AddIfGiven(std::string_view option, std::string_view value);

  [[nodiscard]] std::string Text() const;
  // Empty when everything can be carried; else what cannot, and why.
  [[nodiscard]] std::string Problem() const { return grammar == Grammar::Classic ? obstacle : std::string(); }

private:
  std::string name;
  Grammar grammar;
  std::string classic; // the options, as tokens
  std::vector<std::string> words;
  std::string obstacle; // to the classic grammar
};

} // namespace kit

#endif
