// Parses catalogues and stylesheets, offline and within bounds: external entities are never fetched, what entities may
// expand to is limited, so is how deep elements are nested, and every problem goes to XSLTErrorHandler. What a file
// holds is told to a handler as it is read, no document is built. Host's thread only; the XML library must have been
// started.
#ifndef CATALOGUE_PARSE_FILE_H
#define CATALOGUE_PARSE_FILE_H

#include "catalogue/xslt_error_handler_impl.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace catalogue {

// An element's name and attributes as the file spells them, prefixes included.
struct ElementStart {
  std::string name;
  std::vector<std::pair<std::string, std::string>> attributes;

  // Trimmed; empty without such an attribute.
  [[nodiscard]] std::string Attribute(std::string_view attribute) const;
};

class ElementHandler {
public:
  ElementHandler() = default;
  ElementHandler(const ElementHandler &) = delete;
  ElementHandler &operator=(const ElementHandler &) = delete;
  virtual ~ElementHandler() = default;

  virtual void StartElement(const ElementStart &element) = 0;
  virtual void EndElement() {}
  virtual void Text(std::string_view) {}
};

// Nothing when the file cannot be read, which has been reported.
[[nodiscard]] std::optional<std::string> ReadBytes(const std::string &path);

enum class ParseResult {
  Whole,
  Faulty,    // not well-formed, or not valid; what was read before that has been told
  Unbounded, // a limit, or the library itself, ended the parse
  NoSchema   // the schema is missing or broken
};
[[nodiscard]] ParseResult ParseBytes(const std::string &path, const std::string &bytes, ElementHandler &handler,
                                     Diagnostics diagnostics);

// The name of the document's element; nothing else of the file is looked at. Nothing when the file breaks off before.
[[nodiscard]] std::optional<std::string> FindRootName(const std::string &path, const std::string &bytes);

// The file must be valid, from its first element on.
[[nodiscard]] ParseResult ParseWithSchema(const std::string &path, const std::string &bytes,
                                          const std::string &schemaPath, ElementHandler &handler);

// A stylesheet may name external entities of its own; those that are local files are read. False when it does not
// parse, or is not valid though its document type declares elements.
[[nodiscard]] bool ParseStylesheet(const std::string &path, const std::string &bytes, ElementHandler &handler);

} // namespace catalogue

#endif
