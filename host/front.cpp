#include "host/front.h"

#include "host/dialog_hand.h"

namespace host {

void Front::PlayDialog(DialogModel &dialog, const std::function<void(DialogHand &hand)> &player) {
  ModelHand hand(dialog);
  player(hand);
}

} // namespace host
