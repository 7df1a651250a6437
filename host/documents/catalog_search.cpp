#include "host/documents/catalog_search.h"

#include "host/documents/xml_file.h"
#include "kit/paths.h"

#include <libxml/uri.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <utility>

namespace host {

namespace {

constexpr int maxDepth = 50; // of libxml2
constexpr uint64_t maxEntries = 50'000'000;
// Reading takes libxml2 the square of it.
constexpr uint64_t maxEntriesOfFile = 100'000;
constexpr size_t maxCopies = 200;
// A search follows one kind of delegation, and what comes next.
constexpr std::array<std::string_view, 4> references = {"nextCatalog", "delegateSystem", "delegatePublic",
                                                        "delegateURI"};
constexpr size_t nextCatalog = 0;

const xmlChar *Xml(const std::string &text) { return reinterpret_cast<const xmlChar *>(text.c_str()); }

std::string BaseOf(xmlNode &element) { return TakeXmlText(xmlNodeGetBase(element.doc, &element)); }

struct Reference {
  size_t kind;
  size_t target;
  xmlNode *element;
};

struct CatalogFile {
  std::string path;
  XmlDocument read;
  uint64_t entries = 0;
  std::vector<Reference> references;
  enum class State { New, Open, Done } state = State::New;
  std::string copy; // its path
};

class CatalogGraph {
public:
  explicit CatalogGraph(const std::string &root) {
    IndexOf(root);
    for (size_t index = 0; index < files.size(); ++index)
      Read(index);
  }

  // Takes away what closes a ring. False when nothing does.
  bool CutRings() {
    bool hasRing = false;
    struct Open {
      size_t index;
      size_t next;
    };
    std::vector<Open> open = {{0, 0}};
    while (!open.empty()) {
      auto &[index, next] = open.back();
      CatalogFile &file = files[index];
      file.state = CatalogFile::State::Open;
      if (next == file.references.size()) {
        file.state = CatalogFile::State::Done;
        finished.push_back(index);
        open.pop_back();
        continue;
      }
      const Reference reference = file.references[next];
      const CatalogFile::State state = files[reference.target].state;
      if (state == CatalogFile::State::Open) {
        hasRing = true;
        // A group refers to nothing by itself; what is inside may.
        xmlNodeSetName(reference.element, Xml("group"));
        file.references.erase(file.references.begin() + static_cast<ptrdiff_t>(next));
        continue;
      }
      ++next;
      if (state == CatalogFile::State::New)
        open.push_back({reference.target, 0});
    }
    return hasRing;
  }

  [[nodiscard]] std::string FindProblem() const {
    for (const CatalogFile &file : files)
      if (file.entries > maxEntriesOfFile)
        return file.path + " holds more than " + std::to_string(maxEntriesOfFile) + " entries";
    for (size_t kind = nextCatalog + 1; kind < references.size(); ++kind)
      if (CountEntries(kind) >= maxEntries)
        return "the catalogs that it leads to refer to each other over and over";
    return {};
  }

  // After the rings are cut: those that a file refers to come before it.
  [[nodiscard]] std::string Copy(std::vector<AnonymousFile> &copies) {
    if (files.size() > maxCopies)
      return "it includes itself, through one of more than " + std::to_string(maxCopies) + " others";
    for (const size_t index : finished) {
      CatalogFile &file = files[index];
      xmlNode *root = file.read.document ? xmlDocGetRootElement(file.read.document.Get()) : nullptr;
      if (!root)
        continue;
      for (const Reference &each : file.references)
        if (const std::string &copy = files[each.target].copy; !copy.empty())
          xmlSetProp(each.element, Xml("catalog"), Xml(copy));
      xmlNodeSetBase(root, Xml(BaseOf(*root)));
      xmlChar *bytes = nullptr;
      int size = 0;
      xmlDocDumpMemory(file.read.document.Get(), &bytes, &size);
      copies.emplace_back(TakeXmlText(bytes));
      file.copy = copies.back().Path();
    }
    return {};
  }

private:
  // The entries that are looked at when nothing is found, up to the limit.
  [[nodiscard]] uint64_t CountEntries(size_t kind) const {
    std::vector<uint64_t> counts(files.size(), 0);
    for (int depth = 0; depth < maxDepth; ++depth) {
      std::vector<uint64_t> deeper;
      for (const CatalogFile &file : files) {
        uint64_t count = file.entries;
        std::set<size_t> delegated; // libxml2 goes to each once
        for (const auto &[isOf, target, element] : file.references)
          if (isOf == nextCatalog || (isOf == kind && delegated.insert(target).second))
            count = std::min(count + counts[target], maxEntries);
        deeper.push_back(count);
      }
      counts = std::move(deeper);
    }
    return counts.front();
  }

  size_t IndexOf(const std::string &path) {
    // A folder that links to itself gives a file any number of names.
    const auto [found, isNew] = indices.try_emplace(kit::RealPath(path), files.size());
    if (isNew)
      files.emplace_back().path = path;
    return found->second;
  }

  void Read(size_t index) {
    const std::string path = files[index].path;
    if (!kit::IsFile(path))
      return;
    XmlDocument read = ReadXmlFile(path);
    xmlNode *root = read.document ? xmlDocGetRootElement(read.document.Get()) : nullptr;
    if (root)
      read.document.Get()->URL = xmlStrdup(Xml(kit::PathToUrl(path)));
    for (xmlNode *at = root; at; at = Following(at, root)) {
      ++files[index].entries;
      Follow(index, *at);
    }
    files[index].read = std::move(read);
  }

  // In document order, without a stack: elements nest as deeply as they like.
  static xmlNode *Following(xmlNode *node, const xmlNode *root) {
    if (xmlNode *child = xmlFirstElementChild(node))
      return child;
    for (; node != root; node = node->parent)
      if (xmlNode *sibling = xmlNextElementSibling(node))
        return sibling;
    return nullptr;
  }

  void Follow(size_t index, xmlNode &element) {
    const auto *const kind = std::ranges::find(references, LocalName(element));
    if (kind == references.end())
      return;
    const std::string url = TakeXmlText(xmlBuildURI(Xml(Attribute(element, "catalog")), Xml(BaseOf(element))));
    const size_t target = IndexOf(kit::UrlToPath(url));
    files[index].references.push_back({static_cast<size_t>(kind - references.begin()), target, &element});
  }

  std::map<std::string, size_t> indices;
  std::vector<CatalogFile> files;
  std::vector<size_t> finished; // by the end of the way through them
};

} // namespace

CatalogCheck CheckCatalog(const std::string &file) {
  CatalogGraph graph(file);
  CatalogCheck check;
  check.hasRing = graph.CutRings();
  check.problem = graph.FindProblem();
  if (check.problem.empty() && check.hasRing)
    check.problem = graph.Copy(check.copies);
  return check;
}

} // namespace host
