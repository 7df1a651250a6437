#include "host/host_services.h"

#include "host/host_table.h"
#include "kit/names.h"
#include "kit/paths.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace host {

namespace {

constexpr std::array<std::string_view, 3> chooserNames = {"open", "folder", "save"};

} // namespace

HostServices::HostServices(const Configuration &settings, Installation where, Front &shownTo)
    : configuration(settings), installation(std::move(where)), front(shownTo),
      table(MakeHostTable(*this)), numbers{{V_SP_XSL_START_SECTION, 1}}, tempFolder(configuration.tempFolder),
      dispatcher(configuration), utilities(configuration, [this](const std::string &line) { WriteConsole(line); }) {
  // The kit's values are used on this side too.
  V_AttachHost(&table);
}

HostServices::~HostServices() {
  // The client is shut down while the table still stands.
  module.reset();
  V_DetachHost(&table);
}

BuiltInClient *HostServices::FindBuiltIn(std::string_view client) {
  if (client == kit::dispatcherName)
    return &dispatcher;
  return client == kit::xmlUtilitiesName ? &utilities : nullptr;
}

const ClientModule *HostServices::LoadClient(const std::string &client, std::string &error) {
  if (client != kit::xsltName) {
    error = "there is no client \"" + client + "\"; the clients are XSLT, VlDispatcher and XmlUtilities";
    return nullptr;
  }
  if (!module) {
    module = ClientModule::Load(installation.ClientPath(client), table, error);
    if (module)
      module->Initialise();
  }
  return module.get();
}

kit::TypedValues HostServices::CallClient(const std::string &client, const std::string &request, std::string &error) {
  if (BuiltInClient *builtIn = FindBuiltIn(client))
    return builtIn->Answer(request);
  const ClientModule *loaded = LoadClient(client, error);
  if (!loaded || !wantsRequests)
    return {};
  // A client may be called again while it serves a request: every call has a place of its own for the reply.
  record.requests.push_back(request);
  replies.emplace_back();
  loaded->Notify(V_NOTIFY_CALL_CLIENT, V_SESSION, request.c_str(), 0);
  kit::TypedValues reply = std::move(replies.back());
  replies.pop_back();
  return reply;
}

void HostServices::TakeReply(kit::TypedValues reply) {
  if (!replies.empty())
    replies.back() = std::move(reply);
}

void HostServices::RequestNotification(int32_t notification, bool on) {
  if (notification == V_NOTIFY_CALL_CLIENT)
    wantsRequests = on;
}

int32_t HostServices::Ask(AlertKind kind, const std::string &text) {
  const Answer answer = front.Alert(kind, text);
  const QuestionWords &words = WordsOf(kind);
  // A closed alert was seen all the same.
  const bool proceeds = answer == Answer::Proceed || words.decline.empty();
  record.asked.push_back({std::string(words.name), text, std::string(proceeds ? words.proceed : words.decline)});
  return answer == Answer::Proceed ? V_ANSWER_PROCEED : V_ANSWER_DECLINE;
}

std::optional<std::string> HostServices::Choose(const FileChooser &chooser) {
  std::optional<std::string> path = front.ChooseFile(chooser);
  const auto kind = std::min(static_cast<size_t>(chooser.kind), chooserNames.size() - 1);
  record.asked.push_back({std::string(chooserNames.at(kind)), chooser.title, path.value_or("")});
  return path;
}

void HostServices::WriteConsole(const std::string &text) {
  front.WriteConsole(text);
  if (keepsConsole)
    record.console.push_back(text == "\n" ? "" : text);
}

void HostServices::ReportRunEvent(RunEvent event) {
  if (event.kind == V_RUN_BEGINS)
    keptOutputs.BeginRun();
  if (event.kind == V_RUN_OUTPUT)
    KeepOutput(event);
  front.ReportRunEvent(event);
  if (listener)
    listener->OnRunEvent(event);
}

void HostServices::KeepOutput(RunEvent &event) {
  const bool isSecondary = event.outputKind == V_OUTPUT_SECONDARY;
  const std::string name = tempFolder.NameOf(event.path);
  if (event.outputKind == V_OUTPUT_PRINCIPAL || (isSecondary && name.empty()))
    return;
  std::string error;
  const std::string copy = keptOutputs.Keep(event.path, error, name);
  TellUnkept(error);
  // The client takes care of the others, and they are named when they are opened.
  if (isSecondary) {
    if (std::error_code ignored; copy != event.path)
      std::filesystem::remove(event.path, ignored);
    WriteConsole("Kept: " + copy);
  }
  event.path = copy;
}

void HostServices::TellUnkept(const std::string &error) {
  if (error.empty())
    return;
  WriteConsole(error);
  tempFolder.KeepFiles();
}

std::string HostServices::TakeCopy(const std::string &path) {
  std::string error;
  std::string copy = keptOutputs.Take(path, error);
  TellUnkept(error);
  return copy;
}

// A client that gives an output another name deletes its file afterwards.
V_ObjectT HostServices::OpenOutput(const std::string &path, const std::string &asName) {
  const bool isDeleted = !asName.empty();
  const std::string kept = isDeleted ? TakeCopy(path) : path;
  std::string error;
  const Document *document = documents.Open(kept, asName, error);
  if (!document) {
    WriteConsole("Cannot open: " + error);
    return 0;
  }
  if (isDeleted)
    WriteConsole("Opened: " + kept);
  record.opened.push_back(document->path);
  // Without a copy the file must stay, which it does when the client hears that it was not opened.
  return isDeleted && kept == path ? 0 : document->object;
}

int32_t HostServices::Launch(const std::string &path) {
  if (path.empty())
    return 0;
  const std::string kept = tempFolder.NameOf(path).empty() ? path : TakeCopy(path);
  record.launched.push_back(kept);
  front.LaunchOutput(kept);
  return 1;
}

std::optional<ComponentList> HostServices::Walk(V_ObjectT object, int32_t options) {
  const Document *document = documents.Find(object);
  if (!document || document->source == ComponentSource::None)
    return std::nullopt;
  const WalkChoice choice{(options & V_WALK_EXTERNAL) != 0, (options & V_WALK_RESOURCE_ONLY) != 0};
  ComponentList components = ListComponents(document->path, document->source, choice);
  for (const std::string &problem : components.problems)
    WriteConsole(problem);
  return components;
}

V_ObjectT HostServices::OpenDialog(const std::string &name) {
  const kit::Resources *resources = module ? module->FindResources() : nullptr;
  const V_ObjectT dialog = resources ? dialogs.Open(name, *resources) : 0;
  if (module && !dialog)
    WriteConsole("The client's resources hold no dialog \"" + name + "\", or a damaged one.");
  return dialog;
}

void HostServices::RunDialog(int32_t number, V_ObjectT dialog) {
  dialogs.Run(number, dialog, front,
              [this](int32_t dialogNumber, int32_t item) { module->SendDialogEvent(dialogNumber, item, 0); });
}

} // namespace host
