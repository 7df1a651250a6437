// What carries out transformations: one object for all configured processors, each of them named by the class of its
// factory. The client is handed one when it starts. All calls come from the host's thread and block; what a job has to
// say arrives meanwhile, in order and on the same thread, through report::XSLTErrorHandler, and its entity requests
// through VLXSLTEntityResolverC. Nothing throws; a failure is the result, and its reason a diagnostic.
#ifndef PROCESSORS_PROCESSOR_H
#define PROCESSORS_PROCESSOR_H

#include "report/run_event.h"

#include <cstddef>
#include <cstdint>
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
  bool includes = false;            // XInclude in what is read as data
  std::string initialTemplate = {}; // where the stylesheet begins; empty for its own start
  std::string initialMode = {};
  int32_t number = -1; // the position in a run, for a job that was expected
};

// A factory and how it is set up.
struct Factory {
  std::string className;
  std::vector<std::string> attributes = {}; // name, type (see V_SP_XSLT_PROCESSORS) and value alternately
};

// What the documents and stylesheets of a run are trusted with.
struct Policy {
  std::vector<std::string> hosts = {};        // that may be fetched from, as "name" or "name:port"; "*" for all
  bool allowsExtensions = false;              // code that stylesheets call, whichever processor applies them
  std::vector<std::string> writeFolders = {}; // for further results: V_SP_WRITE_FOLDERS
  bool syncsOutputs = true;                   // they are on disk before success is reported

  [[nodiscard]] bool operator==(const Policy &) const = default;
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
  // For all that is selected from now on; costs nothing by itself.
  virtual void SetPolicy(const Policy &policy) = 0;
  // Selects a processor for the jobs that follow; false when its class does not load.
  [[nodiscard]] bool SetTransformer(const std::string &className) { return SelectFactory({className}); }
  // The same; false too when it does not take an attribute. One class with other attributes is another factory.
  [[nodiscard]] virtual bool SelectFactory(const Factory &factory) = 0;
  // How many jobs the next run has; told before its factory is selected.
  virtual void SetJobCount(size_t) {}
  [[nodiscard]] virtual JobResult TransformXMLFile(const Job &job) = 0;
  // How many jobs of the run that SelectFactory begins may be done at once; 0 leaves that to the processor.
  virtual void SetThreads(int32_t threads) = 0;
  // A job with a number that will follow after those expected before it, unless the run ends or leaves it out. Work on
  // it may begin, but nothing of it is told or written before it is asked for; only its `output` may differ then.
  virtual void ExpectJob(const Job &job) = 0;
  // No expected job follows.
  virtual void EndRun() = 0;
  // Loads a processor without selecting it.
  [[nodiscard]] virtual ProcessorProbe ProbeProcessor(const Factory &factory) = 0;
  // Has what the processor starts quickly with made now, rather than behind the first run. False when there is none
  // then.
  [[nodiscard]] virtual bool PrepareStart(const Factory &) { return true; }
  // Advice on how to start faster, for people; empty when there is none.
  [[nodiscard]] virtual std::string AdviseOnStart() { return {}; }
  // The last call.
  virtual void ShutDown() = 0;
};

} // namespace processors

#endif
