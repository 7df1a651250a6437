// A session of the host, as the command line and the windows use it: the open documents, requests to the clients, and
// what happened while they were served. One at a time, on one thread; the front and the configuration are the caller's
// and must outlive it. Clients are loaded at the first request to them.
//
// In all of host/ what fails says so by false, nothing or an empty value, and by a text in an argument `error`, or in a
// member `error` or `problems` of what is returned.
#ifndef HOST_SESSION_H
#define HOST_SESSION_H

#include "host/configuration/configuration.h"
#include "host/documents/documents.h"
#include "host/fronts/front.h"
#include "host/record/run_event.h"
#include "kit/values.h"
#include "kit/vdk.h"

#include <memory>
#include <string>
#include <vector>

namespace host {

class HostServices;

struct AskedQuestion {
  std::string kind; // "alert", "yes-no", "ok-cancel", "open", "save", "folder"
  std::string text;
  std::string answer; // "yes", "no", "ok", "cancel", or the path, empty when dismissed
};

// What happened while a request was served.
struct SessionRecord {
  std::vector<std::string> opened;
  std::vector<std::string> launched;
  std::vector<AskedQuestion> asked;
  std::vector<std::string> console;
  std::vector<std::string> requests; // to clients that are loaded, nested ones too, in the order of sending
};

// An open document as a window lists it.
struct DocumentSummary {
  V_ObjectT object = 0;
  ComponentSource source = ComponentSource::None;
  std::string path;
  std::string name;
  std::string application; // empty when no rule fits
  bool isModified = false;
  bool isActive = false;
};

enum class OpenAs { Document, ActiveDocument, ActiveBook, ModifiedDocument };

struct ClientReply {
  kit::TypedValues values;
  int32_t status = V_ERROR_NONE; // V_ERROR_...
  std::string error;             // not empty when the request reached no client
};

class Session {
public:
  Session(const Configuration &settings, Installation where, Front &shownTo);
  // Shuts the client down, which may still call the host, and then ends what the client was given.
  ~Session();
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  // False and an error text when the file cannot be opened in that role.
  [[nodiscard]] bool OpenFile(const std::string &path, OpenAs role, std::string &error);
  [[nodiscard]] std::vector<DocumentSummary> ListDocuments() const;
  // The only active one from then on.
  void Activate(V_ObjectT object);
  void CloseDocument(V_ObjectT object);

  [[nodiscard]] ClientReply Send(const std::string &client, const std::string &request);
  // A line of the host's own.
  void WriteConsole(const std::string &text);
  // Hears the events of runs from now on, after the front; null for none. The listener must outlive its use.
  void Listen(RunListener *listener);
  // Where copies of opened and launched temporary outputs go, a folder for each run.
  void KeepOutputsIn(std::string folder);
  [[nodiscard]] const SessionRecord &Record() const;
  // Whether the record holds the lines of the console, which it does unless told otherwise.
  void KeepConsole(bool isKept);
  // The record begins anew.
  [[nodiscard]] SessionRecord TakeRecord();
  [[nodiscard]] const Configuration &Settings() const;

private:
  std::unique_ptr<HostServices> services;
};

} // namespace host

#endif
