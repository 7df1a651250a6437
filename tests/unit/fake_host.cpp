#include "tests/unit/fake_host.h"

#include <cstdlib>

struct V_WalkT {
  std::vector<std::string> rest;
};

struct FakeHostCalls {
  static FakeHost &Of(void *host) { return *static_cast<FakeHost *>(host); }

  template <class Map> static auto Find(const Map &map, V_ObjectT object, int32_t property) {
    const auto found = map.find({object, property});
    return found == map.end() ? typename Map::mapped_type{} : found->second;
  }
  static char *Give(const std::string &text) { return kit::HostString::Copy(text).Release(); }

  static void *Allocate(void *host, size_t count, size_t size) {
    if (Of(host).Fails())
      return nullptr;
    void *block = std::calloc(count ? count : 1, size ? size : 1);
    Of(host).blocks.insert(block);
    return block;
  }
  static void Release(void *host, void *block) {
    // Freeing what this host never gave is a fault of the code under test.
    if (Of(host).blocks.erase(block) == 0)
      std::abort();
    std::free(block);
  }
  static int32_t GetInt(void *host, V_ObjectT object, int32_t property) {
    return Of(host).Fails() ? 0 : Find(Of(host).ints, object, property);
  }
  static void SetInt(void *host, V_ObjectT object, int32_t property, int32_t value) {
    Of(host).ints[{object, property}] = value;
  }
  static char *GetString(void *host, V_ObjectT object, int32_t property) {
    const auto found = Of(host).strings.find({object, property});
    return Of(host).Fails() || found == Of(host).strings.end() ? nullptr : Give(found->second);
  }
  static V_ObjectT GetObject(void *host, V_ObjectT object, int32_t property) {
    return Of(host).Fails() ? 0 : Find(Of(host).objects, object, property);
  }
  static V_StringsT GetStrings(void *host, V_ObjectT object, int32_t property) {
    return Of(host).Fails() ? V_StringsT{} : kit::MakeStrings(Find(Of(host).lists, object, property));
  }
  static V_TypedValsT GetTypedVals(void *host, V_ObjectT object, int32_t property) {
    kit::TypedValues values;
    if (!Of(host).Fails())
      for (const auto &row : Find(Of(host).stringTables, object, property))
        values.AddStrings(row);
    return values.Release();
  }
  static V_TypedValsT CallClient(void *host, const char *client, const char *request) {
    Of(host).requests.emplace_back(client, request);
    const auto found = Of(host).clients.find(client);
    if (Of(host).Fails() || found == Of(host).clients.end())
      return {};
    return found->second(request).Release();
  }
  static void ReturnTypedVals(void *host, V_TypedValsT values) { Of(host).reply = kit::TypedValues::Adopt(values); }
  static int32_t Alert(void *host, const char *text, int32_t kind) {
    Of(host).asked.push_back({kind, text});
    if (Of(host).whenAsked)
      Of(host).whenAsked();
    if (Of(host).Fails() || Of(host).answers.empty())
      return Of(host).failed ? V_ANSWER_DECLINE : V_ANSWER_PROCEED;
    const int32_t answer = Of(host).answers.front();
    Of(host).answers.pop_front();
    return answer;
  }
  static char *ChooseFile(void *host, int32_t kind, const char *title, const char *filter, const char *) {
    Of(host).asked.push_back({kind, std::string(title) + "\n" + (filter ? filter : "")});
    if (Of(host).Fails() || Of(host).choices.empty())
      return nullptr;
    const std::string chosen = Of(host).choices.front();
    Of(host).choices.pop_front();
    return chosen.empty() ? nullptr : Give(chosen);
  }
  static void WriteConsole(void *host, const char *text) { Of(host).console.emplace_back(text); }
  static void TakeRunEvent(void *host, const V_RunEventT *event) {
    Of(host).consoleAtEvent.push_back(Of(host).console.size());
    Of(host).runEvents.push_back(Describe(*event));
  }
  static std::string Describe(const V_RunEventT &event) {
    const auto text = [](const char *given) { return std::string(given ? given : "-"); };
    const std::string job = std::to_string(event.job);
    switch (event.kind) {
    case V_RUN_BEGINS:
      return "run of " + std::to_string(event.count);
    case V_JOB_BEGINS:
      return "job " + job + ": " + text(event.path) + " with " + text(event.stylesheet) + " by " +
             text(event.processor) + " to " + text(event.output);
    case V_RUN_DIAGNOSTIC:
      return "diagnostic of " + job + ": severity " + std::to_string(event.severity) + " at " + text(event.path) + " " +
             std::to_string(event.line) + ":" + std::to_string(event.column) + " [" + text(event.code) + "] " +
             text(event.text);
    case V_RUN_MESSAGE:
      return "message of " + job + ": " + text(event.text);
    case V_RUN_FILE_READ:
      return "read for " + job + ": " + text(event.path);
    case V_RUN_OUTPUT:
      return "output of " + job + ": " + text(event.path) + " kind " + std::to_string(event.outputKind);
    case V_JOB_ENDS:
      return "job " + job + " ends: " + std::to_string(event.status);
    case V_RUN_ENDS:
      return "run ends";
    default:
      return "unknown";
    }
  }
  static int32_t IsCancelled(void *host) { return Of(host).isCancelled && Of(host).isCancelled() ? 1 : 0; }
  static void ReportUsage(void *host, const char *, const char *, const char *what) {
    Of(host).usage.emplace_back(what);
  }
  static V_ObjectT OpenDocument(void *host, const char *path, const char *) {
    if (Of(host).Fails() || !Of(host).opensDocuments)
      return 0;
    Of(host).opened.emplace_back(path);
    return 99;
  }
  static int32_t Launch(void *host, const char *path) {
    Of(host).launched.emplace_back(path);
    return 1;
  }
  static V_WalkT *StartWalk(void *host, V_ObjectT object, int32_t) {
    const auto found = Of(host).components.find(object);
    return Of(host).Fails() || found == Of(host).components.end() ? nullptr : new V_WalkT{found->second};
  }
  static int32_t NextComponent(void *, V_WalkT *walk, char **path) {
    if (walk->rest.empty())
      return 0;
    *path = walk->rest.front().empty() ? nullptr : Give(walk->rest.front());
    walk->rest.erase(walk->rest.begin());
    return 1;
  }
  static void EndWalk(void *, V_WalkT *walk) { delete walk; }
  static int32_t IsNetFile(void *host, const char *path) { return Of(host).netFiles.contains(path) ? 1 : 0; }
  static char *QueryCache(void *host, const char *url) {
    const auto found = Of(host).netCache.find(url);
    return found == Of(host).netCache.end() ? nullptr : Give(found->second);
  }
  static int32_t Save(void *host, const char *url) {
    Of(host).saved.emplace_back(url);
    return Of(host).saveResult;
  }
};

FakeHost::FakeHost() {
  using Calls = FakeHostCalls;
  table.size = sizeof(table);
  table.host = this;
  table.allocate = Calls::Allocate;
  table.release = Calls::Release;
  table.getError = [](void *host) { return Calls::Of(host).error; };
  table.setError = [](void *host, int32_t value) { Calls::Of(host).error = value; };
  table.getInt = Calls::GetInt;
  table.setInt = Calls::SetInt;
  table.getString = Calls::GetString;
  table.getObject = Calls::GetObject;
  table.getStrings = Calls::GetStrings;
  table.getTypedVals = Calls::GetTypedVals;
  table.callClient = Calls::CallClient;
  table.returnTypedVals = Calls::ReturnTypedVals;
  table.alert = Calls::Alert;
  table.chooseFile = Calls::ChooseFile;
  table.writeConsole = Calls::WriteConsole;
  table.isCancelled = Calls::IsCancelled;
  table.reportUsage = Calls::ReportUsage;
  table.reportRunEvent = Calls::TakeRunEvent;
  table.openDocument = Calls::OpenDocument;
  table.launch = Calls::Launch;
  table.startWalk = Calls::StartWalk;
  table.nextComponent = Calls::NextComponent;
  table.endWalk = Calls::EndWalk;
  table.netIsNetFile = Calls::IsNetFile;
  table.netQueryCacheForUrl = Calls::QueryCache;
  table.netSave = Calls::Save;
  V_AttachHost(&table);
}

// What is ours goes back while the table still works.
FakeHost::~FakeHost() { reply = {}; }

bool FakeHost::Fails() {
  if (callsToFailure == 0 || --callsToFailure > 0)
    return false;
  failed = true;
  return true;
}
