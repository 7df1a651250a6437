// Where the client's shared object lies; its jar and its parser lie beside it.
#ifndef BRIDGE_OWN_FOLDER_H
#define BRIDGE_OWN_FOLDER_H

#include <string>

namespace bridge {

[[nodiscard]] std::string OwnFolder();

} // namespace bridge

#endif
