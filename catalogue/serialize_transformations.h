// A whole catalogue as the bytes of its file. Needs the XML library started.
#ifndef CATALOGUE_SERIALIZE_TRANSFORMATIONS_H
#define CATALOGUE_SERIALIZE_TRANSFORMATIONS_H

#include "catalogue/transformation.h"

#include <optional>
#include <string>

namespace catalogue {

// Nothing when a record holds text that no XML file can hold, or the library fails; the reason has been reported.
[[nodiscard]] std::optional<std::string> SerializeTransformations(const TransformationList &list);

} // namespace catalogue

#endif
