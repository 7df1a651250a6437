// What the host has open: the active document and book, the documents on screen, the components of a book or a map.
#ifndef CLIENT_OPEN_DOCUMENTS_H
#define CLIENT_OPEN_DOCUMENTS_H

#include "kit/vdk.h"

#include <set>
#include <string>
#include <vector>

namespace client {

[[nodiscard]] V_ObjectT ActiveDocument();
[[nodiscard]] V_ObjectT ActiveBook();
// The active book if there is one, else the active document.
[[nodiscard]] V_ObjectT ActiveBookOrDocument();

// The full name; the label while there is none.
[[nodiscard]] std::string DocumentPath(V_ObjectT document);
[[nodiscard]] std::vector<std::string> ShownDocumentPaths();
// Resolved paths of everything open that has unsaved changes.
[[nodiscard]] std::set<std::string> UnsavedPaths();

// The book or map itself, then its components in document order. Empty without an object.
[[nodiscard]] std::vector<std::string> ComponentPaths(V_ObjectT bookOrMap);

} // namespace client

#endif
