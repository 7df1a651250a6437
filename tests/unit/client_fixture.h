// A folder of a test's own and a host whose session lies in it, for tests of single parts of the client.
#ifndef TESTS_UNIT_CLIENT_FIXTURE_H
#define TESTS_UNIT_CLIENT_FIXTURE_H

#include "bridge/transformation_log.h"
#include "tests/unit/fake_bridge.h"
#include "tests/unit/fake_host.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class ClientParts : public testing::Test {
protected:
  ClientParts() {
    root = (std::filesystem::temp_directory_path() / "vlxslt parts XXXXXX").string();
    if (!mkdtemp(root.data()))
      std::abort();
    for (const char *folder : {"/temp", "/install", "/structure"})
      std::filesystem::create_directories(root + folder);
    host.strings[{V_SESSION, V_SP_TEMP_DIR}] = root + "/temp";
    host.strings[{V_SESSION, V_SP_INSTALL_DIR}] = root + "/install/";
    host.strings[{V_SESSION, V_SP_STRUCTURE_DIR}] = root + "/structure";
    FakeBridge::Reset();
    bridge::ResetLog(false);
  }
  ~ClientParts() override {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
    EXPECT_EQ(host.LiveBlocks(), 0U);
  }

  [[nodiscard]] std::string Path(const std::string &name) const { return root + "/" + name; }
  std::string Write(const std::string &name, const std::string &text = {}) const {
    std::string path = Path(name);
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  [[nodiscard]] static std::string Read(const std::string &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] static std::string TakeLog() {
    std::string text = bridge::LogText();
    bridge::ResetLog(false);
    return text;
  }

  FakeHost host;
  std::string root;
};

#endif
