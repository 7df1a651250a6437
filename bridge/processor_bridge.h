// The calls through which the rest of the client drives a Java XSLT processor. Strings are borrowed UTF-8 and may be
// null. All calls come from the host's thread and block; while TransformXMLFile runs, the processor's messages and
// entity requests are served on that same thread. Nothing throws; failures are the results below.
#ifndef BRIDGE_PROCESSOR_BRIDGE_H
#define BRIDGE_PROCESSOR_BRIDGE_H

#include "kit/values.h"

#include <cstdint>
#include <string>
#include <vector>

namespace bridge {

// The class path of all processors, entries separated by ";". Kept until Java starts; costs nothing by itself. Java
// that has started is given what is new.
void SetClassPath(const char *classPath);

// Selects a processor by its TransformerFactory class; starts Java when it does not run yet. 1 or 0; why it failed
// stands in the log.
[[nodiscard]] int32_t SetTransformer(const char *tClass);

// Runs one transformation to its end. 1 when the processor returned success, else 0. An empty stylesheet path means
// the one that the input names in its processing instruction. The output is written whole or not at all.
// `stylesheetParams` holds name and expression alternately; it may be null.
[[nodiscard]] int32_t TransformXMLFile(const char *xmlFilePath, const char *xslFilePath, const char *outputFilePath,
                                       const V_StrListT *stylesheetParams);

// Full paths; with sub-folders, their files come before the folder's own. A failure is reported as a message and ends
// the listing with what was found before it.
[[nodiscard]] kit::StringList GetAllFilesInFolder(const char *folder, int32_t includeSubFolders);
// 1 only when the file exists and its length is 0.
[[nodiscard]] int32_t IsEmptyFile(const char *file);

// UTF-8 and UTF-16, both NUL-terminated, malformed parts replaced by U+FFFD. Freed with V_Free; null for null.
[[nodiscard]] char16_t *UTF8ToUTF16(const char *strUTF8);
[[nodiscard]] char *UTF16ToUTF8(const char16_t *strUTF16);

// What one configured processor turns out to be. Starts Java; `error` is empty when it loads.
struct ProcessorProbe {
  std::string implementation; // the factory's class
  std::string version;
  std::string location; // the jar or folder it came from
  std::string error;
};
[[nodiscard]] ProcessorProbe ProbeProcessor(const char *tClass);

// Ends Java, if it runs. The bridge cannot be used for transformations afterwards.
void ShutDownBridge();

} // namespace bridge

#endif
