// Stands in for the Java processors where a test needs thousands of runs, or a failure at a chosen moment. It
// "transforms" by writing the input's text behind the stylesheet's.
#ifndef TESTS_UNIT_FAKE_PROCESSOR_H
#define TESTS_UNIT_FAKE_PROCESSOR_H

#include "processors/processor.h"

#include <set>
#include <string>
#include <vector>

class FakeProcessor : public processors::Processor {
public:
  void SetClassPath(const std::string &given) override { classPath = given; }
  void SetPolicy(const processors::Policy &) override {}
  [[nodiscard]] bool SelectFactory(const processors::Factory &factory) override {
    return classes.contains(factory.className);
  }
  [[nodiscard]] processors::JobResult TransformXMLFile(const processors::Job &job) override;
  void SetThreads(int32_t) override {}
  void ExpectJob(const processors::Job &) override {}
  void EndRun() override {}
  [[nodiscard]] processors::ProcessorProbe ProbeProcessor(const processors::Factory &) override { return {}; }
  void ShutDown() override {}

  std::string classPath;
  std::set<std::string> classes; // the ones that load
  std::set<std::string> failing; // inputs whose transformation fails
  std::vector<processors::Job> jobs;
};

#endif
