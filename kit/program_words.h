// Texts as the system takes the arguments and the environment of a program.
#ifndef KIT_PROGRAM_WORDS_H
#define KIT_PROGRAM_WORDS_H

#include <string>
#include <vector>

namespace kit {

// Null at the end; valid as long as the texts. To be made before a fork: nothing may be allocated after it.
[[nodiscard]] inline std::vector<char *> PointersTo(std::vector<std::string> &texts) {
  std::vector<char *> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string &text : texts)
    pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

} // namespace kit

#endif
