// The words of a request's options, one after the other. Requests of ours take them in two forms: in the classic
// grammar, or as a JSON array of strings behind "-json", which carries any text:
//   VlxsltEditTransformation -json ["-trfile", "/data/T.xml", "-trname", "it's \"x\"", "-sparam", "a", "…"]
#ifndef KIT_REQUEST_WORDS_H
#define KIT_REQUEST_WORDS_H

#include "kit/text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

// The option, in front of all others, that the array follows.
inline constexpr std::string_view jsonOption = "-json";

class RequestWords {
public:
  enum class Grammar { Classic, ClassicOrJson };

  // `options` is the request without its name.
  RequestWords(std::string_view options, Grammar grammar);

  // False at the end. A word may be empty.
  [[nodiscard]] bool Next(std::string &word);
  // Why the array cannot be read, in words of the library; empty when it can. There are no words then.
  [[nodiscard]] const std::string &Problem() const { return problem; }

private:
  Tokenizer classic;
  std::vector<std::string> words; // of the array
  size_t next = 0;
  std::string problem;
};

// The array of the words; bytes that are not UTF-8 become replacement characters.
[[nodiscard]] std::string FormatJsonWords(const std::vector<std::string> &words);

} // namespace kit

#endif
