#include "catalogue/location.h"

#include "catalogue/reader.h"
#include "kit/names.h"
#include "kit/paths.h"
#include "kit/request_builder.h"
#include "kit/text.h"

#include <algorithm>
#include <array>

namespace catalogue {

namespace {

struct PathVariable {
  std::string_view name;
  int32_t property;
};

constexpr std::array pathVariables = {PathVariable{kit::structureVariable, V_SP_STRUCTURE_DIR},
                                      PathVariable{kit::installVariable, V_SP_INSTALL_DIR}};

std::optional<std::string> &DefaultCatalogue() {
  static std::optional<std::string> path;
  return path;
}

// URL form becomes a platform path, and the separators of another system become ours. A file of this system whose name
// really holds a backslash is left alone.
std::string ToPlatformPath(const std::string &given) {
  std::string path = kit::UrlToPath(given);
  const bool literal = path.find('\\') == std::string::npos || (kit::IsAbsolutePath(path) && kit::Exists(path));
  if (!literal && !kit::IsUrl(path))
    std::ranges::replace(path, '\\', '/');
  return path;
}

// Empty when the path begins with a variable that the host has no folder for.
std::string ExpandVariable(std::string path) {
  for (const PathVariable &variable : pathVariables) {
    if (!kit::StartsWithIgnoreCase(path, variable.name))
      continue;
    const std::string folder = kit::GetString(V_SESSION, variable.property);
    return folder.empty() ? folder : folder + path.substr(variable.name.size());
  }
  return path;
}

// Those that have a catalogue, before them the application that every document has.
std::vector<std::string> KeepWithCatalogue(std::vector<std::string> names) {
  names.insert(names.begin(), kit::defaultsName);
  std::erase_if(names, [](const std::string &name) { return GetTransformationFile(name).empty(); });
  return names;
}

} // namespace

std::string ResolvePath(const std::string &path, const std::string &basePath) {
  if (path.empty())
    return {};
  std::string expanded = ExpandVariable(ToPlatformPath(path));
  if (expanded.empty() || kit::IsAbsolutePath(expanded) || kit::IsUrl(expanded))
    return expanded;
  if (!basePath.empty()) {
    const std::string base = ResolvePath(basePath);
    return base.empty() ? base : kit::JoinPath(kit::FolderOf(base), expanded);
  }
  const std::string installation = kit::GetString(V_SESSION, V_SP_INSTALL_DIR);
  return installation.empty() ? installation : installation + expanded;
}

std::string TransformationFileRequest(const std::string &applicationName) {
  // The command word brings a blank of its own, so two stand before the option.
  return "XSLTGetTrScenarioFile  -appname " + kit::QuoteValue(applicationName);
}

std::string GetTransformationFile(const std::string &applicationName) {
  if (applicationName.empty())
    return {};
  const kit::TypedValues reply = kit::CallClient(kit::dispatcherName, TransformationFileRequest(applicationName));
  return ResolvePath(reply.String(0).value_or(std::string()));
}

std::vector<std::string> GetApplicationsForFile(const std::string &filePath) {
  const kit::TypedValues reply = kit::CallClient(kit::dispatcherName, "GetAppsForFile " + kit::QuoteValue(filePath));
  const auto names = reply.Size() == 1 ? reply.Strings(0) : std::nullopt;
  return KeepWithCatalogue(names.value_or(std::vector<std::string>()));
}

std::vector<std::string> GetApplicationsForDocument(V_ObjectT document) {
  if (document == 0)
    return {};
  const std::string path = kit::GetString(document, V_OP_FULL_NAME);
  return path.empty() ? KeepWithCatalogue({kit::GetString(document, V_OP_APPLICATION)}) : GetApplicationsForFile(path);
}

std::vector<std::string> GetAllApplications() {
  return KeepWithCatalogue(kit::GetStrings(V_SESSION, V_SP_APPLICATIONS));
}

std::string GetDefaultTransformationFile() {
  std::optional<std::string> &path = DefaultCatalogue();
  if (!path)
    path = ResolvePath(kit::GetString(V_SESSION, V_SP_DEFAULT_CATALOGUE));
  return *path;
}

void ForgetDefaultTransformationFile() noexcept { DefaultCatalogue().reset(); }

std::optional<std::vector<std::string>> GetTransformationNames(const std::string &applicationName) {
  const std::string path = GetTransformationFile(applicationName);
  if (path.empty())
    return std::nullopt;
  std::vector<std::string> names;
  for (Transformation &transformation : LoadTransformationFile(path).list.value_or(TransformationList()))
    names.push_back(std::move(transformation.name));
  return names;
}

std::optional<Transformation> GetTransformation(const std::string &cataloguePath, const std::string &applicationName,
                                                const std::string &transformationName) {
  const LoadResult loaded =
      LoadTransformationFile(cataloguePath.empty() ? GetTransformationFile(applicationName) : cataloguePath);
  const int32_t index = loaded.list ? FindTransformation(*loaded.list, transformationName) : -1;
  return index < 0 ? std::nullopt : std::optional((*loaded.list)[static_cast<size_t>(index)]);
}

} // namespace catalogue
