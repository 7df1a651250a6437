// What an edit of a catalogue comes to, given the file as it stands: something to save, or something to show or ask
// first. Deciding neither shows nor asks, so that it can be done while the file is locked; what a person agreed to is
// remembered, and the edit is decided again.
#ifndef CATALOGUE_DECISION_H
#define CATALOGUE_DECISION_H

#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "report/messages.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace catalogue {

struct Decision {
  std::optional<TransformationList> list = {}; // to be saved
  EditResult otherwise = EditResult::Failed;   // the result without a list, or when the question is declined
  std::string text = {};                       // to be shown or asked; empty when all has been said
  int32_t alert = V_ALERT_PLAIN;
};

// The questions that a person has agreed to.
using Agreed = std::set<std::string>;

[[nodiscard]] Decision End(EditResult result);
[[nodiscard]] Decision Show(report::MessageId id, std::string_view value, EditResult result);
// Shows or asks. True when it was a question that the person agreed to, which is noted.
[[nodiscard]] bool Settle(const Decision &decision, Agreed &agreed);

// The following give nothing when the edit may go on.

[[nodiscard]] std::optional<Decision> CheckTarget(const std::string &path, const LoadResult &loaded,
                                                  const Agreed &agreed, InvalidFile invalid);
// What cannot be loaded counts as empty, so saving would drop what it holds.
[[nodiscard]] std::optional<Decision> CheckLoss(const std::string &path, const LoadResult &loaded, const Agreed &agreed,
                                                InvalidFile invalid);
[[nodiscard]] std::optional<Decision> CheckReplacement(const Transformation &record, const LoadResult &loaded,
                                                       const Agreed &agreed);
[[nodiscard]] std::optional<Decision> CheckFields(const Transformation &record, IsKnownProcessor isKnown,
                                                  const Agreed &agreed);

} // namespace catalogue

#endif
