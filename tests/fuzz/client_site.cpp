#include "tests/fuzz/client_site.h"

#include "report/transformation_log.h"
#include "tests/fuzz/fuzzing.h"

#include <filesystem>
#include <vector>

namespace fuzz {

namespace fs = std::filesystem;

ClientSite &ClientSite::Get() {
  static ClientSite site;
  return site;
}

ClientSite::ClientSite() {
  host.strings[{V_SESSION, V_SP_INSTALL_DIR}] = folder.Root() + "/";
  host.strings[{V_SESSION, V_SP_TEMP_DIR}] = folder.Root() + "/temp";
  Keep("temp/keep", "");
  Keep("vlinit/XSLT/Transformations.xsd", test::ReadAll(VLXSLT_SCHEMA));
  Require(!folder.Read("vlinit/XSLT/Transformations.xsd").empty(), "the schema is there");
  // Relative paths lead nowhere else.
  fs::current_path(folder.Root());
}

void ClientSite::Keep(std::string_view name, std::string_view content) { kept[folder.Write(name, content)] = content; }

void ClientSite::EndInput() {
  report::ResetLog(false);
  Require(host.LiveBlocks() == 0, "the host's memory is given back");
  host.asked.clear();
  host.console.clear();
  host.runEvents.clear();
  host.consoleAtEvent.clear();
  host.requests.clear();
  host.opened.clear();
  host.launched.clear();
  host.saved.clear();
  host.usage.clear();
  host.error = 0;
  std::vector<fs::path> gone;
  for (const auto &entry : fs::recursive_directory_iterator(folder.Root()))
    if (!entry.is_directory() && !kept.contains(entry.path().string()))
      gone.push_back(entry.path());
  for (const fs::path &path : gone)
    fs::remove(path);
  for (const auto &[path, content] : kept)
    if (test::ReadAll(path) != content)
      folder.Write(fs::relative(path, folder.Root()).string(), content);
}

} // namespace fuzz
