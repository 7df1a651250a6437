#include "tests/unit/fake_processor.h"

#include "tests/unit/folder.h"

#include <fstream>

processors::JobResult FakeProcessor::TransformXMLFile(const processors::Job &job) {
  jobs.push_back(job);
  if (failing.contains(job.input))
    return {};
  std::ofstream(job.output, std::ios::binary) << test::ReadAll(job.stylesheet) << test::ReadAll(job.input);
  return {processors::JobStatus::Done};
}
