// Any bytes as a catalogue: what can be read is written and read again, and is the same.
#include "catalogue/reader.h"
#include "catalogue/serialize_transformations.h"
#include "report/transformation_log.h"
#include "tests/fuzz/client_site.h"
#include "tests/fuzz/fuzzing.h"

#include <string>

namespace {

using catalogue::LoadStatus;
using catalogue::TransformationList;

// A path that is not used is not written.
TransformationList Written(TransformationList list) {
  for (catalogue::Transformation &each : list)
    if (each.usePI)
      each.xslPath.clear();
  return list;
}

void WriteAndReadAgain(const test::Folder &folder, const TransformationList &list) {
  report::ResetLog(false);
  const auto bytes = catalogue::SerializeTransformations(list);
  fuzz::Require(bytes || !report::LogText().empty(), "what cannot be written is reported");
  if (!bytes)
    return;
  const auto again = catalogue::LoadTransformationFile(folder.Write("again.xml", *bytes));
  fuzz::Require(again.list.has_value(), "what was written can be read");
  fuzz::Require(*again.list == Written(list), "what was written is what was read");
  fuzz::Require(catalogue::SerializeTransformations(*again.list) == bytes, "writing is stable");
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  ClientSite &site = ClientSite::Get();
  const std::string path = site.folder.Write("in.xml", input);
  const bool isCatalogue = catalogue::IsTransformationFile(path);
  const auto read = catalogue::LoadTransformationFile(path);
  Require((read.status == LoadStatus::Loaded) == read.list.has_value(), "a status fits its list");
  Require(isCatalogue || !read.list, "only a catalogue is loaded");
  Require(read.status != LoadStatus::NotLoaded || !report::LogText().empty(), "what is wrong is reported");
  if (read.list)
    WriteAndReadAgain(site.folder, *read.list);
  site.EndInput();
}
