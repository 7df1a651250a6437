// Where the client's shared object lies; the jar of the Java layer and the parser lie beside it.
#ifndef PROCESSORS_JAVA_OWN_FOLDER_H
#define PROCESSORS_JAVA_OWN_FOLDER_H

#include <string>

namespace processors {

[[nodiscard]] std::string OwnFolder();

} // namespace processors

#endif
