// The host as its clients see it: properties, documents, calls between clients, questions to the person. One at a
// time, on one thread; the front and the configuration are the caller's and must outlive it. Clients are loaded at the
// first request to them.
#ifndef HOST_SESSION_H
#define HOST_SESSION_H

#include "host/built_in_clients.h"
#include "host/client_module.h"
#include "host/configuration/configuration.h"
#include "host/dialog_host.h"
#include "host/documents/documents.h"
#include "host/fronts/front.h"
#include "host/record/kept_outputs.h"
#include "host/record/run_event.h"
#include "host/temp_folder.h"
#include "kit/values.h"
#include "kit/vdk.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

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
  ~Session();
  Session(const Session &) = delete;
  Session &operator=(const Session &) = delete;

  // False and an error text when the file cannot be opened in that role.
  [[nodiscard]] bool OpenFile(const std::string &path, OpenAs role, std::string &error);
  [[nodiscard]] ClientReply Send(const std::string &client, const std::string &request);
  [[nodiscard]] const SessionRecord &Record() const { return record; }
  // Hears the events of runs from now on, after the front; null for nobody. Must outlive its use.
  void Listen(RunListener *next) { listener = next; }
  // Where copies of opened and launched temporary outputs go, a folder for each run.
  void KeepOutputsIn(std::string folder) { keptOutputs.UseFolder(std::move(folder)); }
  // The record begins anew.
  [[nodiscard]] SessionRecord TakeRecord() { return std::exchange(record, {}); }
  [[nodiscard]] std::vector<DocumentSummary> ListDocuments() const;
  // The only active one from then on.
  void Activate(V_ObjectT object);
  void CloseDocument(V_ObjectT object);
  [[nodiscard]] const Configuration &Settings() const { return configuration; }
  [[nodiscard]] const std::string &TemporaryFolder() { return tempFolder.Path(); }
  [[nodiscard]] Front &TheFront() { return front; }

  // What the table's functions do.
  [[nodiscard]] int32_t GetInt(V_ObjectT object, int32_t property);
  void SetInt(V_ObjectT object, int32_t property, int32_t value);
  // Nothing when the object has no such text.
  [[nodiscard]] std::optional<std::string> GetString(V_ObjectT object, int32_t property);
  void SetString(V_ObjectT object, int32_t property, const std::string &value);
  void SetStrings(V_ObjectT object, int32_t property, std::vector<std::string> value);
  [[nodiscard]] V_ObjectT GetObject(V_ObjectT object, int32_t property);
  [[nodiscard]] std::vector<std::string> GetStrings(V_ObjectT object, int32_t property);
  [[nodiscard]] kit::TypedValues GetTypedVals(V_ObjectT object, int32_t property);
  [[nodiscard]] kit::TypedValues CallClient(const std::string &client, const std::string &request, std::string &error);
  void TakeReply(kit::TypedValues reply);
  [[nodiscard]] int32_t Ask(AlertKind kind, const std::string &text);
  [[nodiscard]] std::optional<std::string> Choose(const FileChooser &chooser);
  void WriteConsole(const std::string &text);
  void ReportRunEvent(RunEvent event);
  [[nodiscard]] V_ObjectT OpenOutput(const std::string &path, const std::string &asName);
  [[nodiscard]] int32_t Launch(const std::string &path);
  // Nothing when the object is neither a book nor a map.
  [[nodiscard]] std::optional<ComponentList> Walk(V_ObjectT object, int32_t options);
  [[nodiscard]] V_ObjectT OpenDialog(const std::string &name);
  void RunDialog(int32_t number, V_ObjectT dialog);
  [[nodiscard]] DialogHost &Dialogs() { return dialogs; }
  [[nodiscard]] int32_t Error() const { return error; }
  void SetError(int32_t value) { error = value; }
  void RequestNotification(int32_t notification, bool on);

private:
  [[nodiscard]] BuiltInClient *FindBuiltIn(std::string_view client);
  [[nodiscard]] const ClientModule *LoadClient(const std::string &client, std::string &problem);
  [[nodiscard]] std::string ApplicationOf(const Document &document) const;
  // Whether an output that is launched goes with the session.
  [[nodiscard]] bool IsTemporary(const std::string &path);
  // The copy of a temporary output that stays, or the path when there is none.
  [[nodiscard]] std::string TakeCopy(const std::string &path);

  const Configuration &configuration;
  Installation installation;
  Front &front;
  V_HostT table;
  Documents documents;
  V_ObjectT activeDocument = 0;
  V_ObjectT activeBook = 0;
  std::map<int32_t, int32_t> settings; // session numbers
  TempFolder tempFolder;
  KeptOutputs keptOutputs;
  SessionRecord record;
  std::optional<kit::Resources> clientResources; // read when the client opens its first dialog
  DialogHost dialogs;
  VlDispatcher dispatcher;
  XmlUtilities utilities;
  std::vector<kit::TypedValues> replies; // one per request being served
  RunListener *listener = nullptr;
  bool wantsRequests = false;
  int32_t error = V_ERROR_NONE;
  std::unique_ptr<ClientModule> module; // last: it calls the session while it is shut down
};

} // namespace host

#endif
