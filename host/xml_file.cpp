#include "host/xml_file.h"

#include "kit/paths.h"

#include <libxml/parser.h>
#include <libxml/xmlreader.h>

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

using Reader = kit::Handle<xmlTextReader, xmlFreeTextReader>;

// False at the end of the file or of what can be read.
bool ReadToElement(xmlTextReaderPtr reader, std::string &publicId) {
  while (xmlTextReaderRead(reader) == 1) {
    const int type = xmlTextReaderNodeType(reader);
    if (type == XML_READER_TYPE_ELEMENT)
      return true;
    if (type == XML_READER_TYPE_DOCUMENT_TYPE)
      if (const xmlNode *node = xmlTextReaderCurrentNode(reader); node && node->type == XML_DTD_NODE)
        publicId = Text(reinterpret_cast<const xmlDtd *>(node)->ExternalID);
  }
  return false;
}

} // namespace

std::optional<XmlOutline> ReadXmlOutline(const std::string &path, OutlineDepth depth) {
  const OpenFile file(path);
  if (file.Get() < 0)
    return std::nullopt;
  // What is broken further down must not hide the root: the reader looks ahead.
  const Reader reader = Reader::Adopt(xmlReaderForFd(file.Get(), nullptr, nullptr, quietOptions | XML_PARSE_RECOVER));
  XmlOutline outline;
  if (!reader || !ReadToElement(reader.Get(), outline.publicId))
    return std::nullopt;
  outline.root = Text(xmlTextReaderConstLocalName(reader.Get()));
  outline.rootNamespace = Text(xmlTextReaderConstNamespaceUri(reader.Get()));
  if (depth == OutlineDepth::FirstChild && xmlTextReaderIsEmptyElement(reader.Get()) == 0 &&
      ReadToElement(reader.Get(), outline.publicId))
    outline.firstChild = Text(xmlTextReaderConstLocalName(reader.Get()));
  return outline;
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
