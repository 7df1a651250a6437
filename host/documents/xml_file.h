// Reading XML files for the host's own purposes: never over the network, never with a DTD. Nothing here throws.
#ifndef HOST_DOCUMENTS_XML_FILE_H
#define HOST_DOCUMENTS_XML_FILE_H

#include "kit/handle.h"

#include <libxml/tree.h>

#include <optional>
#include <string>
#include <string_view>

namespace host {

// From now on libxml2 opens nothing by name but local files, in the whole process: a catalog could name an address.
// Called before anything is read by name; once is enough.
void ReadLocalFilesOnly();

// What the beginning of a file says about it.
struct XmlOutline {
  std::string root; // local name
  std::string rootNamespace;
  std::string publicId;
  std::string firstChild; // local name of the root's first child element; only when asked for
};

enum class OutlineDepth { Root, FirstChild };

// Reads no further than it must; nothing when the file is no XML that far.
[[nodiscard]] std::optional<XmlOutline> ReadXmlOutline(const std::string &path,
                                                       OutlineDepth depth = OutlineDepth::Root);

struct XmlDocument {
  kit::Handle<xmlDoc, xmlFreeDoc> document; // null when there is nothing to work with
  std::string problem;                      // "file:line:column: message" of the first fault; empty for a good file
};

// A malformed file yields what could be read of it, beside the problem.
[[nodiscard]] XmlDocument ReadXmlFile(const std::string &path);

// "file:line:column: message", with `about` before the message; a null error is one without a message.
[[nodiscard]] std::string DescribeXmlError(const std::string &path, const xmlError *error, std::string_view about = {});
// Empty for null; the text is given back.
[[nodiscard]] std::string TakeXmlText(xmlChar *owned);
[[nodiscard]] std::string LocalName(const xmlNode &element);
// Empty when there is no such attribute; local names, so that a prefix does not matter.
[[nodiscard]] std::string Attribute(const xmlNode &element, const char *name);
[[nodiscard]] const xmlNode *NextElement(const xmlNode *node);

} // namespace host

#endif
