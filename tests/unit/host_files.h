// Files in a folder of their own for one test, and a front that answers what the test tells it to.
#ifndef TESTS_UNIT_HOST_FILES_H
#define TESTS_UNIT_HOST_FILES_H

#include "host/front.h"

#include <string>
#include <string_view>
#include <vector>

namespace test {

class Folder {
public:
  Folder();
  ~Folder();
  Folder(const Folder &) = delete;
  Folder &operator=(const Folder &) = delete;

  // Makes folders as needed; the absolute path.
  std::string Write(std::string_view name, std::string_view content) const;
  [[nodiscard]] std::string Path(std::string_view name) const;
  // Paths below the folder, shortened to what is below it.
  [[nodiscard]] std::vector<std::string> Shorten(const std::vector<std::string> &paths) const;

private:
  std::string root;
};

class SilentFront final : public host::Front {
public:
  host::Answer answer = host::Answer::Decline;
  std::vector<std::string> console;

  [[nodiscard]] host::Answer Alert(host::AlertKind kind, const std::string &) override {
    return kind == host::AlertKind::Plain ? host::Answer::Proceed : answer;
  }
  [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &) override { return std::nullopt; }
  void RunDialog(host::DialogModel &) override {}
  void WriteConsole(std::string_view text) override { console.emplace_back(text); }
  void ReportProgress(const host::Progress &) override {}
  [[nodiscard]] bool IsCancelled() override { return false; }
};

} // namespace test

#endif
