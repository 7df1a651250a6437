#include "host/desktop/workbench_host.h"

#include "host/desktop/ui_thread.h"
#include "kit/paths.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace desktop {

namespace {

std::vector<std::string> ReadTexts(const kit::TypedValues &values) {
  if (const auto texts = values.Strings(0))
    return *texts;
  const auto text = values.String(0);
  return text ? std::vector{*text} : std::vector<std::string>();
}

} // namespace

WorkbenchHost::WorkbenchHost(const host::WorkbenchRequest &request, RunView &view, DocumentsSink showDocuments)
    : front(view), tellDocuments(std::move(showDocuments)), configuration(request.configuration),
      installation(request.installation), thread(std::make_unique<HostThread>()) {
  Post([this, files = request.files] {
    StartSession();
    for (const auto &[path, role] : files)
      if (std::string problem; !session->OpenFile(path, role, problem))
        front.WriteConsole(problem);
    ActivateOne();
    TellDocuments();
  });
}

// While any document is open, one is active.
void WorkbenchHost::ActivateOne() {
  const std::vector<host::DocumentSummary> documents = session->ListDocuments();
  if (!documents.empty() && std::ranges::none_of(documents, &host::DocumentSummary::isActive))
    session->Activate(documents.back().object);
}

WorkbenchHost::~WorkbenchHost() {
  EndSession();
  thread.reset();
}

bool WorkbenchHost::EndWithin(std::chrono::seconds maxTime) {
  front.Cancel();
  EndSession();
  return WaitFor(maxTime, [this] { return hasEnded; });
}

// The session is created and destroyed on its thread.
void WorkbenchHost::EndSession() {
  thread->Post([this] {
    session.reset();
    ChangeShared([this] { hasEnded = true; });
  });
}

void WorkbenchHost::Post(std::function<void()> task) { thread->Post(std::move(task)); }

void WorkbenchHost::StartSession() { session = std::make_unique<host::Session>(configuration, installation, front); }

void WorkbenchHost::Open(std::vector<std::string> paths, std::function<void(std::string problems)> done) {
  Post([this, paths = std::move(paths), done = std::move(done)] {
    std::string problems;
    for (const std::string &path : paths)
      if (std::string problem; !session->OpenFile(path, host::OpenAs::ActiveDocument, problem))
        problems.append(problems.empty() ? "" : "\n").append(problem);
    // The opened one is the only active one, be it a document or a book.
    const std::string last = paths.empty() ? std::string() : kit::AbsolutePath(kit::UrlToPath(paths.back()));
    for (const host::DocumentSummary &each : session->ListDocuments())
      if (each.path == last)
        session->Activate(each.object);
    TellDocuments();
    windows.Post([done, problems] { done(problems); });
  });
}

void WorkbenchHost::Activate(V_ObjectT object) {
  Post([this, object] {
    session->Activate(object);
    TellDocuments();
  });
}

void WorkbenchHost::Close(V_ObjectT object) {
  Post([this, object] {
    session->CloseDocument(object);
    ActivateOne();
    TellDocuments();
  });
}

void WorkbenchHost::Refresh() {
  Post([this] { TellDocuments(); });
}

void WorkbenchHost::Send(std::string request, std::function<void(RequestOutcome)> done) {
  front.ForgetCancel();
  Post([this, request = std::move(request), done = std::move(done)] {
    static_cast<void>(session->TakeRecord());
    const host::ClientReply reply = session->Send("XSLT", request);
    RequestOutcome outcome{reply.status, reply.error, ReadTexts(reply.values), session->TakeRecord()};
    TellDocuments();
    windows.Post([this, done, outcome = std::move(outcome)] {
      front.ShowWaiting();
      done(outcome);
    });
  });
}

void WorkbenchHost::Reconfigure(host::Configuration next, std::function<void()> done) {
  Post([this, next = std::move(next), done = std::move(done)] {
    const std::vector<host::DocumentSummary> documents = session->ListDocuments();
    session.reset();
    configuration = next;
    StartSession();
    for (const host::DocumentSummary &each : documents) {
      const auto role = each.isModified ? host::OpenAs::ModifiedDocument : host::OpenAs::Document;
      std::string problem;
      if (!session->OpenFile(each.path, role, problem))
        front.WriteConsole(problem);
    }
    for (const host::DocumentSummary &now : session->ListDocuments())
      for (const host::DocumentSummary &before : documents)
        if (before.isActive && before.path == now.path)
          session->Activate(now.object);
    TellDocuments();
    windows.Post(done);
  });
}

OpenDocument WorkbenchHost::Describe(const host::DocumentSummary &summary) {
  OpenDocument document{summary, {}, !kit::IsFile(summary.path)};
  if (summary.source == host::ComponentSource::None || document.isMissing)
    return document;
  std::error_code error;
  const auto changed = std::filesystem::last_write_time(summary.path, error);
  const auto known = components.find(summary.path);
  if (known != components.end() && known->second.changed == changed)
    document.components = known->second.paths;
  else
    document.components = host::ListComponents(summary.path, summary.source, {}).paths;
  components[summary.path] = {changed, document.components};
  return document;
}

void WorkbenchHost::TellDocuments() {
  std::vector<OpenDocument> documents;
  for (const host::DocumentSummary &each : session->ListDocuments())
    documents.push_back(Describe(each));
  windows.Post([this, documents = std::move(documents)] { tellDocuments(documents); });
}

} // namespace desktop
