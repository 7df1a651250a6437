// Parses catalogues and stylesheets into documents, offline and within bounds: external entities are never fetched,
// what entities may expand to is limited, and every problem goes to XSLTErrorHandler. Host's thread only; the XML
// library must have been started.
#ifndef CATALOGUE_PARSE_FILE_H
#define CATALOGUE_PARSE_FILE_H

#include "catalogue/bounded_memory.h"
#include "catalogue/xslt_error_handler_impl.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include <memory>
#include <string>

namespace catalogue {

// A parser with the document that it owns.
class ParsedFile {
public:
  explicit ParsedFile(size_t fileSize);
  // Null when nothing at all could be parsed.
  [[nodiscard]] xercesc::DOMDocument *Document() { return parser.getDocument(); }

  BoundedMemory memory;
  xercesc::SecurityManager bounds;
  xercesc::XercesDOMParser parser;
};
using ParsedFilePtr = std::unique_ptr<ParsedFile>;

// With a schema the file must be valid; without one a document that breaks off is given as far as it goes, and only
// a file that cannot be read at all gives nothing.
[[nodiscard]] ParsedFilePtr ParseFile(const std::string &path, const std::string &schemaPath,
                                      Diagnostics diagnostics = Diagnostics::Report);

// A stylesheet may name external entities of its own; those that are local files are read. Nothing when it does not
// parse, or is not valid though it asks to be.
[[nodiscard]] ParsedFilePtr ParseStylesheet(const std::string &path);

// Whether the parse that was last made had anything to complain about.
[[nodiscard]] bool ParseErrorsSeen();

} // namespace catalogue

#endif
