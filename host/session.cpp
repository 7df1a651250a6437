#include "host/session.h"

#include "host/host_table.h"
#include "kit/paths.h"

#include <algorithm>

namespace host {

namespace {

constexpr std::string_view clientName = "XSLT";

std::string NameAlert(AlertKind kind) {
  switch (kind) {
  case AlertKind::Plain:
    return "alert";
  case AlertKind::OkCancel:
    return "ok-cancel";
  default:
    return "yes-no";
  }
}

std::string NameAnswer(AlertKind kind, Answer answer) {
  if (kind == AlertKind::YesNo || kind == AlertKind::YesNoDefaultNo)
    return answer == Answer::Proceed ? "yes" : "no";
  return answer == Answer::Proceed ? "ok" : "cancel";
}

std::string NameChooser(ChooserKind kind) {
  switch (kind) {
  case ChooserKind::Open:
    return "open";
  case ChooserKind::Folder:
    return "folder";
  default:
    return "save";
  }
}

} // namespace

Session::Session(const Configuration &given, Installation where, Front &shownTo)
    : configuration(given), installation(std::move(where)), front(shownTo),
      table(MakeHostTable(*this)), settings{{V_SP_XSL_START_SECTION, 1}}, tempFolder(configuration.tempFolder),
      dispatcher(configuration), utilities(configuration, [this](const std::string &line) { WriteConsole(line); }) {
  // The kit's values are used on this side too.
  V_AttachHost(&table);
}

Session::~Session() {
  // The client is shut down while the table still stands.
  module.reset();
  V_DetachHost(&table);
}

bool Session::OpenFile(const std::string &path, OpenAs role, std::string &problem) {
  Document *document = documents.Open(path, {}, problem);
  if (!document)
    return false;
  if (role == OpenAs::ActiveBook && document->source == ComponentSource::None) {
    problem = document->path + " is neither a book nor a DITA map";
    return false;
  }
  document->isModified = document->isModified || role == OpenAs::ModifiedDocument;
  const bool isBook = document->source == ComponentSource::Book;
  if (role == OpenAs::ActiveBook || (role == OpenAs::ActiveDocument && isBook))
    activeBook = document->object;
  else if (role == OpenAs::ActiveDocument)
    activeDocument = document->object;
  return true;
}

std::vector<DocumentSummary> Session::ListDocuments() const {
  std::vector<DocumentSummary> summaries;
  for (const auto &each : documents.All())
    summaries.push_back({each->object, each->source, each->path, each->name, ApplicationOf(*each), each->isModified,
                         each->object == activeDocument || each->object == activeBook});
  return summaries;
}

void Session::Activate(V_ObjectT object) {
  const Document *document = documents.Find(object);
  const bool isBook = document && document->source == ComponentSource::Book;
  activeBook = isBook ? object : 0;
  activeDocument = document && !isBook ? object : 0;
}

void Session::CloseDocument(V_ObjectT object) {
  documents.Close(object);
  for (V_ObjectT *active : {&activeDocument, &activeBook})
    if (*active == object)
      *active = 0;
}

ClientReply Session::Send(const std::string &client, const std::string &request) {
  error = V_ERROR_NONE;
  ClientReply reply;
  reply.values = CallClient(client, request, reply.error);
  reply.status = error;
  front.ReportProgress({});
  return reply;
}

BuiltInClient *Session::FindBuiltIn(std::string_view client) {
  if (client == "VlDispatcher")
    return &dispatcher;
  return client == "XmlUtilities" ? &utilities : nullptr;
}

const ClientModule *Session::LoadClient(const std::string &client, std::string &problem) {
  if (client != clientName) {
    problem = "there is no client \"" + client + "\"; the clients are XSLT, VlDispatcher and XmlUtilities";
    return nullptr;
  }
  if (!module) {
    module = ClientModule::Load(installation.ClientPath(client), table, problem);
    if (module)
      module->Initialise();
  }
  return module.get();
}

kit::TypedValues Session::CallClient(const std::string &client, const std::string &request, std::string &problem) {
  if (BuiltInClient *builtIn = FindBuiltIn(client))
    return builtIn->Answer(request);
  const ClientModule *loaded = LoadClient(client, problem);
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

void Session::TakeReply(kit::TypedValues reply) {
  if (!replies.empty())
    replies.back() = std::move(reply);
}

void Session::RequestNotification(int32_t notification, bool on) {
  if (notification == V_NOTIFY_CALL_CLIENT)
    wantsRequests = on;
}

int32_t Session::Ask(AlertKind kind, const std::string &text) {
  const Answer answer = front.Alert(kind, text);
  record.asked.push_back({NameAlert(kind), text, NameAnswer(kind, answer)});
  return answer == Answer::Proceed ? V_ANSWER_PROCEED : V_ANSWER_DECLINE;
}

std::optional<std::string> Session::Choose(const FileChooser &chooser) {
  std::optional<std::string> path = front.ChooseFile(chooser);
  record.asked.push_back({NameChooser(chooser.kind), chooser.title, path.value_or("")});
  return path;
}

void Session::WriteConsole(const std::string &text) {
  front.WriteConsole(text);
  record.console.push_back(text == "\n" ? "" : text);
}

void Session::ReportRunEvent(RunEvent event) {
  if (event.kind == V_RUN_BEGINS)
    keptOutputs.BeginRun();
  if (event.kind == V_RUN_OUTPUT && (event.outputKind == V_OUTPUT_OPENED || event.outputKind == V_OUTPUT_LAUNCHED)) {
    std::string problem;
    event.path = keptOutputs.Keep(event.path, problem);
    if (!problem.empty())
      WriteConsole(problem);
  }
  front.ReportRunEvent(event);
  if (listener)
    listener->OnRunEvent(event);
}

bool Session::IsTemporary(const std::string &path) {
  const std::string &folder = tempFolder.Path();
  return !folder.empty() && kit::AbsolutePath(path).starts_with(kit::JoinPath(folder, ""));
}

std::string Session::TakeCopy(const std::string &path) {
  std::string problem;
  std::string copy = keptOutputs.Take(path, problem);
  if (!problem.empty())
    WriteConsole(problem);
  return copy;
}

// A client that gives an output another name deletes its file afterwards.
V_ObjectT Session::OpenOutput(const std::string &path, const std::string &asName) {
  const std::string kept = asName.empty() ? path : TakeCopy(path);
  std::string problem;
  const Document *document = documents.Open(kept, asName, problem);
  if (!document) {
    WriteConsole("Cannot open: " + problem);
    return 0;
  }
  if (kept != path)
    WriteConsole("Opened: " + kept);
  record.opened.push_back(document->path);
  return document->object;
}

V_ObjectT Session::OpenDialog(const std::string &name) {
  if (!module)
    return 0;
  if (!clientResources) {
    size_t size = 0;
    const auto *image = static_cast<const std::byte *>(module->Resources(size));
    clientResources = kit::Resources::Read({image, size});
  }
  const V_ObjectT dialog = clientResources ? dialogs.Open(name, *clientResources) : 0;
  if (!dialog)
    WriteConsole("The client's resources hold no dialog \"" + name + "\", or a damaged one.");
  return dialog;
}

void Session::RunDialog(int32_t number, V_ObjectT dialog) {
  dialogs.Run(number, dialog, front,
              [this](int32_t dialogNumber, int32_t item) { module->SendDialogEvent(dialogNumber, item, 0); });
}

int32_t Session::Launch(const std::string &path) {
  if (path.empty())
    return 0;
  const std::string kept = IsTemporary(path) ? TakeCopy(path) : path;
  record.launched.push_back(kept);
  front.LaunchOutput(kept);
  return 1;
}

std::optional<ComponentList> Session::Walk(V_ObjectT object, int32_t options) {
  const Document *document = documents.Find(object);
  if (!document || document->source == ComponentSource::None)
    return std::nullopt;
  const WalkChoice choice{(options & V_WALK_EXTERNAL) != 0, (options & V_WALK_RESOURCE_ONLY) != 0};
  ComponentList components = ListComponents(document->path, document->source, choice);
  for (const std::string &problem : components.problems)
    WriteConsole(problem);
  return components;
}

} // namespace host
