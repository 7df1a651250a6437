#include "host/fronts/front.h"

#include "host/dialogs/dialog_driver.h"

namespace host {

const QuestionWords &WordsOf(AlertKind kind) {
  static constexpr QuestionWords alert{"alert", "ok", ""};
  static constexpr QuestionWords yesNo{"yes-no", "yes", "no"};
  static constexpr QuestionWords okCancel{"ok-cancel", "ok", "cancel"};
  return kind == AlertKind::Plain ? alert : kind == AlertKind::OkCancel ? okCancel : yesNo;
}

void Front::PlayDialog(DialogModel &dialog, const std::function<void(DialogDriver &driver)> &player) {
  ModelDriver driver(dialog);
  player(driver);
}

std::string_view WithoutLineEnd(std::string_view text) {
  while (text.ends_with('\n') || text.ends_with('\r'))
    text.remove_suffix(1);
  return text;
}

} // namespace host
