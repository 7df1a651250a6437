// The open documents, books and maps. Content is not held: a document is its path, its name and its flags, so one whose
// file goes away stays open. Objects are numbers from 256 up, in the order of opening, and never used again.
#ifndef HOST_DOCUMENTS_DOCUMENTS_H
#define HOST_DOCUMENTS_DOCUMENTS_H

#include "host/documents/component_walk.h"
#include "kit/vdk.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host {

struct Document {
  V_ObjectT object = 0;
  ComponentSource source = ComponentSource::None;
  std::string path;
  std::string name;
  bool isModified = false;
  bool isShown = true;
  std::map<int32_t, int32_t> settings; // properties that only clients give a meaning to
};

class Documents {
public:
  // A file that is open already is found again. Null and an error text when there is no such file.
  [[nodiscard]] Document *Open(const std::string &path, const std::string &asName, std::string &error);
  // Null for 0 and for other objects.
  [[nodiscard]] Document *Find(V_ObjectT object);
  [[nodiscard]] V_ObjectT First() const { return documents.empty() ? 0 : documents.front()->object; }
  [[nodiscard]] V_ObjectT After(V_ObjectT object) const;
  void Close(V_ObjectT object);

  // One document and one book can be active; 0 for none. A map counts as either.
  [[nodiscard]] V_ObjectT ActiveDocument() const { return activeDocument; }
  [[nodiscard]] V_ObjectT ActiveBook() const { return activeBook; }
  [[nodiscard]] bool IsActive(V_ObjectT object) const { return object == activeDocument || object == activeBook; }
  void SetActiveDocument(V_ObjectT object) { activeDocument = object; }
  void SetActiveBook(V_ObjectT object) { activeBook = object; }
  // The only active one from then on, in the role that it can have.
  void Activate(V_ObjectT object);

  [[nodiscard]] const std::vector<std::unique_ptr<Document>> &All() const { return documents; }

private:
  V_ObjectT nextObject = 256;
  V_ObjectT activeDocument = 0;
  V_ObjectT activeBook = 0;
  std::vector<std::unique_ptr<Document>> documents;
};

} // namespace host

#endif
