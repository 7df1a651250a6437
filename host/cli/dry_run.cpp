#include "host/cli/dry_run.h"

#include "host/applications.h"
#include "host/cli/printing.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/text.h"

#include <algorithm>

namespace cli {

namespace {

using host::Configuration;

struct Plan {
  std::string stylesheet;
  std::string processor;
  std::string output; // what is shown for it
  std::vector<std::string> marks;
  bool isRunnable = true;
};

class Planner {
public:
  Planner(Environment given, const RunOptions &chosen, const TransformationRecord *found)
      : environment(given), configuration(given.session.Settings()), options(chosen), record(found) {}

  [[nodiscard]] Plan Make(const RunInput &input, const std::string &conflict) const {
    Plan plan;
    if (!kit::Exists(input.path))
      Stop(plan, "input missing");
    ChooseStylesheet(input, plan);
    ChooseProcessor(plan);
    ChooseOutput(input, plan);
    if (record && !IsTakenBy(configuration, options.catalogue.application, input.path))
      Stop(plan, "not of the application " + options.catalogue.application);
    if (!conflict.empty())
      plan.marks.push_back(conflict);
    return plan;
  }

private:
  static void Stop(Plan &plan, const std::string &why) {
    plan.marks.push_back(why);
    plan.isRunnable = false;
  }

  void ChooseStylesheet(const RunInput &input, Plan &plan) const {
    if (record ? record->usesInstruction : options.usesInstruction) {
      plan.stylesheet = "(processing instruction)";
      return;
    }
    plan.stylesheet = record ? host::ExpandStoredPath(configuration, record->stylesheet, input.path)
                             : ReadPath(environment, options.stylesheet);
    if (!kit::IsFile(plan.stylesheet))
      Stop(plan, "stylesheet missing");
  }

  void ChooseProcessor(Plan &plan) const {
    const auto &processors = configuration.processors;
    plan.processor = record ? record->processor : options.processor;
    if (!record && plan.processor.empty() && !processors.empty())
      plan.processor = processors.front().name;
    if (std::ranges::find(processors, plan.processor, &host::ProcessorSetting::name) == processors.end())
      Stop(plan, "processor not configured");
  }

  void ChooseOutput(const RunInput &input, Plan &plan) const {
    plan.output = input.output;
    if (plan.output.empty()) {
      plan.output = record && record->output == OutputPolicy::Prompt ? "(asked for)" : "(temporary)";
      return;
    }
    // Folders of a command line are made; those of a transformation must be there.
    if (record && !kit::IsFolder(kit::FolderOf(plan.output)))
      Stop(plan, "output folder missing");
    if (kit::Exists(plan.output))
      plan.marks.emplace_back("exists");
  }

  Environment environment;
  const Configuration &configuration;
  const RunOptions &options;
  const TransformationRecord *record;
};

std::string JoinMarks(const std::vector<std::string> &marks) {
  std::string joined;
  for (const std::string &mark : marks)
    joined.append(joined.empty() ? "" : ", ").append(mark);
  return joined;
}

} // namespace

std::string PlaceByPolicy(const Configuration &configuration, const TransformationRecord &record,
                          const std::string &input) {
  if (record.output == OutputPolicy::Folder)
    return kit::JoinPath(host::ExpandStoredPath(configuration, record.folder, input), kit::FileNameOf(input));
  if (record.output != OutputPolicy::SameLocation)
    return {};
  const std::string extension = kit::ExtensionOf(input);
  const std::string name = kit::BaseNameOf(input) + record.suffix + (extension.empty() ? "" : "." + extension);
  return kit::JoinPath(kit::FolderOf(input), name);
}

bool IsTakenBy(const Configuration &configuration, const std::string &application, const std::string &input) {
  if (application.empty() || kit::EqualsIgnoreCase(application, kit::defaultsName))
    return true;
  const std::vector<std::string> names = host::FindApplications(configuration, input);
  return std::ranges::find(names, application) != names.end();
}

ExitCode PrintDryRun(Environment environment, const RunOptions &options, std::vector<RunInput> inputs,
                     const TransformationRecord *record) {
  if (record)
    for (RunInput &input : inputs)
      input.output = PlaceByPolicy(environment.session.Settings(), *record, input.path);
  const std::vector<std::string> conflicts = FindConflicts(inputs);
  const Planner planner(environment, options, record);
  bool isRunnable = true;
  std::string text;
  for (size_t index = 0; index < inputs.size(); ++index) {
    const Plan plan = planner.Make(inputs[index], conflicts[index]);
    // On the command line such outputs are refused; a transformation may be meant to replace its input.
    isRunnable = isRunnable && plan.isRunnable && (record || conflicts[index].empty());
    text += FormatFields({inputs[index].path, plan.stylesheet, plan.processor, plan.output, JoinMarks(plan.marks)});
  }
  return Print(text) && isRunnable ? ExitCode::Done : ExitCode::Failed;
}

} // namespace cli
