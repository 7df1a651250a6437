#include "tests/unit/fake_bridge.h"

#include "bridge/processor_bridge.h"
#include "tests/unit/folder.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace {

std::string OrEmpty(const char *text) { return text ? text : ""; }

} // namespace

FakeBridge &FakeBridge::Get() {
  static FakeBridge bridge;
  return bridge;
}

namespace bridge {

void SetClassPath(const char *classPath) { FakeBridge::Get().classPath = OrEmpty(classPath); }

int32_t SetTransformer(const char *tClass) { return FakeBridge::Get().classes.contains(OrEmpty(tClass)) ? 1 : 0; }

int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                         const V_StrListT *stylesheetParams) {
  FakeBridge::Call call{OrEmpty(xmlFilePath), OrEmpty(xslFilePath), OrEmpty(outputFilePath), {}};
  for (uint32_t index = 0; index < V_StrListLen(stylesheetParams); ++index)
    call.parameters.emplace_back(V_StrListGet(stylesheetParams, index));
  FakeBridge::Get().calls.push_back(call);
  if (FakeBridge::Get().failing.contains(call.input))
    return 0;
  std::ofstream(call.output, std::ios::binary) << test::ReadAll(call.xsl) << test::ReadAll(call.input);
  return 1;
}

kit::StringList GetAllFilesInFolder(const char *folder, int32_t includeSubFolders) {
  FakeBridge::Get().listings.emplace_back(folder, includeSubFolders != 0);
  std::vector<std::string> files;
  for (const auto &entry : std::filesystem::directory_iterator(folder))
    if (entry.is_regular_file())
      files.push_back(entry.path().string());
  std::ranges::sort(files);
  return kit::StringList::Of(files);
}

int32_t IsEmptyFile(const char *file) {
  std::error_code error;
  return std::filesystem::file_size(OrEmpty(file), error) == 0 && !error ? 1 : 0;
}

ProcessorProbe ProbeProcessor(const char *) { return {}; }
void ShutDownBridge() {}

} // namespace bridge
