// The XML library: started at the first use, stopped at the client's shutdown. What it throws becomes a message here.
#ifndef CATALOGUE_XML_LIBRARY_H
#define CATALOGUE_XML_LIBRARY_H

#include "catalogue/xml_text.h"

#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>

#include <optional>
#include <string>

namespace catalogue {

// False when the library does not start, which has been reported.
[[nodiscard]] bool StartXmlLibrary();

// Nothing when `body` comes to its end, else the message of what the library threw.
template <class Body> std::optional<std::string> CatchXmlErrors(const Body &body, const std::string &whenOutOfMemory) {
  try {
    body();
    return std::nullopt;
  } catch (const xercesc::OutOfMemoryException &) {
    return whenOutOfMemory;
  } catch (const xercesc::XMLException &exception) {
    return ToUtf8(exception.getMessage());
  } catch (const xercesc::DOMException &exception) {
    return ToUtf8(exception.getMessage());
  } catch (const xercesc::SAXException &exception) {
    return ToUtf8(exception.getMessage());
  }
}

} // namespace catalogue

#endif
