// Names that requests and replies carry, for both sides.
#ifndef KIT_NAMES_H
#define KIT_NAMES_H

#include <string_view>

namespace kit {

// The clients that requests go to: the one that transforms, and two that the host answers for itself.
inline constexpr const char *xsltName = "XSLT";
inline constexpr const char *dispatcherName = "VlDispatcher";
inline constexpr const char *xmlUtilitiesName = "XmlUtilities";

// The requests that run transformations, and that ask for the plan of such a run; a blank and the options follow.
inline constexpr std::string_view runRequestName = "XSLTRunTrScenario";
inline constexpr std::string_view planRequestName = "VlxsltPlanRun";

// What a stored path may begin with, in any letter case: the structure folder, and the installation folder.
inline constexpr const char *structureVariable = "$STRUCTDIR";
inline constexpr const char *installVariable = "$VLHOME";

// The application that every document has; its catalogue is the host's default one.
inline constexpr const char *defaultsName = "<Defaults>";

// Among the attributes of a processor, with the type "boolean": stylesheets that it applies may call code.
inline constexpr const char *extensionsAttribute = "vlxslt:extensions";
// Among the folders for further results: that of the principal output and all below it; none at all.
inline constexpr const char *writeBesideOutput = "output";
inline constexpr const char *writeNowhere = "none";

} // namespace kit

#endif
