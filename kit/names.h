// Names that requests and replies carry, for both sides.
#ifndef KIT_NAMES_H
#define KIT_NAMES_H

namespace kit {

// The clients that requests go to: the one that transforms, and two that the host answers for itself.
inline constexpr const char *xsltName = "XSLT";
inline constexpr const char *dispatcherName = "VlDispatcher";
inline constexpr const char *xmlUtilitiesName = "XmlUtilities";

// The application that every document has; its catalogue is the host's default one.
inline constexpr const char *defaultsName = "<Defaults>";

} // namespace kit

#endif
