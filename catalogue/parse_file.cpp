#include "catalogue/parse_file.h"

#include "catalogue/bounded_memory.h"
#include "catalogue/entity_sources.h"
#include "catalogue/xml_library.h"
#include "kit/paths.h"
#include "kit/read_file.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <algorithm>

namespace catalogue {

namespace {

using report::MessageId;
using xercesc::SAXParser;

// Many times what a file of its size can need.
constexpr size_t maxMemoryOfSmallFile = size_t{256} << 20;
constexpr size_t maxMemoryPerByte = 200;
constexpr size_t maxTextOfSmallFile = size_t{64} << 20;
constexpr size_t maxTextPerByte = 4;
constexpr XMLSize_t maxExpansions = 50000;
// The library looks a prefix up at every level, which takes the square of the depth.
constexpr size_t maxDepth = 10000;

// The bytes must outlive the source.
xercesc::MemBufInputSource SourceOver(const std::string &bytes, const std::string &path) {
  return {reinterpret_cast<const XMLByte *>(bytes.data()), bytes.size(), ToUtf16(path).c_str()};
}

// What the library tells, in our terms.
class Adapter : public xercesc::HandlerBase {
public:
  Adapter(ElementHandler &told, size_t fileSize)
      : handler(told), textLeft(maxTextOfSmallFile + maxTextPerByte * fileSize) {}

  void setDocumentLocator(const xercesc::Locator *now) override { locator = now; }

  void startElement(const XMLCh *name, xercesc::AttributeList &attributes) override {
    if (++depth > maxDepth)
      StopTooDeep();
    ElementStart element{ToUtf8(name), {}};
    for (XMLSize_t index = 0; index < attributes.getLength(); ++index) {
      CountText(xercesc::XMLString::stringLen(attributes.getValue(index)));
      element.attributes.emplace_back(ToUtf8(attributes.getName(index)), ToUtf8(attributes.getValue(index)));
    }
    handler.StartElement(element);
  }

  void endElement(const XMLCh *) override {
    --depth;
    handler.EndElement();
  }

  void characters(const XMLCh *text, XMLSize_t length) override {
    CountText(length);
    handler.Text(kit::ToUtf8(std::u16string_view(text, length)));
  }

private:
  // Entities may expand to text that never ends, though none of it is kept.
  void CountText(size_t length) {
    if (length > textLeft)
      throw xercesc::OutOfMemoryException();
    textLeft -= length;
  }

  // An exception is the only way to end a parse from here; its reason has been told by then.
  void StopTooDeep() const {
    const std::string reason = report::FormatMessage(MessageId::NestedTooDeep, {std::to_string(maxDepth)});
    XSLTErrorHandlerImpl::GetInst().fatalError(xercesc::SAXParseException(ToUtf16(reason).c_str(), *locator));
    throw xercesc::SAXException();
  }

  ElementHandler &handler;
  size_t textLeft;
  const xercesc::Locator *locator = nullptr;
  size_t depth = 0;
};

class NoHandler : public ElementHandler {
  void StartElement(const ElementStart &) override {}
};

struct ParserMemory {
  explicit ParserMemory(size_t fileSize) : memory(maxMemoryOfSmallFile + maxMemoryPerByte * fileSize) {}
  BoundedMemory memory;
};

// Parses the bytes of one file, which must outlive it. The memory is there before the library's part and after it.
class BoundedParser : private ParserMemory, private SAXParser {
public:
  BoundedParser(const std::string &parsedPath, const std::string &parsedBytes, ElementHandler &handler,
                xercesc::XMLEntityResolver &entities, Diagnostics wanted)
      : ParserMemory(parsedBytes.size()), SAXParser(nullptr, &memory), path(parsedPath), bytes(parsedBytes),
        adapter(handler, parsedBytes.size()), diagnostics(wanted) {
    XSLTErrorHandlerImpl &errors = XSLTErrorHandlerImpl::GetInst();
    errors.BeginFile(path, diagnostics);
    bounds.setEntityExpansionLimit(maxExpansions);
    setSecurityManager(&bounds);
    setDoNamespaces(true);
    setDocumentHandler(&adapter);
    // Without one the parser does not tell of declarations.
    setDTDHandler(&adapter);
    setErrorHandler(&errors);
    setXMLEntityResolver(&entities);
    setDisableDefaultEntityResolution(true);
    setValidationScheme(Val_Never);
  }

  [[nodiscard]] ParseResult Parse() {
    const bool isDone = Guard([&] { parse(SourceOver(bytes, path)); });
    return !isDone ? ParseResult::Unbounded : HasErrors() ? ParseResult::Faulty : ParseResult::Whole;
  }

  // Until `isEnough`, or as far as the file goes.
  template <class Condition> void ParseUntil(const Condition &isEnough) {
    (void)Guard([&] {
      xercesc::XMLPScanToken place;
      const auto source = SourceOver(bytes, path);
      for (bool goesOn = parseFirst(source, place); goesOn && !isEnough(); goesOn = parseNext(place)) {
      }
      parseReset(place);
    });
  }

  // The grammar is loaded beforehand: as a location it would have to be a URI, which paths with blanks are not. False
  // when it cannot be used, which has been reported.
  [[nodiscard]] bool RequireSchema(const std::string &schemaPath) {
    if (!kit::IsFile(schemaPath)) {
      report::ReportProblem(MessageId::SchemaMissing, {schemaPath});
      return false;
    }
    const auto schema = ReadBytes(schemaPath);
    if (!schema)
      return false;
    setDoSchema(true);
    setValidationScheme(Val_Always);
    setExitOnFirstFatalError(true);
    setValidationConstraintFatal(true);
    // Declarations of entities still count.
    setSkipDTDValidation(true);
    const bool isDone = Guard([&] {
      loadGrammar(SourceOver(*schema, schemaPath), xercesc::Grammar::SchemaGrammarType, true);
      useCachedGrammarInParse(true);
    });
    return isDone && !HasErrors();
  }

  void RequireDocumentType() { setValidationScheme(Val_Auto); }
  void LeaveOutExternalSubset() { setLoadExternalDTD(false); }
  // Whether the document type has declared an element.
  [[nodiscard]] bool DeclaresElements() const { return declaresElements; }

private:
  void elementDecl(const xercesc::DTDElementDecl &declared, const bool isIgnored) override {
    declaresElements = true;
    SAXParser::elementDecl(declared, isIgnored);
  }

  static bool HasErrors() { return XSLTErrorHandlerImpl::GetInst().ErrorsSeen(); }

  // What the library throws becomes a line of the log. False when something was thrown.
  template <class Work> bool Guard(const Work &work) {
    const auto problem = CatchXmlErrors(work, report::FormatMessage(MessageId::EntitiesTooLarge, {path}));
    if (problem && diagnostics == Diagnostics::Report)
      report::ReportProblem(*problem);
    return !problem;
  }

  const std::string &path;
  const std::string &bytes;
  Adapter adapter;
  Diagnostics diagnostics;
  xercesc::SecurityManager bounds;
  bool declaresElements = false;
};

} // namespace

std::string ElementStart::Attribute(std::string_view attribute) const {
  const auto found = std::ranges::find(attributes, attribute, &std::pair<std::string, std::string>::first);
  return found == attributes.end() ? std::string() : Trim(found->second);
}

// The library would take a path through the locale's character set, so files are read here.
std::optional<std::string> ReadBytes(const std::string &path) {
  kit::FileContent content = kit::ReadFile(path);
  if (content.error.empty())
    return std::move(content.bytes);
  report::ReportProblem(content.error);
  return std::nullopt;
}

ParseResult ParseBytes(const std::string &path, const std::string &bytes, ElementHandler &handler,
                       Diagnostics diagnostics) {
  NoEntities entities;
  BoundedParser parser(path, bytes, handler, entities, diagnostics);
  parser.LeaveOutExternalSubset();
  return parser.Parse();
}

std::optional<std::string> FindRootName(const std::string &path, const std::string &bytes) {
  struct RootHandler : ElementHandler {
    void StartElement(const ElementStart &element) override {
      if (!name)
        name = element.name;
    }
    std::optional<std::string> name;
  } root;
  NoEntities entities;
  BoundedParser parser(path, bytes, root, entities, Diagnostics::Drop);
  parser.LeaveOutExternalSubset();
  parser.ParseUntil([&] { return root.name.has_value(); });
  return root.name;
}

ParseResult ParseWithSchema(const std::string &path, const std::string &bytes, const std::string &schemaPath,
                            ElementHandler &handler) {
  NoEntities entities;
  BoundedParser parser(path, bytes, handler, entities, Diagnostics::Report);
  parser.LeaveOutExternalSubset();
  return parser.RequireSchema(schemaPath) ? parser.Parse() : ParseResult::NoSchema;
}

bool ParseStylesheet(const std::string &path, const std::string &bytes, ElementHandler &handler) {
  LocalEntities entities;
  BoundedParser parser(path, bytes, handler, entities, Diagnostics::Report);
  bool isGood = parser.Parse() == ParseResult::Whole;
  // A document type that only brings entities does not ask for validation; the library's own automatic would think so.
  if (isGood && parser.DeclaresElements()) {
    NoHandler nothing;
    BoundedParser validating(path, bytes, nothing, entities, Diagnostics::Report);
    validating.RequireDocumentType();
    isGood = validating.Parse() == ParseResult::Whole;
  }
  // Said in any case: the library passes over references to what was declared there.
  for (const std::string &unread : entities.Unread())
    report::ReportProblem(MessageId::EntityNotRead, {path, unread});
  return isGood;
}

} // namespace catalogue
