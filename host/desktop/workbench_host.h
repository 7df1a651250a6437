// The session behind a workbench, on its own thread. Everything here is called on the windows' thread and answered
// there later, in the order of the calls; the session is used on the other thread only.
#ifndef HOST_DESKTOP_WORKBENCH_HOST_H
#define HOST_DESKTOP_WORKBENCH_HOST_H

#include "host/desktop/desktop_front.h"
#include "host/desktop/host_thread.h"
#include "host/desktop/ui_thread.h"
#include "host/desktop_module.h"
#include "host/session.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace desktop {

struct OpenDocument {
  host::DocumentSummary summary;
  std::vector<std::string> components;
  bool isMissing = false; // the file does not exist
};

struct RequestOutcome {
  int32_t status = 0;             // V_ERROR_...
  std::string error;              // the request reached no client
  std::vector<std::string> texts; // the strings of the reply's first value, or its only string
  host::SessionRecord record;
};

class WorkbenchHost {
public:
  using DocumentsSink = std::function<void(std::vector<OpenDocument>)>;

  // `showDocuments` gets the open documents after everything that may have changed them.
  WorkbenchHost(const host::WorkbenchRequest &request, RunView &view, DocumentsSink showDocuments);
  // Waits for the request that is being served. No question may be open.
  ~WorkbenchHost();
  // Cancels the request and ends the session; false when that takes longer. Nothing may be called afterwards.
  [[nodiscard]] bool EndWithin(std::chrono::seconds maxTime);
  WorkbenchHost(const WorkbenchHost &) = delete;
  WorkbenchHost &operator=(const WorkbenchHost &) = delete;

  // The last file becomes the active one. `done` gets what could not be opened, one line a file.
  void Open(std::vector<std::string> paths, std::function<void(std::string problems)> done);
  void Activate(V_ObjectT object);
  void Close(V_ObjectT object);
  // Reads the state of the files again.
  void Refresh();
  void Send(std::string request, std::function<void(RequestOutcome)> done);
  void Cancel() { front.Cancel(); }
  // Starts a new session with the same documents, then calls `done`.
  void Reconfigure(host::Configuration next, std::function<void()> done);

private:
  struct Components {
    std::filesystem::file_time_type changed;
    std::vector<std::string> paths;
  };

  void Post(std::function<void()> task);
  // The rest runs on the session's thread.
  void StartSession();
  void EndSession();
  void ActivateOne();
  void TellDocuments();
  [[nodiscard]] OpenDocument Describe(const host::DocumentSummary &summary);

  WindowsPoster windows;
  DesktopFront front;
  DocumentsSink tellDocuments;
  host::Configuration configuration;
  host::Installation installation;
  std::unique_ptr<host::Session> session;
  bool hasEnded = false;
  std::map<std::string, Components> components;
  std::unique_ptr<HostThread> thread; // last: it uses the rest
};

} // namespace desktop

#endif
