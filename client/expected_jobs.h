// The jobs of a plan as the processor gets them, and what it is told of those that follow, so that it can work ahead.
// Host's thread only.
#ifndef CLIENT_EXPECTED_JOBS_H
#define CLIENT_EXPECTED_JOBS_H

#include "client/output_placement.h"
#include "client/run_plan.h"
#include "processors/processor.h"

#include <cstddef>
#include <set>
#include <string>

namespace client {

[[nodiscard]] processors::Job MakeJob(const RunPlan &plan, const PlannedJob &job, const ChosenOutput &chosen);

class ExpectedJobs {
public:
  // Both must outlive this object. `threads`: 0 leaves their number to the processor, 1 keeps it from working ahead.
  ExpectedJobs(const RunPlan &plan, processors::Processor &processor, int32_t threads);
  ~ExpectedJobs();
  ExpectedJobs(const ExpectedJobs &) = delete;
  ExpectedJobs &operator=(const ExpectedJobs &) = delete;

  // The job of this number is next.
  void TellOfThoseAfter(int32_t number);

private:
  void Tell(const PlannedJob &job);
  [[nodiscard]] bool ReadsOutput(const PlannedJob &job) const;

  const RunPlan &plan;
  processors::Processor &processor;
  bool worksAhead = false;
  size_t told = 0; // jobs of the plan
  std::set<std::string> outputs;
  std::set<std::string> temporaries;
};

} // namespace client

#endif
