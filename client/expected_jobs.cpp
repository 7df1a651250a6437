#include "client/expected_jobs.h"

#include "kit/paths.h"
#include "kit/values.h"

#include <algorithm>

namespace client {

namespace {

// Enough for the processor to choose from; a run may have tens of thousands.
constexpr size_t maxTold = 100;

} // namespace

processors::Job MakeJob(const RunPlan &plan, const PlannedJob &job, const ChosenOutput &chosen) {
  return {.input = job.input,
          .stylesheet = job.stylesheet,
          .output = chosen.Written(),
          .parameters = plan.parameters,
          .result = chosen.output,
          .inputContent = job.inputContent,
          .includes = plan.start.includes,
          .initialTemplate = plan.start.initialTemplate,
          .initialMode = plan.start.initialMode,
          .number = job.number};
}

ExpectedJobs::ExpectedJobs(const RunPlan &chosen, processors::Processor &chosenProcessor, int32_t threads)
    : plan(chosen), processor(chosenProcessor),
      worksAhead(threads != 1 && std::ranges::count_if(plan.jobs, &PlannedJob::IsToRun) > 1) {
  if (worksAhead)
    processor.SetThreads(threads);
}

ExpectedJobs::~ExpectedJobs() {
  if (worksAhead)
    processor.EndRun();
}

void ExpectedJobs::TellOfThoseAfter(int32_t number) {
  const auto next = static_cast<size_t>(number) + 1;
  for (const size_t end = std::min(plan.jobs.size(), next + maxTold); worksAhead && told < end; ++told) {
    const PlannedJob &job = plan.jobs[told];
    if (told >= next && job.IsToRun() && !ReadsOutput(job))
      Tell(job);
    if (job.IsToRun() && !job.output.empty())
      outputs.insert(kit::RealPath(job.output));
  }
}

// It can only begin when that job has ended.
bool ExpectedJobs::ReadsOutput(const PlannedJob &job) const {
  return outputs.contains(kit::RealPath(job.ReadFile())) ||
         (!job.stylesheet.empty() && outputs.contains(kit::RealPath(job.stylesheet)));
}

void ExpectedJobs::Tell(const PlannedJob &job) {
  ChosenOutput foreseen{job.output, {}, job.outputContent};
  if (job.place == OutputPlace::Temporary) {
    foreseen.output = NameTemporaryOutput(
        job.input, [&](const std::string &path) { return !kit::Exists(path) && temporaries.insert(path).second; });
  }
  // Where the person is asked for it, only their answer tells.
  if (!foreseen.output.empty())
    processor.ExpectJob(MakeJob(plan, job, foreseen));
}

} // namespace client
