// The end of everything that the catalogue keeps for the life of the client: the XML library, which starts when a
// catalogue or a stylesheet is first read, and the default catalogue's path. Host's thread only.
#ifndef CATALOGUE_SHUT_DOWN_H
#define CATALOGUE_SHUT_DOWN_H

namespace catalogue {

void ShutDownCatalogue() noexcept;

} // namespace catalogue

#endif
