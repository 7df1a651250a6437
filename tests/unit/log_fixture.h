// A host and an empty log; the test must give back every block of the host's memory.
#ifndef TESTS_UNIT_LOG_FIXTURE_H
#define TESTS_UNIT_LOG_FIXTURE_H

#include "report/transformation_log.h"
#include "tests/unit/fake_host.h"

#include <gtest/gtest.h>

#include <string>

class LogTest : public testing::Test {
protected:
  LogTest() { report::ResetLog(false); }
  ~LogTest() override { EXPECT_EQ(host.LiveBlocks(), 0U); }

  // The log since the last call.
  [[nodiscard]] static std::string TakeLog() {
    std::string text = report::LogText();
    report::ResetLog(false);
    return text;
  }

  FakeHost host;
};

#endif
