#include "kit/values.h"

#include <cstring>

namespace kit {

HostString HostString::Adopt(char *owned) {
  HostString string;
  string.held = Handle<char, Freer{}>::Adopt(owned);
  return string;
}

HostString HostString::Copy(std::string_view text) {
  auto *copy = static_cast<char *>(V_Calloc(text.size() + 1, 1));
  if (copy && !text.empty())
    std::memcpy(copy, text.data(), text.size());
  return Adopt(copy);
}

std::string_view HostString::View() const { return held ? std::string_view(held.Get()) : std::string_view(); }

StringList StringList::Adopt(V_StrListT *owned) {
  StringList list;
  list.held = Handle<V_StrListT, Freer{}>::Adopt(owned);
  return list;
}

void StringList::Append(std::string_view text) {
  if (!held)
    held = Handle<V_StrListT, Freer{}>::Adopt(V_StrListNew());
  V_StrListAppend(held.Get(), std::string(text).c_str());
}

std::string_view StringList::At(uint32_t index) const {
  const char *item = V_StrListGet(held.Get(), index);
  return item ? std::string_view(item) : std::string_view();
}

std::vector<std::string> StringList::Items() const {
  std::vector<std::string> items;
  items.reserve(Size());
  for (uint32_t index = 0; index < Size(); ++index)
    items.emplace_back(At(index));
  return items;
}

TypedValues &TypedValues::operator=(TypedValues &&other) noexcept {
  if (this != &other) {
    V_ApiDeallocateTypedVals(&values);
    values = other.Release();
  }
  return *this;
}

TypedValues TypedValues::Adopt(V_TypedValsT owned) {
  TypedValues adopted;
  adopted.values = owned;
  return adopted;
}

V_TypedValT *TypedValues::Grow(int32_t kind) {
  // Room doubles at powers of two, so the length alone tells when the array is full.
  if ((values.len & (values.len - 1)) == 0) {
    const size_t capacity = values.len == 0 ? 1 : size_t{values.len} * 2;
    auto *wider = static_cast<V_TypedValT *>(V_Calloc(capacity, sizeof(V_TypedValT)));
    if (!wider)
      return nullptr;
    if (values.len != 0)
      std::memcpy(wider, values.val, values.len * sizeof(V_TypedValT));
    V_Free(values.val);
    values.val = wider;
  }
  V_TypedValT *added = &values.val[values.len++];
  added->kind = kind;
  return added;
}

void TypedValues::AddInteger(int32_t value) {
  if (V_TypedValT *added = Grow(V_KIND_INTEGER))
    added->u.integer = value;
}

void TypedValues::AddString(std::string_view text) {
  if (V_TypedValT *added = Grow(V_KIND_STRING))
    added->u.string = HostString::Copy(text).Release();
}

void TypedValues::AddStrings(const std::vector<std::string> &items) {
  if (V_TypedValT *added = Grow(V_KIND_STRINGS))
    added->u.strings = MakeStrings(items);
}

void TypedValues::AddValues(TypedValues nested) {
  if (V_TypedValT *added = Grow(V_KIND_TYPED_VALUES))
    added->u.values = nested.Release();
}

const V_TypedValT *TypedValues::Find(uint32_t index, int32_t kind) const {
  return index < values.len && values.val[index].kind == kind ? &values.val[index] : nullptr;
}

std::optional<int32_t> TypedValues::Integer(uint32_t index) const {
  const V_TypedValT *value = Find(index, V_KIND_INTEGER);
  return value ? std::optional<int32_t>(value->u.integer) : std::nullopt;
}

std::optional<std::string> TypedValues::String(uint32_t index) const {
  const V_TypedValT *value = Find(index, V_KIND_STRING);
  if (!value)
    return std::nullopt;
  return value->u.string ? std::string(value->u.string) : std::string();
}

std::optional<std::vector<std::string>> TypedValues::Strings(uint32_t index) const {
  const V_TypedValT *value = Find(index, V_KIND_STRINGS);
  return value ? std::optional(ReadStrings(value->u.strings)) : std::nullopt;
}

const V_TypedValsT *TypedValues::Values(uint32_t index) const {
  const V_TypedValT *value = Find(index, V_KIND_TYPED_VALUES);
  return value ? &value->u.values : nullptr;
}

V_TypedValsT TypedValues::Release() { return std::exchange(values, V_TypedValsT{0, nullptr}); }

std::vector<std::string> ReadStrings(const V_StringsT &strings) {
  std::vector<std::string> items;
  items.reserve(strings.len);
  for (uint32_t index = 0; index < strings.len; ++index)
    items.emplace_back(strings.val[index] ? strings.val[index] : "");
  return items;
}

V_StringsT MakeStrings(const std::vector<std::string> &items) {
  V_StringsT strings{0, nullptr};
  if (items.empty())
    return strings;
  strings.val = static_cast<char **>(V_Calloc(items.size(), sizeof(char *)));
  if (!strings.val)
    return strings;
  for (const std::string &item : items)
    strings.val[strings.len++] = HostString::Copy(item).Release();
  return strings;
}

std::string GetString(V_ObjectT object, int32_t property) {
  return HostString::Adopt(V_ApiGetString(object, property)).Text();
}

std::vector<std::string> GetStrings(V_ObjectT object, int32_t property) {
  V_StringsT strings = V_ApiGetStrings(object, property);
  std::vector<std::string> items = ReadStrings(strings);
  V_FreeStrings(&strings);
  return items;
}

void SetStrings(V_ObjectT object, int32_t property, const std::vector<std::string> &items) {
  V_StringsT strings = MakeStrings(items);
  V_ApiSetStrings(object, property, &strings);
  V_FreeStrings(&strings);
}

TypedValues CallClient(const std::string &client, const std::string &request) {
  return TypedValues::Adopt(V_ApiCallClientEx(client.c_str(), request.c_str()));
}

} // namespace kit
