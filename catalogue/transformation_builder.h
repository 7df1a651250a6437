// Makes transformations of the elements of a catalogue, as they are parsed. Children may come in any order, unknown
// ones are passed over: what is valid is the schema's business.
#ifndef CATALOGUE_TRANSFORMATION_BUILDER_H
#define CATALOGUE_TRANSFORMATION_BUILDER_H

#include "catalogue/parse_file.h"
#include "catalogue/transformation.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace catalogue {

class TransformationBuilder : public ElementHandler {
public:
  void StartElement(const ElementStart &element) override;
  void EndElement() override;
  void Text(std::string_view more) override { text.append(more); }

  // Of several with one name the first counts; those without a name are all kept.
  [[nodiscard]] TransformationList TakeList() { return std::move(list); }

private:
  std::vector<uint8_t> open; // for each element that is open the index of its rule
  std::string text;          // of the innermost element that has any
  Transformation record;
  TransformationList list;
  std::unordered_set<std::string> names;
};

} // namespace catalogue

#endif
