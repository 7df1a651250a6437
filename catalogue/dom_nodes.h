// What the readers take from a document's nodes, as trimmed UTF-8.
#ifndef CATALOGUE_DOM_NODES_H
#define CATALOGUE_DOM_NODES_H

#include "catalogue/xml_text.h"

#include <xercesc/dom/DOM.hpp>

#include <string>
#include <string_view>

namespace catalogue {

[[nodiscard]] inline std::string GetNodeName(const xercesc::DOMNode &node) { return Trim(ToUtf8(node.getNodeName())); }

// Without a prefix; a node of a parse without namespaces has only its whole name.
[[nodiscard]] inline std::string GetLocalName(const xercesc::DOMNode &node) {
  return Trim(ToUtf8(node.getLocalName() ? node.getLocalName() : node.getNodeName()));
}

[[nodiscard]] inline std::string GetNodeText(const xercesc::DOMNode &node) {
  return Trim(ToUtf8(node.getTextContent()));
}

// Empty for a node without attributes, or without this one.
[[nodiscard]] inline std::string GetAttributeValue(const xercesc::DOMNode &node, const char16_t *name) {
  const xercesc::DOMNamedNodeMap *attributes = node.getAttributes();
  const xercesc::DOMNode *attribute = attributes ? attributes->getNamedItem(name) : nullptr;
  return attribute ? Trim(ToUtf8(attribute->getNodeValue())) : std::string();
}

template <class Visit> void ForEachChild(const xercesc::DOMNode &parent, const Visit &visit) {
  for (const xercesc::DOMNode *child = parent.getFirstChild(); child; child = child->getNextSibling())
    visit(*child);
}

} // namespace catalogue

#endif
