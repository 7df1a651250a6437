// Several files as maps, books and topics that refer to each other; the walk begins at the first. See SplitFiles.
#include "host/documents/component_walk.h"
#include "kit/paths.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/unit/folder.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>

namespace {

using fuzz::Require;
using host::ComponentList;
using host::ComponentSource;

// A book names its components by addresses too, and there is no choice about them.
void CheckList(const ComponentList &list, const std::string &start, bool mayBeExternal, size_t inputSize) {
  std::set<std::string> seen = {kit::RealPath(start)};
  for (const std::string &path : list.paths) {
    Require(!path.empty(), "a component has a path");
    Require(seen.insert(kit::RealPath(path)).second, "each file comes once");
    Require(mayBeExternal || kit::IsAbsolutePath(path), "paths are absolute");
  }
  Require(list.paths.size() <= inputSize, "there are no more components than references");
}

} // namespace

void fuzz::RunInput(std::string_view input) {
  static const test::Folder folder;
  const std::vector<NamedFile> files = SplitFiles(input);
  if (files.empty() || files.size() > 20)
    return;
  for (const NamedFile &file : files)
    folder.Write(file.name, file.content);
  const std::string start = folder.Path(files.front().name);
  (void)host::RecogniseComponentSource(start);
  for (const ComponentSource source : {ComponentSource::None, ComponentSource::Book, ComponentSource::DitaMap}) {
    const ComponentList all = host::ListComponents(start, source, {true, true});
    CheckList(all, start, true, input.size());
    const ComponentList local = host::ListComponents(start, source, {});
    CheckList(local, start, source == ComponentSource::Book, input.size());
    Require(local.paths.size() <= all.paths.size(), "a narrower choice finds no more");
    Require(source != ComponentSource::None || all.paths.empty(), "what is no map has no components");
    const ComponentList again = host::ListComponents(start, source, {});
    Require(again.paths == local.paths && again.problems == local.problems, "a second walk is like the first");
  }
  for (const NamedFile &file : files)
    std::filesystem::remove(folder.Path(file.name));
}
