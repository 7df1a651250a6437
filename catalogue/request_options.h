// The options of the requests about catalogues: which catalogue, which transformation, and the fields of one that is
// added or changed. Each request knows its own options only. An option takes the next word, whatever it is; a later one
// counts; what is no option of the request is skipped.
#ifndef CATALOGUE_REQUEST_OPTIONS_H
#define CATALOGUE_REQUEST_OPTIONS_H

#include "catalogue/transformation.h"

#include <string>
#include <string_view>

namespace catalogue {

// By what it knows. The classic ones share their options; all others take them as a JSON array too.
enum class RequestKind { Classic, List, Add, Edit, Delete, ResolvePath, StylesheetParameters };

// What a request does not name is empty.
struct RequestOptions {
  std::string applicationName;
  std::string transformationFile;
  std::string transformationName;
  Transformation record;      // what the request makes of the record that it starts from
  bool namesLocation = false; // "-output" outweighs what a folder or a suffix says about the location
  bool replacesInvalid = false;
  bool wantsRecords = false;
  std::string problem; // a message about the first option that cannot be applied; empty without one
};

// `request` begins with its name.
[[nodiscard]] RequestOptions ScanRequestOptions(std::string_view request, RequestKind kind, Transformation start = {});

} // namespace catalogue

#endif
