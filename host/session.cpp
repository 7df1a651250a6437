#include "host/session.h"

#include "host/host_services.h"

#include <utility>

namespace host {

Session::Session(const Configuration &settings, Installation where, Front &shownTo)
    : services(std::make_unique<HostServices>(settings, std::move(where), shownTo)) {}

Session::~Session() = default;

bool Session::OpenFile(const std::string &path, OpenAs role, std::string &error) {
  Document *document = services->OpenDocuments().Open(path, {}, error);
  if (!document)
    return false;
  if (role == OpenAs::ActiveBook && document->source == ComponentSource::None) {
    error = document->path + " is neither a book nor a DITA map";
    return false;
  }
  document->isModified = document->isModified || role == OpenAs::ModifiedDocument;
  if (role == OpenAs::ActiveBook || (role == OpenAs::ActiveDocument && document->source == ComponentSource::Book))
    services->OpenDocuments().SetActiveBook(document->object);
  else if (role == OpenAs::ActiveDocument)
    services->OpenDocuments().SetActiveDocument(document->object);
  return true;
}

std::vector<DocumentSummary> Session::ListDocuments() const {
  const Documents &documents = services->OpenDocuments();
  std::vector<DocumentSummary> summaries;
  for (const auto &each : documents.All())
    summaries.push_back({each->object, each->source, each->path, each->name, services->ApplicationOf(*each),
                         each->isModified, documents.IsActive(each->object)});
  return summaries;
}

void Session::Activate(V_ObjectT object) { services->OpenDocuments().Activate(object); }

void Session::CloseDocument(V_ObjectT object) { services->OpenDocuments().Close(object); }

ClientReply Session::Send(const std::string &client, const std::string &request) {
  services->SetError(V_ERROR_NONE);
  ClientReply reply;
  reply.values = services->CallClient(client, request, reply.error);
  reply.status = services->GetError();
  services->TheFront().ReportProgress({});
  return reply;
}

void Session::WriteConsole(const std::string &text) { services->WriteConsole(text); }

void Session::Listen(RunListener *listener) { services->Listen(listener); }

void Session::KeepOutputsIn(std::string folder) { services->KeepOutputsIn(std::move(folder)); }

const SessionRecord &Session::Record() const { return services->Record(); }

void Session::KeepConsole(bool isKept) { services->KeepConsole(isKept); }

SessionRecord Session::TakeRecord() { return std::exchange(services->Record(), {}); }

const Configuration &Session::Settings() const { return services->Settings(); }

} // namespace host
