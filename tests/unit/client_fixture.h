// A folder of a test's own and a host whose session lies in it, for tests of single parts of the client.
#ifndef TESTS_UNIT_CLIENT_FIXTURE_H
#define TESTS_UNIT_CLIENT_FIXTURE_H

#include "report/transformation_log.h"
#include "tests/unit/fake_host.h"
#include "tests/unit/fake_processor.h"
#include "tests/unit/folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

class ClientParts : public testing::Test {
protected:
  ClientParts() {
    for (const char *name : {"/temp", "/install", "/structure"})
      std::filesystem::create_directories(root + name);
    host.strings[{V_SESSION, V_SP_TEMP_DIR}] = root + "/temp";
    host.strings[{V_SESSION, V_SP_INSTALL_DIR}] = root + "/install/";
    host.strings[{V_SESSION, V_SP_STRUCTURE_DIR}] = root + "/structure";
    report::ResetLog(false);
  }
  ~ClientParts() override { EXPECT_EQ(host.LiveBlocks(), 0U); }

  [[nodiscard]] std::string Path(const std::string &name) const { return folder.Path(name); }
  std::string Write(const std::string &name, const std::string &text = {}) const { return folder.Write(name, text); }
  [[nodiscard]] static std::string Read(const std::string &path) { return test::ReadAll(path); }
  [[nodiscard]] static std::string TakeLog() {
    std::string text = report::LogText();
    report::ResetLog(false);
    return text;
  }

  test::Folder folder;
  const std::string &root = folder.Root();
  FakeHost host;
  FakeProcessor processor;
};

#endif
