// The options of the requests about catalogues: which catalogue, which transformation, and the fields of one that is
// added or changed. An option takes the next token, whatever it is; a later one counts; what is no option is skipped.
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
  Transformation record;      // what the request makes of the record that it starts from
  bool namesLocation = false; // "-output" outweighs what a folder or a suffix says about the location
  std::string problem;        // a message about the first option that cannot be applied; empty without one
};

[[nodiscard]] RequestOptions ScanRequestOptions(std::string_view request, Transformation start = {});

} // namespace catalogue

#endif
