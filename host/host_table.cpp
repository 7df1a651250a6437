#include "host/host_table.h"

#include "host/fronts/cancellation.h"
#include "host/guard.h"
#include "host/host_services.h"

#include <cstdlib>
#include <utility>

struct V_WalkT {
  host::ComponentList components;
  size_t next = 0;
};

namespace host {

namespace {

HostServices &At(void *host) { return *static_cast<HostServices *>(host); }
std::string Text(const char *text) { return text ? text : ""; }

char *Give(const std::optional<std::string> &text) { return text ? kit::HostString::Copy(*text).Release() : nullptr; }

void *Allocate(void *, size_t count, size_t size) noexcept { return std::calloc(count, size); }
void Release(void *, void *block) noexcept { std::free(block); }

int32_t GetError(void *host) noexcept { return At(host).GetError(); }
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
void SetStrings(void *host, V_ObjectT object, int32_t property, const V_StringsT *value) noexcept {
  Guarded(
      [&] { At(host).SetStrings(object, property, value ? kit::ReadStrings(*value) : std::vector<std::string>()); });
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
  return Guarded([&] {
    return !At(host).TheFront().IsCancelled() ? 0 : IsTerminationOverdue() ? V_CANCEL_AT_ONCE : V_CANCEL_AFTER_JOB;
  });
}
void ReportProgress(void *host, int32_t index, int32_t count, const char *path) noexcept {
  Guarded([&] { At(host).TheFront().ReportProgress({index, count, Text(path)}); });
}
void TakeRunEvent(void *host, const V_RunEventT *event) noexcept {
  Guarded([&] {
    if (event)
      At(host).ReportRunEvent(ReadRunEvent(*event));
  });
}
// This host does not count what is used.
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

V_ObjectT OpenDialog(void *host, const char *name) noexcept {
  return Guarded([&] { return At(host).OpenDialog(Text(name)); });
}
V_ObjectT DialogItemOf(void *host, V_ObjectT dialog, int32_t item) noexcept {
  return Guarded([&] { return At(host).Dialogs().Item(dialog, item); });
}
void RunDialog(void *host, int32_t number, V_ObjectT dialog) noexcept {
  Guarded([&] { At(host).RunDialog(number, dialog); });
}
void KeepDialogUp(void *host, V_ObjectT dialog) noexcept {
  Guarded([&] { At(host).Dialogs().KeepUp(dialog); });
}

V_ObjectT MakeGrid(void *host, V_ObjectT dialog, int32_t item, int32_t frameItem, const char *header,
                   const char *noValueText) noexcept {
  return Guarded(
      [&] { return At(host).Dialogs().MakeGrid(dialog, item, frameItem, GridModel(Text(header), Text(noValueText))); });
}
// What `body` makes of the grid, or `otherwise` when there is no such grid.
template <class Result, class Body> Result WithGrid(void *host, V_ObjectT grid, Result otherwise, Body body) noexcept {
  return Guarded([&] {
    GridModel *model = At(host).Dialogs().FindGrid(grid);
    return model ? body(*model) : otherwise;
  });
}
int32_t GridAddRow(void *host, V_ObjectT grid, const V_StringsT *titles, const V_StringsT *values, int32_t) noexcept {
  return WithGrid(host, grid, -1, [&](GridModel &model) {
    return titles && values ? model.AddRow({kit::ReadStrings(*titles), kit::ReadStrings(*values)}) : -1;
  });
}
int32_t GridRowCount(void *host, V_ObjectT grid) noexcept {
  return WithGrid(host, grid, 0, [](const GridModel &model) { return static_cast<int32_t>(model.Rows().size()); });
}
int32_t GridCellCount(void *host, V_ObjectT grid, int32_t row) noexcept {
  return WithGrid(host, grid, 0, [&](const GridModel &model) { return model.CellCount(row); });
}
char *GridCell(void *host, V_ObjectT grid, int32_t row, int32_t cell) noexcept {
  return WithGrid<char *>(host, grid, nullptr, [&](const GridModel &model) { return Give(model.Shown(row, cell)); });
}
int32_t GridSelectionOf(void *host, V_ObjectT grid, int32_t *cell) noexcept {
  const GridSelection selection =
      WithGrid(host, grid, GridSelection(), [](const GridModel &model) { return model.Selection(); });
  if (cell)
    *cell = selection.cell;
  return selection.row;
}
void GridSelect(void *host, V_ObjectT grid, int32_t row, int32_t cell) noexcept {
  WithGrid(host, grid, 0, [&](GridModel &model) { return model.Select({row, cell}), 0; });
}
void GridDeleteRow(void *host, V_ObjectT grid, int32_t row) noexcept {
  WithGrid(host, grid, 0, [&](GridModel &model) { return model.DeleteRow(row), 0; });
}

} // namespace

V_HostT MakeHostTable(HostServices &services) {
  V_HostT table{};
  table.size = sizeof(table);
  table.host = &services;
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
  table.setStrings = SetStrings;
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
  table.openDialog = OpenDialog;
  table.dialogItem = DialogItemOf;
  table.runDialog = RunDialog;
  table.keepDialogUp = KeepDialogUp;
  table.makeGrid = MakeGrid;
  table.gridAddRow = GridAddRow;
  table.gridRowCount = GridRowCount;
  table.gridCellCount = GridCellCount;
  table.gridCell = GridCell;
  table.gridSelection = GridSelectionOf;
  table.gridSelect = GridSelect;
  table.gridDeleteRow = GridDeleteRow;
  table.reportRunEvent = TakeRunEvent;
  return table;
}

} // namespace host
