// Where catalogues lie, and what a stored path means. Nothing here shows a message; what cannot be found is empty.
// Host's thread only.
#ifndef CATALOGUE_LOCATION_H
#define CATALOGUE_LOCATION_H

#include "catalogue/transformation.h"

#include <optional>
#include <string>
#include <vector>

namespace catalogue {

// The absolute path that a stored or requested one stands for: URL form, a leading $STRUCTDIR or $VLHOME, and relative
// paths against the folder of `basePath`, or against the installation folder without one. Empty for an empty path.
[[nodiscard]] std::string ResolvePath(const std::string &path, const std::string &basePath = {});

// The resolved catalogue path of an application, asked of the client VlDispatcher; the file need not exist.
[[nodiscard]] std::string GetTransformationFile(const std::string &applicationName);
// The request for that, as other clients send it too.
[[nodiscard]] std::string TransformationFileRequest(const std::string &applicationName);

// Applications that have a catalogue; "<Defaults>" first when it has one.
[[nodiscard]] std::vector<std::string> GetApplicationsForDocument(V_ObjectT document);
[[nodiscard]] std::vector<std::string> GetApplicationsForFile(const std::string &filePath);
[[nodiscard]] std::vector<std::string> GetAllApplications();

// The host's default catalogue; asked once and kept until it is forgotten.
[[nodiscard]] std::string GetDefaultTransformationFile();
void ForgetDefaultTransformationFile() noexcept;

// Nothing when the application has no catalogue; an unreadable one gives an empty list.
[[nodiscard]] std::optional<std::vector<std::string>> GetTransformationNames(const std::string &applicationName);
// The transformation of that name in the catalogue, or without one in the application's.
[[nodiscard]] std::optional<Transformation> GetTransformation(const std::string &cataloguePath,
                                                              const std::string &applicationName,
                                                              const std::string &transformationName);

} // namespace catalogue

#endif
