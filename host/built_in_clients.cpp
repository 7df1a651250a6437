#include "host/built_in_clients.h"

#include "host/applications.h"
#include "kit/names.h"
#include "kit/text.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>

namespace host {

namespace {

// Identifiers and base URIs may be longer than what a run request can hold.
constexpr size_t unlimited = std::numeric_limits<size_t>::max();

// The values of the options, by lower-case name; a later one counts.
std::map<std::string, std::string> ReadOptions(std::string_view text) {
  std::map<std::string, std::string> options;
  kit::Tokenizer tokens(text, unlimited);
  std::string name;
  std::string value;
  while (tokens.Next(name))
    if (name.starts_with('-') && tokens.Next(value))
      options[kit::LowerCase(name)] = value;
  return options;
}

// What follows `name` and a blank; nothing when the request is another one.
std::optional<std::string_view> Follows(std::string_view request, std::string_view name) {
  if (!kit::StartsWithIgnoreCase(request, name) || request.size() == name.size() || request[name.size()] != ' ')
    return std::nullopt;
  return request.substr(name.size() + 1);
}

} // namespace

kit::TypedValues VlDispatcher::Answer(std::string_view request) {
  if (const auto options = Follows(request, "XSLTGetTrScenarioFile"))
    return AnswerCatalogue(*options);
  if (const auto options = Follows(request, "GetAppsForFile"))
    return AnswerApplications(*options);
  return {};
}

kit::TypedValues VlDispatcher::AnswerCatalogue(std::string_view options) const {
  const std::string name = ReadOptions(options)["-appname"];
  const auto found = std::ranges::find(configuration.applications, name, &ApplicationSetting::name);
  std::string catalogue;
  if (name == kit::defaultsName)
    catalogue = configuration.defaultCatalogue;
  else if (found != configuration.applications.end())
    catalogue = found->catalogue;
  kit::TypedValues reply;
  if (!catalogue.empty())
    reply.AddString(catalogue);
  return reply;
}

kit::TypedValues VlDispatcher::AnswerApplications(std::string_view options) const {
  std::string path;
  kit::TypedValues reply;
  if (kit::Tokenizer(options, unlimited).Next(path))
    reply.AddStrings(FindApplications(configuration, path));
  return reply;
}

XmlUtilities::XmlUtilities(const Configuration &configuration, EntityCatalogs::Warn warn)
    : catalogs(configuration.catalogs,
               configuration.isInstalledDefault ? EntityCatalogs::Missing::Expected : EntityCatalogs::Missing::Reported,
               std::move(warn)) {}

kit::TypedValues XmlUtilities::Answer(std::string_view request) {
  kit::TypedValues reply;
  const auto command = Follows(request, "EntityResolver");
  // Starts and ends need no answer: nothing is kept per document.
  const auto options = command ? Follows(*command, "resolveentity") : std::nullopt;
  if (!options)
    return reply;
  std::map<std::string, std::string> values = ReadOptions(*options);
  const std::string found = catalogs.Resolve(values["-publicid"], values["-baseuri"], values["-systemid"]);
  if (!found.empty())
    reply.AddString(found);
  return reply;
}

} // namespace host
