// The runtime behind vdk.h: every call is forwarded to the host's table, if the table holds it.
#include "kit/vdk.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

struct V_StrListT {
  uint32_t len;
  uint32_t capacity;
  char **items;
};

namespace {

const V_HostT *attached = nullptr;
std::string productName;

// Calls the table's function `Member`, or answers with a zero value when this host has none.
template <auto Member, class... Arguments> auto Forward(Arguments... arguments) {
  using Function = std::remove_cvref_t<decltype(std::declval<V_HostT>().*Member)>;
  using Result = std::invoke_result_t<Function, void *, Arguments...>;
  const V_HostT sample{};
  const auto end = reinterpret_cast<const char *>(&(sample.*Member) + 1) - reinterpret_cast<const char *>(&sample);
  const bool present = attached && static_cast<size_t>(end) <= attached->size && attached->*Member;
  if constexpr (std::is_void_v<Result>) {
    if (present)
      (attached->*Member)(attached->host, arguments...);
  } else {
    return present ? (attached->*Member)(attached->host, arguments...) : Result{};
  }
}

void FreeTypedVal(V_TypedValT &value) {
  switch (value.kind) {
  case V_KIND_STRING:
    V_Free(value.u.string);
    break;
  case V_KIND_STRINGS:
    V_FreeStrings(&value.u.strings);
    break;
  case V_KIND_TYPED_VALUES:
    V_ApiDeallocateTypedVals(&value.u.values);
    break;
  default:
    break;
  }
}

int32_t GrowList(V_StrListT *list) {
  const uint32_t capacity = std::max<uint32_t>(8, list->capacity * 2);
  auto **wider = static_cast<char **>(V_Calloc(capacity, sizeof(char *)));
  if (!wider)
    return 0;
  if (list->len != 0)
    std::memcpy(wider, list->items, list->len * sizeof(char *));
  V_Free(list->items);
  list->items = wider;
  list->capacity = capacity;
  return 1;
}

} // namespace

int32_t V_AttachHost(const V_HostT *host) {
  const size_t needed = offsetof(V_HostT, release) + sizeof(host->release);
  if (!host || host->size < needed || !host->allocate || !host->release)
    return 0;
  attached = host;
  return 1;
}

void V_DetachHost(const V_HostT *host) {
  if (!host || attached == host)
    attached = nullptr;
}

void V_SetProductName(const char *name) { productName = name ? name : ""; }
const char *V_ProductName() { return productName.c_str(); }

void *V_Calloc(size_t count, size_t size) { return Forward<&V_HostT::allocate>(count, size); }

void V_Free(void *block) {
  if (block)
    Forward<&V_HostT::release>(block);
}

char *V_StrCopyString(const char *text) {
  if (!text)
    return nullptr;
  const size_t size = std::strlen(text) + 1;
  auto *copy = static_cast<char *>(V_Calloc(size, 1));
  if (copy)
    std::memcpy(copy, text, size);
  return copy;
}

V_StrListT *V_StrListNew() { return static_cast<V_StrListT *>(V_Calloc(1, sizeof(V_StrListT))); }

int32_t V_StrListAppend(V_StrListT *list, const char *text) {
  if (!list || (list->len == list->capacity && !GrowList(list)))
    return 0;
  char *copy = V_StrCopyString(text ? text : "");
  if (!copy)
    return 0;
  list->items[list->len++] = copy;
  return 1;
}

const char *V_StrListGet(const V_StrListT *list, uint32_t index) {
  return list && index < list->len ? list->items[index] : nullptr;
}

uint32_t V_StrListLen(const V_StrListT *list) { return list ? list->len : 0; }

void V_StrListFree(V_StrListT *list) {
  if (!list)
    return;
  for (uint32_t index = 0; index < list->len; ++index)
    V_Free(list->items[index]);
  V_Free(list->items);
  V_Free(list);
}

void V_FreeStrings(V_StringsT *strings) {
  if (!strings)
    return;
  for (uint32_t index = 0; index < strings->len; ++index)
    V_Free(strings->val[index]);
  V_Free(strings->val);
  *strings = V_StringsT{0, nullptr};
}

void V_ApiDeallocateTypedVals(V_TypedValsT *values) {
  if (!values)
    return;
  for (uint32_t index = 0; index < values->len; ++index)
    FreeTypedVal(values->val[index]);
  V_Free(values->val);
  *values = V_TypedValsT{0, nullptr};
}

int32_t V_ApiGetError() { return Forward<&V_HostT::getError>(); }
void V_ApiSetError(int32_t error) { Forward<&V_HostT::setError>(error); }
void V_ApiSetEncoding(const char *encoding) { Forward<&V_HostT::setEncoding>(encoding); }
void V_ApiRequestNotification(int32_t notification, int32_t on) {
  Forward<&V_HostT::requestNotification>(notification, on);
}

int32_t V_ApiGetInt(V_ObjectT object, int32_t property) { return Forward<&V_HostT::getInt>(object, property); }
void V_ApiSetInt(V_ObjectT object, int32_t property, int32_t value) {
  Forward<&V_HostT::setInt>(object, property, value);
}
char *V_ApiGetString(V_ObjectT object, int32_t property) { return Forward<&V_HostT::getString>(object, property); }
void V_ApiSetString(V_ObjectT object, int32_t property, const char *value) {
  Forward<&V_HostT::setString>(object, property, value);
}
V_ObjectT V_ApiGetObject(V_ObjectT object, int32_t property) { return Forward<&V_HostT::getObject>(object, property); }
V_StringsT V_ApiGetStrings(V_ObjectT object, int32_t property) {
  return Forward<&V_HostT::getStrings>(object, property);
}
void V_ApiSetStrings(V_ObjectT object, int32_t property, const V_StringsT *value) {
  Forward<&V_HostT::setStrings>(object, property, value);
}
V_TypedValsT V_ApiGetTypedVals(V_ObjectT object, int32_t property) {
  return Forward<&V_HostT::getTypedVals>(object, property);
}

void V_ApiCallClient(const char *client, const char *request) {
  V_TypedValsT reply = V_ApiCallClientEx(client, request);
  V_ApiDeallocateTypedVals(&reply);
}
V_TypedValsT V_ApiCallClientEx(const char *client, const char *request) {
  return Forward<&V_HostT::callClient>(client, request);
}
void V_ApiReturnTypedVals(V_TypedValsT reply) { Forward<&V_HostT::returnTypedVals>(reply); }

int32_t V_ApiAlert(const char *text, int32_t kind) { return Forward<&V_HostT::alert>(text, kind); }
char *V_ApiChooseFile(int32_t kind, const char *title, const char *filter, const char *startFolder) {
  return Forward<&V_HostT::chooseFile>(kind, title, filter, startFolder);
}
void V_ApiWriteConsole(const char *text) { Forward<&V_HostT::writeConsole>(text); }
int32_t V_ApiIsCancelled() { return Forward<&V_HostT::isCancelled>(); }
void V_ApiReportRunEvent(V_RunEventT event) {
  event.size = sizeof(event);
  Forward<&V_HostT::reportRunEvent>(&event);
}
void V_ApiReportProgress(int32_t index, int32_t count, const char *path) {
  Forward<&V_HostT::reportProgress>(index, count, path);
}
void V_ApiReportUsage(const char *group, const char *client, const char *what) {
  Forward<&V_HostT::reportUsage>(group, client, what);
}
V_ObjectT V_ApiOpenDocument(const char *path, const char *asName) {
  return Forward<&V_HostT::openDocument>(path, asName);
}
int32_t V_ApiLaunch(const char *path) { return Forward<&V_HostT::launch>(path); }

V_WalkT *V_ApiStartWalk(V_ObjectT object, int32_t options) { return Forward<&V_HostT::startWalk>(object, options); }
int32_t V_ApiNextComponent(V_WalkT *walk, char **path) { return Forward<&V_HostT::nextComponent>(walk, path); }
void V_ApiEndWalk(V_WalkT *walk) { Forward<&V_HostT::endWalk>(walk); }

V_ObjectT V_ApiOpenDialog(const char *name) { return Forward<&V_HostT::openDialog>(name); }
V_ObjectT V_ApiDialogItem(V_ObjectT dialog, int32_t item) { return Forward<&V_HostT::dialogItem>(dialog, item); }
void V_ApiRunDialog(int32_t number, V_ObjectT dialog) { Forward<&V_HostT::runDialog>(number, dialog); }
void V_ApiKeepDialogUp(V_ObjectT dialog) { Forward<&V_HostT::keepDialogUp>(dialog); }

V_ObjectT V_ApiMakeGrid(V_ObjectT dialog, int32_t item, int32_t frameItem, const char *header,
                        const char *noValueText) {
  return Forward<&V_HostT::makeGrid>(dialog, item, frameItem, header, noValueText);
}
int32_t V_ApiGridAddRow(V_ObjectT grid, const V_StringsT *titles, const V_StringsT *values) {
  return Forward<&V_HostT::gridAddRow>(grid, titles, values, 1);
}
int32_t V_ApiGridRowCount(V_ObjectT grid) { return Forward<&V_HostT::gridRowCount>(grid); }
int32_t V_ApiGridCellCount(V_ObjectT grid, int32_t row) { return Forward<&V_HostT::gridCellCount>(grid, row); }
char *V_ApiGridCell(V_ObjectT grid, int32_t row, int32_t cell) { return Forward<&V_HostT::gridCell>(grid, row, cell); }
int32_t V_ApiGridSelection(V_ObjectT grid, int32_t *cell) { return Forward<&V_HostT::gridSelection>(grid, cell); }
void V_ApiGridSelect(V_ObjectT grid, int32_t row, int32_t cell) { Forward<&V_HostT::gridSelect>(grid, row, cell); }
void V_ApiGridDeleteRow(V_ObjectT grid, int32_t row) { Forward<&V_HostT::gridDeleteRow>(grid, row); }

int32_t NetLibIsNetFile(const char *path) { return Forward<&V_HostT::netIsNetFile>(path); }
char *NetLibQueryCacheForURL(const char *url) { return Forward<&V_HostT::netQueryCacheForUrl>(url); }
int32_t NetLibSave(const char *url) { return Forward<&V_HostT::netSave>(url); }
