// What carries out transformations: one object for all configured processors, each of them named by the class of its
// factory. The client is handed one when it starts. All calls come from the host's thread and block; what a job has to
// say arrives meanwhile, in order and on the same thread, through report::XSLTErrorHandler, and its entity requests
// through VLXSLTEntityResolverC. Nothing throws; a failure is the result, and its reason a diagnostic.
#ifndef PROCESSORS_PROCESSOR_H
#define PROCESSORS_PROCESSOR_H

#include "report/run_event.h"

#include <string>
#include <vector>

namespace processors {

// One transformation. Paths are absolute.
struct Job {
  std::string input;
  std::string stylesheet;                   // empty: the one that the input names in its processing instruction
  std::string output;                       // written whole or not at all
  std::vector<std::string> parameters = {}; // name and XPath expression alternately
  // Where the caller will put the output; relative secondary results go by it. Empty: the output stays where it is.
  std::string result = {};
  // The file that holds the input, whose name then only says how it is called and where its references start. Empty:
  // the input itself.
  std::string inputContent = {};
};

using report::JobStatus;

struct JobResult {
  JobStatus status = JobStatus::Failed;           // or Done; Cancelled when it was given up, being overdue
  std::vector<std::string> secondaryOutputs = {}; // paths, in the order of writing; empty unless done
  std::vector<std::string> filesRead = {};        // paths, or addresses of what is no file; each once
};

// What one configured processor turns out to be.
struct ProcessorProbe {
  std::string implementation = {}; // the factory's class
  std::string version = {};
  std::string location = {}; // the jar or folder it came from
  std::string error = {};    // empty when it loads
};

class Processor {
public:
  Processor() = default;
  Processor(const Processor &) = delete;
  Processor &operator=(const Processor &) = delete;
  virtual ~Processor() = default;

  // The class path of all processors, entries separated by ";". May be called again with more; costs nothing by itself.
  virtual void SetClassPath(const std::string &classPath) = 0;
  // Selects a processor for the jobs that follow; false when its class does not load.
  [[nodiscard]] virtual bool SetTransformer(const std::string &className) = 0;
  [[nodiscard]] virtual JobResult TransformXMLFile(const Job &job) = 0;
  // Loads a processor without selecting it.
  [[nodiscard]] virtual ProcessorProbe ProbeProcessor(const std::string &className) = 0;
  // The last call.
  virtual void ShutDown() = 0;
};

} // namespace processors

#endif
