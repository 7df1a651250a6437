#include "host/cli/run_inputs.h"

#include "host/cli/standard_streams.h"
#include "host/documents/component_walk.h"
#include "kit/paths.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace fs = std::filesystem;

namespace cli {

namespace {

bool IsWanted(const RunOptions &options, const std::string &name) {
  return options.patterns.empty() || std::ranges::any_of(options.patterns, [&](const std::string &pattern) {
           return fnmatch(pattern.c_str(), name.c_str(), FNM_NOESCAPE) == 0;
         });
}

// Hidden files and folders are left out, and so is the folder that the results go to.
class FolderLister {
public:
  FolderLister(const RunOptions &given, std::string root)
      : options(given), base(std::move(root)),
        outputFolder(NamesFolder(options.output) ? kit::RealPath(kit::AbsolutePath(options.output)) : std::string()) {}

  bool List(const std::string &folder, std::vector<std::string> &files, std::string &error) const {
    std::error_code failure;
    std::vector<std::string> folders;
    for (fs::directory_iterator entries(folder, failure), end; !failure && entries != end; entries.increment(failure)) {
      const std::string path = entries->path().string();
      const std::string name = kit::FileNameOf(path);
      if (name.starts_with('.'))
        continue;
      if (kit::IsFile(path) && IsWanted(options, name))
        files.push_back(path);
      // Links to folders are not followed: they may lead in a circle.
      else if (options.isRecursive && !entries->is_symlink() && kit::IsFolder(path) && !IsOutputFolder(path))
        folders.push_back(path);
    }
    if (failure) {
      error = "cannot read the folder " + folder + ": " + failure.message();
      return false;
    }
    return std::ranges::all_of(folders, [&](const std::string &each) { return List(each, files, error); });
  }

private:
  // With nothing but the named folder as output there would be nothing left to read.
  [[nodiscard]] bool IsOutputFolder(const std::string &path) const {
    return !outputFolder.empty() &&
           kit::AbsolutePath(kit::RealPath(path) + "/") == kit::AbsolutePath(outputFolder + "/");
  }

  const RunOptions &options;
  std::string base;
  std::string outputFolder;
};

bool AddFolder(const RunOptions &options, const std::string &folder, std::vector<RunInput> &inputs,
               std::string &error) {
  std::vector<std::string> files;
  if (!FolderLister(options, folder).List(folder, files, error))
    return false;
  std::ranges::sort(files);
  const std::string prefix = kit::JoinPath(folder, "");
  for (const std::string &file : files)
    inputs.push_back({file, file.substr(prefix.size()), {}});
  if (files.empty())
    error = "there are no files to transform in " + folder +
            (options.isRecursive ? std::string() : "; --recursive looks into its folders too");
  return !files.empty();
}

// The file and its components, below the folder that holds them all.
void AddComponents(const std::string &path, host::ComponentSource source, std::vector<RunInput> &inputs,
                   std::vector<std::string> &warnings) {
  host::ComponentList components = host::ListComponents(path, source, {});
  warnings.insert(warnings.end(), components.problems.begin(), components.problems.end());
  components.paths.insert(components.paths.begin(), path);
  std::string base = kit::JoinPath(kit::FolderOf(path), "");
  const auto isBelow = [&](const std::string &each) { return each.starts_with(base); };
  while (!std::ranges::all_of(components.paths, isBelow))
    base = kit::JoinPath(kit::FolderOf(base.substr(0, base.size() - 1)), "");
  for (const std::string &each : components.paths)
    inputs.push_back({each, each.substr(base.size()), {}});
}

std::string ReplaceExtension(const std::string &relative, std::string extension) {
  if (extension.empty())
    return relative;
  if (extension.starts_with('.'))
    extension.erase(0, 1);
  const std::string own = kit::ExtensionOf(relative);
  const std::string bare = own.empty() ? relative : relative.substr(0, relative.size() - own.size() - 1);
  return bare + "." + extension;
}

} // namespace

bool ReadsStandardInput(const RunOptions &options) {
  return std::ranges::find(options.inputs, streamName) != options.inputs.end();
}

bool WritesStandardOutput(const RunOptions &options) { return options.output == streamName; }

bool NamesFolder(const std::string &output) { return output.ends_with('/') || kit::IsFolder(output); }

bool FindInputs(const RunOptions &options, std::vector<RunInput> &inputs, std::vector<std::string> &warnings,
                std::string &error) {
  for (const std::string &named : options.inputs) {
    if (named == streamName) {
      inputs.push_back({kit::AbsolutePath(named), named, {}});
      continue;
    }
    std::string path = kit::AbsolutePath(kit::UrlToPath(named));
    if (path.size() > 1 && path.ends_with('/'))
      path.pop_back();
    if (kit::IsFolder(path)) {
      if (!AddFolder(options, path, inputs, error))
        return false;
    } else if (kit::IsFile(path)) {
      const host::ComponentSource source =
          options.takesComponents ? host::RecogniseComponentSource(path) : host::ComponentSource::None;
      if (source != host::ComponentSource::None)
        AddComponents(path, source, inputs, warnings);
      else
        inputs.push_back({path, kit::FileNameOf(path), {}});
    } else {
      error = "there is no file or folder " + path;
      return false;
    }
  }
  // A file that is named twice is still one input.
  std::set<std::string> seen;
  std::erase_if(inputs, [&](const RunInput &input) { return !seen.insert(input.path).second; });
  if (inputs.empty())
    error = "name at least one file or folder to transform";
  return !inputs.empty();
}

bool PlaceOutputs(const RunOptions &options, std::vector<RunInput> &inputs, std::string &error) {
  const bool hasFolderInput =
      std::ranges::any_of(options.inputs, [](const std::string &each) { return kit::IsFolder(kit::UrlToPath(each)); });
  if (options.output.empty()) {
    error = "where should the result go? -o names a file for one input, or a folder for several";
  } else if (WritesStandardOutput(options)) {
    if (inputs.size() > 1 || hasFolderInput)
      error = "standard output takes the result of one input; name a folder with -o for several";
    inputs.front().output = kit::AbsolutePath(options.output);
  } else if (NamesFolder(options.output)) {
    const std::string folder = kit::AbsolutePath(options.output);
    for (RunInput &input : inputs)
      input.output = kit::JoinPath(folder, ReplaceExtension(input.relative, options.extension));
  } else if (inputs.size() > 1 || hasFolderInput) {
    error =
        "several inputs need a folder for their results: end -o " + options.output + " with a slash to have it made";
  } else if (!options.extension.empty()) {
    error = "--extension goes with a folder; -o " + options.output + " names a file";
  } else {
    inputs.front().output = kit::AbsolutePath(options.output);
  }
  return error.empty();
}

} // namespace cli
