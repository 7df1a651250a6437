// Several files as XML catalogs, of which the first two are configured. The file "ask" holds questions, a line
// "PUBLIC|BASE|SYSTEM" each. See SplitFiles.
#include "host/documents/entity_catalogs.h"
#include "kit/paths.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/folder.h"

#include <filesystem>
#include <string>

namespace {

using fuzz::Require;

struct Question {
  std::string publicId;
  std::string base;
  std::string systemId;
};

std::vector<Question> ReadQuestions(std::string_view text, const test::Folder &folder) {
  std::vector<Question> questions;
  for (const std::string_view line : fuzz::Split(text, '\n')) {
    const auto fields = fuzz::Split(line.substr(0, line.find('\0')), '|');
    if (fields.size() == 3 && questions.size() < 20)
      questions.push_back({std::string(fields[0]), folder.Path(fields[1]), std::string(fields[2])});
  }
  return questions;
}

std::vector<std::string> Ask(const std::vector<std::string> &catalogs, const std::vector<Question> &questions) {
  std::vector<std::string> warnings;
  host::EntityCatalogs asked(catalogs, host::EntityCatalogs::Missing::Reported,
                             [&](const std::string &line) { warnings.push_back(line); });
  std::vector<std::string> answers;
  for (const Question &each : questions) {
    answers.push_back(asked.Resolve(each.publicId, each.base, each.systemId));
    const std::string &answer = answers.back();
    Require(!kit::IsFileUrl(answer), "an answer is a path or an address elsewhere");
    Require(!kit::IsAbsolutePath(answer) || kit::IsFile(answer), "a path that is answered is there");
    Require(asked.Resolve(each.publicId, each.base, each.systemId) == answer, "an answer is remembered");
  }
  return answers;
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  static const test::Folder folder;
  std::vector<std::string> catalogs;
  std::vector<Question> questions;
  const std::vector<NamedFile> files = SplitFiles(input.substr(0, 1 << 16));
  if (files.size() > 20)
    return;
  for (const NamedFile &file : files) {
    if (file.name == "ask")
      questions = ReadQuestions(file.content, folder);
    else if (catalogs.size() < 2)
      catalogs.push_back(folder.Path(file.name));
    folder.Write(file.name, file.content);
  }
  const std::vector<std::string> answers = Ask(catalogs, questions);
  Require(Ask(catalogs, questions) == answers, "a fresh reader answers the same");
  for (const NamedFile &file : files)
    std::filesystem::remove(folder.Path(file.name));
}
