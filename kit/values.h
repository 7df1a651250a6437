// RAII over what crosses between host and client: a host string, a string list, a reply of typed values. In all of kit/
// what fails is empty, zero or nothing; where there is a reason, the object or the result holds it as a text.
// All of it is allocated and freed through the host's table, on the host's thread.
#ifndef KIT_VALUES_H
#define KIT_VALUES_H

#include "kit/handle.h"
#include "kit/vdk.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kit {

// Text that came from the host, or goes to it. Null is "no value" and reads as empty.
class HostString {
public:
  HostString() = default;
  [[nodiscard]] static HostString Adopt(char *owned);
  [[nodiscard]] static HostString Copy(std::string_view text);

  [[nodiscard]] const char *Get() const { return held.Get(); }
  [[nodiscard]] std::string_view View() const;
  [[nodiscard]] std::string Text() const { return std::string(View()); }
  [[nodiscard]] char *Release() { return held.Release(); }

private:
  struct Freer {
    void operator()(char *text) const { V_Free(text); }
  };
  Handle<char, Freer{}> held;
};

// The kit's growable list; may be null, which reads as an empty list.
class StringList {
public:
  StringList() = default;
  [[nodiscard]] static StringList Adopt(V_StrListT *owned);

  // Makes the list when there is none yet.
  void Append(std::string_view text);
  [[nodiscard]] uint32_t Size() const { return V_StrListLen(held.Get()); }
  // Borrowed; empty beyond the end.
  [[nodiscard]] std::string_view At(uint32_t index) const;
  [[nodiscard]] std::vector<std::string> Items() const;
  [[nodiscard]] V_StrListT *Get() const { return held.Get(); }
  [[nodiscard]] V_StrListT *Release() { return held.Release(); }

private:
  struct Freer {
    void operator()(V_StrListT *list) const { V_StrListFree(list); }
  };
  Handle<V_StrListT, Freer{}> held;
};

// A reply: built by the side that answers, read by the side that asked.
class TypedValues {
public:
  TypedValues() = default;
  TypedValues(TypedValues &&other) noexcept : values(other.Release()) {}
  TypedValues &operator=(TypedValues &&other) noexcept;
  TypedValues(const TypedValues &) = delete;
  TypedValues &operator=(const TypedValues &) = delete;
  ~TypedValues() { V_ApiDeallocateTypedVals(&values); }
  [[nodiscard]] static TypedValues Adopt(V_TypedValsT owned);

  void AddInteger(int32_t value);
  void AddString(std::string_view text);
  void AddStrings(const std::vector<std::string> &items);
  void AddValues(TypedValues nested);

  [[nodiscard]] uint32_t Size() const { return values.len; }
  [[nodiscard]] std::optional<int32_t> Integer(uint32_t index) const;
  // Nothing when there is no such value or it is of another kind.
  [[nodiscard]] std::optional<std::string> String(uint32_t index) const;
  [[nodiscard]] std::optional<std::vector<std::string>> Strings(uint32_t index) const;
  // Borrowed; null when there is no such value or it is of another kind.
  [[nodiscard]] const V_TypedValsT *Values(uint32_t index) const;

  [[nodiscard]] const V_TypedValsT &Get() const { return values; }
  [[nodiscard]] V_TypedValsT Release();

private:
  // Null when there is no memory for one more.
  V_TypedValT *Grow(int32_t kind);
  [[nodiscard]] const V_TypedValT *Find(uint32_t index, int32_t kind) const;

  V_TypedValsT values{0, nullptr};
};

// The strings of a list that crosses as an array; copies both ways.
[[nodiscard]] std::vector<std::string> ReadStrings(const V_StringsT &strings);
[[nodiscard]] V_StringsT MakeStrings(const std::vector<std::string> &items);

// Properties as values of the language; a null string reads as empty.
[[nodiscard]] std::string GetString(V_ObjectT object, int32_t property);
[[nodiscard]] std::vector<std::string> GetStrings(V_ObjectT object, int32_t property);
void SetStrings(V_ObjectT object, int32_t property, const std::vector<std::string> &items);
[[nodiscard]] TypedValues CallClient(const std::string &client, const std::string &request);

// "No value" when empty, as the kit wants it.
[[nodiscard]] inline const char *OrNull(const std::string &text) { return text.empty() ? nullptr : text.c_str(); }

} // namespace kit

#endif
