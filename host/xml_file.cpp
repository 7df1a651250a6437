#include "host/xml_file.h"

#include "kit/paths.h"

#include <libxml/parser.h>

#include <array>
#include <fcntl.h>
#include <unistd.h>

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

std::string DescribeError(const std::string &path, const xmlError *error) {
  std::string message = error && error->message ? error->message : "cannot be read as XML";
  while (!message.empty() && (message.back() == '\n' || message.back() == ' '))
    message.pop_back();
  if (!error || error->line <= 0)
    return path + ": " + message;
  return path + ":" + std::to_string(error->line) + ":" + std::to_string(error->int2) + ": " + message;
}

// What the parser's events have told so far.
struct OutlineEvents {
  XmlOutline outline;
  OutlineDepth depth;
  xmlParserCtxtPtr parser = nullptr;
  int level = 0;
};

OutlineEvents &EventsOf(void *context) {
  return *static_cast<OutlineEvents *>(static_cast<xmlParserCtxtPtr>(context)->_private);
}

void NoteDoctype(void *context, const xmlChar *, const xmlChar *publicId, const xmlChar *) {
  EventsOf(context).outline.publicId = Text(publicId);
}

void NoteElement(void *context, const xmlChar *localName, const xmlChar *, const xmlChar *space, int, const xmlChar **,
                 int, int, const xmlChar **) {
  OutlineEvents &events = EventsOf(context);
  const bool isRoot = events.level++ == 0;
  (isRoot ? events.outline.root : events.outline.firstChild) = Text(localName);
  if (isRoot)
    events.outline.rootNamespace = Text(space);
  if (!isRoot || events.depth == OutlineDepth::Root)
    xmlStopParser(events.parser);
}

// The root has ended: whatever follows is none of its children.
void NoteEnd(void *context, const xmlChar *, const xmlChar *, const xmlChar *) {
  xmlStopParser(EventsOf(context).parser);
}

using PushParser = kit::Handle<xmlParserCtxt, xmlFreeParserCtxt>;

} // namespace

std::optional<XmlOutline> ReadXmlOutline(const std::string &path, OutlineDepth depth) {
  const OpenFile file(path);
  if (file.Get() < 0)
    return std::nullopt;
  // Events come before the parser meets what is broken further down, so that cannot hide the root.
  xmlSAXHandler handler{};
  handler.initialized = XML_SAX2_MAGIC;
  handler.internalSubset = NoteDoctype;
  handler.startElementNs = NoteElement;
  handler.endElementNs = NoteEnd;
  const PushParser parser = PushParser::Adopt(xmlCreatePushParserCtxt(&handler, nullptr, nullptr, 0, nullptr));
  if (!parser)
    return std::nullopt;
  xmlCtxtUseOptions(parser.Get(), quietOptions);
  OutlineEvents events{{}, depth, parser.Get()};
  parser.Get()->_private = &events;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = read(file.Get(), buffer.data(), buffer.size())) > 0;)
    if (xmlParseChunk(parser.Get(), buffer.data(), static_cast<int>(count), 0) != 0)
      break;
  if (events.level == 0)
    xmlParseChunk(parser.Get(), nullptr, 0, 1);
  return events.level > 0 ? std::optional(std::move(events.outline)) : std::nullopt;
}

XmlDocument ReadXmlFile(const std::string &path) {
  const OpenFile file(path);
  if (file.Get() < 0)
    return {{}, path + ": cannot be read"};
  using Parser = kit::Handle<xmlParserCtxt, xmlFreeParserCtxt>;
  const Parser parser = Parser::Adopt(xmlNewParserCtxt());
  if (!parser)
    return {{}, path + ": no memory to read it"};
  XmlDocument read;
  read.document = kit::Handle<xmlDoc, xmlFreeDoc>::Adopt(
      xmlCtxtReadFd(parser.Get(), file.Get(), nullptr, nullptr, quietOptions | XML_PARSE_RECOVER));
  if (!parser.Get()->wellFormed || !read.document)
    read.problem = DescribeError(path, xmlCtxtGetLastError(parser.Get()));
  return read;
}

std::string LocalName(const xmlNode &element) { return Text(element.name); }

std::string Attribute(const xmlNode &element, const char *name) {
  using Owned = kit::Handle<xmlChar, [](xmlChar *text) { xmlFree(text); }>;
  const Owned value = Owned::Adopt(xmlGetProp(&element, reinterpret_cast<const xmlChar *>(name)));
  return Text(value.Get());
}

const xmlNode *NextElement(const xmlNode *node) {
  while (node && node->type != XML_ELEMENT_NODE)
    node = node->next;
  return node;
}

} // namespace host
