#include "host/fronts/front.h"

#include "host/dialogs/dialog_driver.h"

namespace host {

void Front::PlayDialog(DialogModel &dialog, const std::function<void(DialogHand &hand)> &player) {
  ModelHand hand(dialog);
  player(hand);
}

std::string_view WithoutLineEnd(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r'))
    text.remove_suffix(1);
  return text;
}

} // namespace host
