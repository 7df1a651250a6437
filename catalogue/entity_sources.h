// Where the parser gets what a file refers to. The library is never left to look for itself: it would ask the network.
#ifndef CATALOGUE_ENTITY_SOURCES_H
#define CATALOGUE_ENTITY_SOURCES_H

#include <xercesc/util/XMLEntityResolver.hpp>

#include <set>
#include <string>

namespace catalogue {

// External entities and document types are empty; a schema that a file names by itself counts as not to be found,
// which the parser says as a warning.
class NoEntities : public xercesc::XMLEntityResolver {
public:
  xercesc::InputSource *resolveEntity(xercesc::XMLResourceIdentifier *resource) override;
};

// Local files are read, everything else is as above.
class LocalEntities : public NoEntities {
public:
  xercesc::InputSource *resolveEntity(xercesc::XMLResourceIdentifier *resource) override;

  // What was asked for and could not be read, as it is named in the file.
  [[nodiscard]] const std::set<std::string> &Unread() const { return unread; }

private:
  std::set<std::string> unread;
};

} // namespace catalogue

#endif
