// The plan of a run: one job for each input, with everything that is known before the run begins. Both variants, the
// transformation of a catalogue and the bare stylesheet, differ only in the plan that they make. To plan asks the
// person nothing, leaves no file behind and starts no Java. Host's thread only.
#ifndef CLIENT_RUN_PLAN_H
#define CLIENT_RUN_PLAN_H

#include "catalogue/transformation.h"
#include "client/run_request.h"
#include "report/run_event.h"

#include <cstdint>
#include <string>
#include <vector>

namespace client {

enum class OutputPlace {
  Temporary, // a file of the host's temporary folder, opened at the end of the run or deleted
  Asked,     // the person says where
  Named,     // `output` of the job, written at once
  Replaced,  // `output` of the job, written to a temporary file first
  Elsewhere, // `output` of the job is only its name; it is written to `outputContent` and left there
};

struct PlannedJob {
  int32_t number = 0; // from 0, the position of the input in the request
  std::string input;
  std::string inputContent; // the file that holds it; empty: the input itself
  std::string stylesheet;   // empty: the one that the input names
  std::string output;       // empty unless the place is known
  std::string outputContent;
  OutputPlace place = OutputPlace::Temporary;
  // Done when the job is to be run; else why it is not.
  report::JobStatus status = report::JobStatus::Done;

  [[nodiscard]] const std::string &ReadFile() const { return inputContent.empty() ? input : inputContent; }
  [[nodiscard]] bool IsToRun() const { return status == report::JobStatus::Done; }
};

// Which runs write a start section, and what it shows.
enum class SectionKind { Catalogue, BareStylesheet };

struct RunPlan {
  std::string processor;               // by name
  std::vector<std::string> parameters; // name and expression alternately
  std::string transformationName;      // empty for a bare stylesheet
  std::string applicationName;         // as the request names it
  SectionKind section = SectionKind::BareStylesheet;
  catalogue::OpenOutputKind openOutput = catalogue::OpenOutputKind::Vellis;
  RunStart start;
  bool isComplete = false;      // the jobs have all that a run needs
  bool usesInstruction = false; // the inputs name their stylesheets
  bool printStartLog = true;
  bool printEndLog = true;
  bool makeFolders = false;       // of the outputs
  bool distinctOutputs = false;   // two jobs with one output are refused
  std::vector<std::string> usage; // what is reported to the host's usage operation
  std::vector<PlannedJob> jobs;
};

// Refused: nothing may be run; the reasons have been reported. The jobs are there as far as they were made, and none
// of them is to be run.
[[nodiscard]] RequestCheck PlanRun(const RunRequest &request, RunPlan &plan);

// What a person may want to know of a job before it begins.
struct Foresight {
  std::vector<std::string> asks; // "overwrite", "place"
  report::JobStatus status = report::JobStatus::Done;
  std::vector<std::string> problems; // texts for people
};

// One for each job, from the files as they are now.
[[nodiscard]] std::vector<Foresight> Foresee(const RunPlan &plan);

// For a plan with `distinctOutputs`: the first job whose output is another job's too, or its stylesheet; reported.
[[nodiscard]] RequestCheck CheckDistinctOutputs(const RunPlan &plan);

} // namespace client

#endif
