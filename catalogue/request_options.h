// The options of the requests about catalogues: which catalogue, which transformation, and the fields of one in the
// making. An option takes the next token, whatever it is; a later one counts; what is no option is skipped.
#ifndef CATALOGUE_REQUEST_OPTIONS_H
#define CATALOGUE_REQUEST_OPTIONS_H

#include "catalogue/transformation.h"

#include <string>
#include <string_view>

namespace catalogue {

// What a request does not name is empty.
struct RequestOptions {
  std::string applicationName;
  std::string transformationFile;
  std::string transformationName;
  Transformation record;
};

[[nodiscard]] RequestOptions ScanRequestOptions(std::string_view request);

} // namespace catalogue

#endif
