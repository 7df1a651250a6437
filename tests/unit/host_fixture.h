// What tests of the host begin with: a front that answers what the test tells it to, and a host in a
// folder of its own.
#ifndef TESTS_UNIT_HOST_FIXTURE_H
#define TESTS_UNIT_HOST_FIXTURE_H

#include "host/fronts/front.h"
#include "host/session.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace test {

class SilentFront : public host::Front {
public:
  std::vector<std::string> console;

  [[nodiscard]] host::Answer Alert(host::AlertKind kind, const std::string &) override {
    return kind == host::AlertKind::Plain ? host::Answer::Proceed : host::Answer::Decline;
  }
  [[nodiscard]] std::optional<std::string> ChooseFile(const host::FileChooser &) override { return std::nullopt; }
  void RunDialog(host::DialogModel &) override {}
  void WriteConsole(std::string_view text) override { console.emplace_back(text); }
  void ReportProgress(const host::Progress &) override {}
  [[nodiscard]] bool IsCancelled() override { return false; }
};

// A test configures the session before it makes it.
class HostTest : public testing::Test {
protected:
  host::Session &Open(const std::string &clientFolder = "/none") {
    session.emplace(configuration, host::Installation{clientFolder, "/none/"}, front);
    session->KeepOutputsIn(folder.Path("opened"));
    return *session;
  }

  Folder folder;
  SilentFront front;
  host::Configuration configuration = host::ReadConfiguration("", {"/none", "/none/"}).configuration;
  std::optional<host::Session> session;
};

} // namespace test

#endif
