// What the functions of the host's table do for a client: properties of the session, of documents and of dialogs, calls
// between clients, questions to the person, the components of books and maps, finished outputs. Private to host/: the
// table calls it for clients, Session for applications. On the session's thread.
#ifndef HOST_HOST_SERVICES_H
#define HOST_HOST_SERVICES_H

#include "host/built_in_clients.h"
#include "host/client_module.h"
#include "host/dialog_host.h"
#include "host/record/kept_outputs.h"
#include "host/session.h"
#include "host/temp_folder.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class HostServices {
public:
  HostServices(const Configuration &settings, Installation where, Front &shownTo);
  ~HostServices();
  HostServices(const HostServices &) = delete;
  HostServices &operator=(const HostServices &) = delete;

  // Properties by number. What an object does not have reads as 0 or nothing, and cannot be set.
  [[nodiscard]] int32_t GetInt(V_ObjectT object, int32_t property);
  void SetInt(V_ObjectT object, int32_t property, int32_t value);
  [[nodiscard]] std::optional<std::string> GetString(V_ObjectT object, int32_t property);
  void SetString(V_ObjectT object, int32_t property, const std::string &value);
  [[nodiscard]] V_ObjectT GetObject(V_ObjectT object, int32_t property);
  [[nodiscard]] std::vector<std::string> GetStrings(V_ObjectT object, int32_t property);
  void SetStrings(V_ObjectT object, int32_t property, std::vector<std::string> value);
  [[nodiscard]] kit::TypedValues GetTypedVals(V_ObjectT object, int32_t property);

  // An empty reply and an error text when there is no such client, or it cannot be loaded.
  [[nodiscard]] kit::TypedValues CallClient(const std::string &client, const std::string &request, std::string &error);
  // The reply to the request that is being served.
  void TakeReply(kit::TypedValues reply);
  void RequestNotification(int32_t notification, bool on);
  [[nodiscard]] int32_t GetError() const { return status; }
  void SetError(int32_t value) { status = value; }

  [[nodiscard]] int32_t Ask(AlertKind kind, const std::string &text);
  [[nodiscard]] std::optional<std::string> Choose(const FileChooser &chooser);
  void WriteConsole(const std::string &text);
  void ReportRunEvent(RunEvent event);
  [[nodiscard]] Front &TheFront() { return front; }

  [[nodiscard]] V_ObjectT OpenOutput(const std::string &path, const std::string &asName);
  [[nodiscard]] int32_t Launch(const std::string &path);
  // Nothing when the object is neither a book nor a map.
  [[nodiscard]] std::optional<ComponentList> Walk(V_ObjectT object, int32_t options);

  [[nodiscard]] V_ObjectT OpenDialog(const std::string &name);
  void RunDialog(int32_t number, V_ObjectT dialog);
  [[nodiscard]] DialogHost &Dialogs() { return dialogs; }

  // For the session that owns this.
  [[nodiscard]] Documents &OpenDocuments() { return documents; }
  [[nodiscard]] SessionRecord &Record() { return record; }
  [[nodiscard]] const Configuration &Settings() const { return configuration; }
  [[nodiscard]] std::string ApplicationOf(const Document &document) const;
  void Listen(RunListener *next) { listener = next; }
  void KeepOutputsIn(std::string folder) { keptOutputs.UseFolder(std::move(folder)); }

private:
  [[nodiscard]] int32_t GetSessionInt(int32_t property) const;
  // The copy of a temporary output that stays, or the path when there is none.
  [[nodiscard]] std::string TakeCopy(const std::string &path);
  // Puts the copy's path in place of an output's that would go with the temporary folder.
  void KeepOutput(RunEvent &event);
  // An output without a copy stays where it is.
  void TellUnkept(const std::string &error);
  [[nodiscard]] BuiltInClient *FindBuiltIn(std::string_view client);
  [[nodiscard]] const ClientModule *LoadClient(const std::string &client, std::string &error);

  const Configuration &configuration;
  Installation installation;
  Front &front;
  V_HostT table;
  Documents documents;
  std::map<int32_t, int32_t> numbers; // properties of the session that only clients give a meaning to
  TempFolder tempFolder;
  KeptOutputs keptOutputs;
  SessionRecord record;
  DialogHost dialogs;
  VlDispatcher dispatcher;
  XmlUtilities utilities;
  std::vector<kit::TypedValues> replies; // one per request being served
  RunListener *listener = nullptr;
  bool wantsRequests = false;
  int32_t status = V_ERROR_NONE;
  std::unique_ptr<ClientModule> module;
};

} // namespace host

#endif
