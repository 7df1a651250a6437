#include "host/applications.h"

#include "host/documents/xml_file.h"
#include "kit/paths.h"

#include <fnmatch.h>

#include <algorithm>
#include <optional>

namespace host {

namespace {

bool MatchesAny(const std::vector<std::string> &patterns, const std::string &text) {
  return std::ranges::any_of(
      patterns, [&](const std::string &pattern) { return fnmatch(pattern.c_str(), text.c_str(), FNM_NOESCAPE) == 0; });
}

bool MatchesFile(const ApplicationSetting &application, const std::string &path) {
  return MatchesAny(application.files, kit::FileNameOf(path)) || MatchesAny(application.files, path);
}

bool MatchesOutline(const ApplicationSetting &application, const XmlOutline &outline) {
  return std::ranges::find(application.roots, outline.root) != application.roots.end() ||
         (!outline.publicId.empty() && MatchesAny(application.publicIds, outline.publicId)) ||
         (!outline.rootNamespace.empty() && MatchesAny(application.namespaces, outline.rootNamespace));
}

bool ReadsOutline(const ApplicationSetting &application) {
  return !application.roots.empty() || !application.publicIds.empty() || !application.namespaces.empty();
}

} // namespace

std::vector<std::string> FindApplications(const Configuration &configuration, const std::string &path) {
  std::optional<XmlOutline> outline;
  bool isRead = false;
  const auto matches = [&](const ApplicationSetting &application) {
    if (MatchesFile(application, path))
      return true;
    if (!ReadsOutline(application))
      return false;
    if (!isRead)
      outline = ReadXmlOutline(path);
    isRead = true;
    return outline && MatchesOutline(application, *outline);
  };
  std::vector<std::string> names;
  for (const ApplicationSetting &application : configuration.applications)
    if (matches(application))
      names.push_back(application.name);
  return names;
}

} // namespace host
