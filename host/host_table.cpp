#include "host/host_table.h"

#include "host/guard.h"
#include "host/session.h"

#include <cstdlib>
#include <utility>

struct V_WalkT {
  host::ComponentList components;
  size_t next = 0;
};

namespace host {

namespace {

Session &At(void *host) { return *static_cast<Session *>(host); }
std::string Text(const char *text) { return text ? text : ""; }

char *Give(const std::optional<std::string> &text) { return text ? kit::HostString::Copy(*text).Release() : nullptr; }

void *Allocate(void *, size_t count, size_t size) noexcept { return std::calloc(count, size); }
void Release(void *, void *block) noexcept { std::free(block); }

int32_t GetError(void *host) noexcept { return At(host).Error(); }
void SetError(void *host, int32_t error) noexcept { At(host).SetError(error); }
// Text crosses as UTF-8 whatever a client asks for.
void SetEncoding(void *, const char *) noexcept {}
void RequestNotification(void *host, int32_t notification, int32_t on) noexcept {
  Guarded([&] { At(host).RequestNotification(notification, on != 0); });
}

int32_t GetInt(void *host, V_ObjectT object, int32_t property) noexcept {
  return Guarded([&] { return At(host).GetInt(object, property); });
}
void SetInt(void *host, V_ObjectT object, int32_t property, int32_t value) noexcept {
  Guarded([&] { At(host).SetInt(object, property, value); });
}
char *GetString(void *host, V_ObjectT object, int32_t property) noexcept {
  return Guarded([&] { return Give(At(host).GetString(object, property)); });
}
void SetString(void *host, V_ObjectT object, int32_t property, const char *value) noexcept {
  Guarded([&] { At(host).SetString(object, property, Text(value)); });
}
V_ObjectT GetObject(void *host, V_ObjectT object, int32_t property) noexcept {
  return Guarded([&] { return At(host).GetObject(object, property); });
}
V_StringsT GetStrings(void *host, V_ObjectT object, int32_t property) noexcept {
  return Guarded([&] { return kit::MakeStrings(At(host).GetStrings(object, property)); });
}
V_TypedValsT GetTypedVals(void *host, V_ObjectT object, int32_t property) noexcept {
  return Guarded([&] { return At(host).GetTypedVals(object, property).Release(); });
}

V_TypedValsT CallClient(void *host, const char *client, const char *request) noexcept {
  return Guarded([&] {
    std::string error;
    return At(host).CallClient(Text(client), Text(request), error).Release();
  });
}
void ReturnTypedVals(void *host, V_TypedValsT reply) noexcept {
  Guarded([&] { At(host).TakeReply(kit::TypedValues::Adopt(reply)); });
}

int32_t Alert(void *host, const char *text, int32_t kind) noexcept {
  return Guarded([&] { return At(host).Ask(static_cast<AlertKind>(kind), Text(text)); });
}
char *ChooseFile(void *host, int32_t kind, const char *title, const char *filter, const char *startFolder) noexcept {
  return Guarded([&] {
    return Give(At(host).Choose({static_cast<ChooserKind>(kind), Text(title), Text(filter), Text(startFolder)}));
  });
}
void WriteConsole(void *host, const char *text) noexcept {
  Guarded([&] { At(host).WriteConsole(Text(text)); });
}
int32_t IsCancelled(void *host) noexcept {
  return Guarded([&] { return At(host).TheFront().IsCancelled() ? 1 : 0; });
}
void ReportProgress(void *host, int32_t index, int32_t count, const char *path) noexcept {
  Guarded([&] { At(host).TheFront().ReportProgress({index, count, Text(path)}); });
}
// Nobody counts here how often something is used.
void ReportUsage(void *, const char *, const char *, const char *) noexcept {}
V_ObjectT OpenDocument(void *host, const char *path, const char *asName) noexcept {
  return Guarded([&] { return At(host).OpenOutput(Text(path), Text(asName)); });
}
int32_t Launch(void *host, const char *path) noexcept {
  return Guarded([&] { return At(host).Launch(Text(path)); });
}

V_WalkT *StartWalk(void *host, V_ObjectT object, int32_t options) noexcept {
  return Guarded([&]() -> V_WalkT * {
    std::optional<ComponentList> components = At(host).Walk(object, options);
    return components ? new V_WalkT{std::move(*components), 0} : nullptr;
  });
}
int32_t NextComponent(void *, V_WalkT *walk, char **path) noexcept {
  return Guarded([&] {
    if (!walk || !path || walk->next >= walk->components.paths.size())
      return 0;
    *path = Give(walk->components.paths[walk->next++]);
    return 1;
  });
}
void EndWalk(void *, V_WalkT *walk) noexcept { delete walk; }

} // namespace

V_HostT MakeHostTable(Session &session) {
  V_HostT table{};
  table.size = sizeof(table);
  table.host = &session;
  table.allocate = Allocate;
  table.release = Release;
  table.getError = GetError;
  table.setError = SetError;
  table.setEncoding = SetEncoding;
  table.requestNotification = RequestNotification;
  table.getInt = GetInt;
  table.setInt = SetInt;
  table.getString = GetString;
  table.setString = SetString;
  table.getObject = GetObject;
  table.getStrings = GetStrings;
  table.getTypedVals = GetTypedVals;
  table.callClient = CallClient;
  table.returnTypedVals = ReturnTypedVals;
  table.alert = Alert;
  table.chooseFile = ChooseFile;
  table.writeConsole = WriteConsole;
  table.isCancelled = IsCancelled;
  table.reportProgress = ReportProgress;
  table.reportUsage = ReportUsage;
  table.openDocument = OpenDocument;
  table.launch = Launch;
  table.startWalk = StartWalk;
  table.nextComponent = NextComponent;
  table.endWalk = EndWalk;
  return table;
}

} // namespace host
