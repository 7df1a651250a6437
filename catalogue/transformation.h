// One named run scenario and a whole catalogue of them, as values: copies are deep, destruction frees everything.
// All strings are UTF-8. In all of catalogue/ a function answers with a result enum, a flag or nothing when it fails,
// and says why in the transformation log.
#ifndef CATALOGUE_TRANSFORMATION_H
#define CATALOGUE_TRANSFORMATION_H

#include "kit/values.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

// Numbers cross in replies; a file may bring others, which are kept.
enum class OutputLocationKind : int32_t {
  DoNotSave = V_SAVE_NOT,
  Prompt = V_SAVE_WHERE_ASKED,
  DirPath = V_SAVE_IN_FOLDER,
  SameLocationAsSource = V_SAVE_BESIDE_INPUT
};
enum class OpenOutputKind : int32_t { None = V_OPEN_NOT, Vellis = V_OPEN_IN_HOST, DefaultProgram = V_OPEN_BY_DEFAULT };

struct TransformationOutput {
  OutputLocationKind outputLocation = OutputLocationKind::DoNotSave;
  std::string dirPath; // with DirPath
  std::string suffix;  // with SameLocationAsSource
  OpenOutputKind openOutput = OpenOutputKind::None;

  bool operator==(const TransformationOutput &) const = default;
};

struct Transformation {
  std::string name; // the key within a catalogue, compared byte for byte
  bool usePI = false;
  std::string xslPath; // not used with usePI
  std::string processor;
  std::vector<std::string> parameters; // name and expression alternately; "<no value>" for none
  TransformationOutput output;

  bool operator==(const Transformation &) const = default;
};

// In file order; no two have the same name.
using TransformationList = std::vector<Transformation>;

// The index of the record of exactly that name, or -1, also for an empty name.
[[nodiscard]] int32_t FindTransformation(const TransformationList &list, std::string_view name);

// The form in which a transformation goes to another client: one nested value each.
void AppendTransformation(kit::TypedValues &reply, const Transformation &transformation);

} // namespace catalogue

#endif
