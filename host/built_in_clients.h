// The clients that this host answers for itself, beside the one that it loads.
#ifndef HOST_BUILT_IN_CLIENTS_H
#define HOST_BUILT_IN_CLIENTS_H

#include "host/configuration/configuration.h"
#include "host/documents/entity_catalogs.h"
#include "kit/values.h"

#include <string_view>

namespace host {

class BuiltInClient {
public:
  virtual ~BuiltInClient() = default;
  // An unknown request gets an empty reply.
  [[nodiscard]] virtual kit::TypedValues Answer(std::string_view request) = 0;
};

// Which catalogue an application has, and which applications a file belongs to.
class VlDispatcher final : public BuiltInClient {
public:
  explicit VlDispatcher(const Configuration &settings) : configuration(settings) {}
  [[nodiscard]] kit::TypedValues Answer(std::string_view request) override;

private:
  [[nodiscard]] kit::TypedValues AnswerCatalogue(std::string_view options) const;
  [[nodiscard]] kit::TypedValues AnswerApplications(std::string_view options) const;

  const Configuration &configuration;
};

// Finds external entities, stylesheets and other documents through XML catalogs.
class XmlUtilities final : public BuiltInClient {
public:
  XmlUtilities(const Configuration &configuration, EntityCatalogs::Warn warn);
  [[nodiscard]] kit::TypedValues Answer(std::string_view request) override;

private:
  EntityCatalogs catalogs;
};

} // namespace host

#endif
