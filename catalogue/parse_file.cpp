#include "catalogue/parse_file.h"

#include "catalogue/entity_sources.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <optional>
#include <string_view>

namespace catalogue {

namespace {

using report::MessageId;
using xercesc::XercesDOMParser;

// Many times what a file of its size can need.
constexpr size_t maxMemoryOfSmallFile = size_t{256} << 20;
constexpr size_t maxMemoryPerByte = 200;
constexpr XMLSize_t maxExpansions = 50000;

// The library would take a path through the locale's character set, so files are read here.
std::optional<std::string> ReadBytes(const std::string &path) {
  kit::FileContent content = kit::ReadFile(path);
  if (content.error.empty())
    return std::move(content.bytes);
  report::ReportProblem(content.error);
  return std::nullopt;
}

// The bytes must outlive the source.
xercesc::MemBufInputSource SourceOver(const std::string &bytes, const std::string &path) {
  return {reinterpret_cast<const XMLByte *>(bytes.data()), bytes.size(), ToUtf16(path).c_str()};
}

// Runs a parse; what the library throws becomes a line of the log. False when something was thrown.
template <class Parse> bool GuardParse(const std::string &path, Diagnostics diagnostics, const Parse &parse) {
  const auto problem = CatchXmlErrors(parse, report::FormatMessage(MessageId::EntitiesTooLarge, {path}));
  if (problem && diagnostics == Diagnostics::Report)
    report::ReportProblem(*problem);
  return !problem;
}

void InstallHandlers(XercesDOMParser &parser, const std::string &path, Diagnostics diagnostics,
                     xercesc::XMLEntityResolver &entities) {
  XSLTErrorHandlerImpl &handler = XSLTErrorHandlerImpl::GetInst();
  handler.BeginFile(path, diagnostics);
  parser.setErrorHandler(&handler);
  parser.setXMLEntityResolver(&entities);
  parser.setDisableDefaultEntityResolution(true);
  parser.setCreateEntityReferenceNodes(false);
}

// The grammar is loaded beforehand: as a location it would have to be a URI, which paths with blanks are not.
bool RequireSchema(XercesDOMParser &parser, const std::string &schemaPath) {
  if (!kit::IsFile(schemaPath)) {
    report::ReportProblem(MessageId::SchemaMissing, {schemaPath});
    return false;
  }
  const auto bytes = ReadBytes(schemaPath);
  if (!bytes)
    return false;
  parser.setDoSchema(true);
  parser.setValidationScheme(XercesDOMParser::Val_Always);
  parser.setExitOnFirstFatalError(true);
  parser.setValidationConstraintFatal(true);
  // Declarations of entities still count.
  parser.setSkipDTDValidation(true);
  parser.loadGrammar(SourceOver(*bytes, schemaPath), xercesc::Grammar::SchemaGrammarType, true);
  parser.useCachedGrammarInParse(true);
  return !ParseErrorsSeen();
}

bool DeclaresElements(const xercesc::DOMDocument &document) {
  const xercesc::DOMDocumentType *type = document.getDoctype();
  return type && (type->getSystemId() || ToUtf8(type->getInternalSubset()).find("<!ELEMENT") != std::string::npos);
}

ParsedFilePtr ParseStylesheetBytes(const std::string &path, const std::string &bytes,
                                   XercesDOMParser::ValSchemes validation) {
  auto parsed = std::make_unique<ParsedFile>(bytes.size());
  LocalEntities entities;
  parsed->parser.setValidationScheme(validation);
  InstallHandlers(parsed->parser, path, Diagnostics::Report, entities);
  const bool done = GuardParse(path, Diagnostics::Report, [&] { parsed->parser.parse(SourceOver(bytes, path)); });
  parsed->parser.setXMLEntityResolver(nullptr);
  return done && !ParseErrorsSeen() && parsed->Document() ? std::move(parsed) : nullptr;
}

} // namespace

ParsedFile::ParsedFile(size_t fileSize)
    : memory(maxMemoryOfSmallFile + maxMemoryPerByte * fileSize), parser(nullptr, &memory) {
  bounds.setEntityExpansionLimit(maxExpansions);
  parser.setSecurityManager(&bounds);
  parser.setDoNamespaces(true);
}

bool ParseErrorsSeen() { return XSLTErrorHandlerImpl::GetInst().ErrorsSeen(); }

ParsedFilePtr ParseFile(const std::string &path, const std::string &schemaPath, Diagnostics diagnostics) {
  const auto bytes = path.empty() ? std::nullopt : ReadBytes(path);
  if (!bytes)
    return nullptr;
  auto parsed = std::make_unique<ParsedFile>(bytes->size());
  XercesDOMParser &parser = parsed->parser;
  NoEntities entities;
  parser.setValidationScheme(XercesDOMParser::Val_Never);
  parser.setLoadExternalDTD(false);
  InstallHandlers(parser, path, diagnostics, entities);
  bool valid = true;
  const bool done = GuardParse(path, diagnostics, [&] {
    valid = schemaPath.empty() || RequireSchema(parser, schemaPath);
    if (valid)
      parser.parse(SourceOver(*bytes, path));
  });
  parser.setXMLEntityResolver(nullptr);
  if (!done || !valid || (!schemaPath.empty() && ParseErrorsSeen()))
    return nullptr;
  return parsed;
}

ParsedFilePtr ParseStylesheet(const std::string &path) {
  const auto bytes = ReadBytes(path);
  if (!bytes)
    return nullptr;
  auto parsed = ParseStylesheetBytes(path, *bytes, XercesDOMParser::Val_Never);
  // A document type that only brings entities does not ask for validation; the library's own automatic would think so.
  if (parsed && DeclaresElements(*parsed->Document()))
    parsed = ParseStylesheetBytes(path, *bytes, XercesDOMParser::Val_Auto);
  return parsed;
}

} // namespace catalogue
