#include "host/documents/xml_file.h"

#include "kit/paths.h"

#include <libxml/parser.h>
#include <libxml/xmlIO.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

constexpr int quietOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// A descriptor instead of a name: libxml2 takes names for URLs and would decode a "%20" in them.
class OpenFile {
public:
  explicit OpenFile(const std::string &path)
      : descriptor(kit::IsFile(path) ? open(path.c_str(), O_RDONLY | O_CLOEXEC) : -1) {}
  ~OpenFile() {
    if (descriptor >= 0)
      close(descriptor);
  }
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;
  [[nodiscard]] int Get() const { return descriptor; }

private:
  int descriptor;
};

std::string Text(const xmlChar *text) { return text ? reinterpret_cast<const char *>(text) : ""; }

using Parser = kit::Handle<xmlParserCtxt, xmlFreeParserCtxt>;

// What the parser's events tell until enough is known. The pull reader would not do: it parses ahead, and what is
// broken further down hides the root.
struct OutlineParse {
  XmlOutline outline;
  int elementsWanted = 1;
  int elementsSeen = 0;
  xmlParserCtxtPtr parser = nullptr;
};

void NoteDoctype(void *data, const xmlChar *, const xmlChar *publicId, const xmlChar *) {
  static_cast<OutlineParse *>(data)->outline.publicId = Text(publicId);
}

void NoteElement(void *data, const xmlChar *name, const xmlChar *, const xmlChar *nameSpace, int, const xmlChar **, int,
                 int, const xmlChar **) {
  OutlineParse &parse = *static_cast<OutlineParse *>(data);
  if (parse.elementsSeen == parse.elementsWanted)
    return;
  if (++parse.elementsSeen == 1) {
    parse.outline.root = Text(name);
    parse.outline.rootNamespace = Text(nameSpace);
  } else {
    parse.outline.firstChild = Text(name);
  }
  if (parse.elementsSeen == parse.elementsWanted)
    xmlStopParser(parse.parser);
}

XmlDocument ParseXmlFile(const std::string &path, int options) {
  const OpenFile file(path);
  if (file.Get() < 0)
    return {{}, path + ": cannot be read"};
  const Parser parser = Parser::Adopt(xmlNewParserCtxt());
  if (!parser)
    return {{}, path + ": no memory to read it"};
  XmlDocument read;
  read.document = kit::Handle<xmlDoc, xmlFreeDoc>::Adopt(
      xmlCtxtReadFd(parser.Get(), file.Get(), nullptr, nullptr, options | XML_PARSE_RECOVER));
  if (!parser.Get()->wellFormed || !read.document)
    read.problem = DescribeXmlError(path, xmlCtxtGetLastError(parser.Get()));
  return read;
}

int IsLocalFile(const char *name) { return !kit::IsUrl(name) || kit::IsFileUrl(name) ? 1 : 0; }

} // namespace

void ReadLocalFilesOnly() {
  static const bool isDone = [] {
    xmlInitParser(); // registers the library's own ways of opening
    xmlCleanupInputCallbacks();
    return xmlRegisterInputCallbacks(IsLocalFile, xmlFileOpen, xmlFileRead, xmlFileClose) >= 0;
  }();
  static_cast<void>(isDone);
}

std::optional<XmlOutline> ReadXmlOutline(const std::string &path, OutlineDepth depth) {
  const OpenFile file(path);
  if (file.Get() < 0)
    return std::nullopt;
  OutlineParse parse;
  parse.elementsWanted = depth == OutlineDepth::FirstChild ? 2 : 1;
  xmlSAXHandler events = {};
  events.initialized = XML_SAX2_MAGIC;
  events.internalSubset = NoteDoctype;
  events.startElementNs = NoteElement;
  const Parser parser = Parser::Adopt(xmlCreatePushParserCtxt(&events, &parse, nullptr, 0, nullptr));
  if (!parser)
    return std::nullopt;
  parse.parser = parser.Get();
  xmlCtxtUseOptions(parser.Get(), quietOptions);
  std::array<char, 4096> chunk = {};
  for (ssize_t count = 1; count > 0 && parse.elementsSeen < parse.elementsWanted;) {
    count = read(file.Get(), chunk.data(), chunk.size());
    if (xmlParseChunk(parser.Get(), chunk.data(), static_cast<int>(std::max<ssize_t>(count, 0)), count <= 0) != 0)
      break;
  }
  // Declarations of entities make the parser keep a document of its own.
  const kit::Handle<xmlDoc, xmlFreeDoc> document =
      kit::Handle<xmlDoc, xmlFreeDoc>::Adopt(std::exchange(parser.Get()->myDoc, nullptr));
  if (parse.elementsSeen == 0)
    return std::nullopt;
  return parse.outline;
}

XmlDocument ReadXmlFile(const std::string &path) {
  XmlDocument read = ParseXmlFile(path, quietOptions);
  // The parser's limits of depth and size are there for entities that unfold without end. Without any, what a document
  // needs is bounded by its own size.
  const xmlDtd *subset = read.document ? read.document.Get()->intSubset : nullptr;
  if (!read.problem.empty() && !(subset && (subset->entities || subset->pentities)))
    read = ParseXmlFile(path, quietOptions | XML_PARSE_HUGE);
  return read;
}

std::string DescribeXmlError(const std::string &path, const xmlError *error, std::string_view about) {
  std::string message = error && error->message ? error->message : "cannot be read as XML";
  while (!message.empty() && (message.back() == '\n' || message.back() == ' '))
    message.pop_back();
  std::string place = path;
  if (error && error->line > 0)
    place += ":" + std::to_string(error->line) + ":" + std::to_string(error->int2);
  return place.append(": ").append(about).append(message);
}

std::string TakeXmlText(xmlChar *owned) {
  const auto text = kit::Handle<xmlChar, [](xmlChar *held) { xmlFree(held); }>::Adopt(owned);
  return Text(text.Get());
}

std::string LocalName(const xmlNode &element) { return Text(element.name); }

std::string Attribute(const xmlNode &element, const char *name) {
  return TakeXmlText(xmlGetProp(&element, reinterpret_cast<const xmlChar *>(name)));
}

const xmlNode *NextElement(const xmlNode *node) {
  while (node && node->type != XML_ELEMENT_NODE)
    node = node->next;
  return node;
}

} // namespace host
