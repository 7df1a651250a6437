// How a dialog is declared: one row per item says what it holds, when it is sensitive and visible, and what its event
// does. The driver below is the same for all dialogs: on an event it takes what the person changed into the state, runs
// the row's reaction and shows the state again. A state is a struct with a member `dialog`, its handle.
#ifndef DIALOGS_ITEM_ROWS_H
#define DIALOGS_ITEM_ROWS_H

#include "dialogs/item_access.h"

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <variant>
#include <vector>

namespace dialogs {

struct HoldsNothing {};
// A text box.
template <class State> struct HoldsText { std::string State::*text; };
// A radio button: on while the field has this value.
template <class State> struct HoldsOneOf {
  uint32_t State::*field;
  uint32_t value;
};
// A check box.
template <class State> struct HoldsFlag { bool State::*flag; };
// A check box that is on while the field is anything but 0; it turns it to 1 or 0.
template <class State> struct HoldsSwitch { uint32_t State::*field; };
// A list or pop-up.
template <class State> struct HoldsChoice {
  std::vector<std::string> State::*labels;
  int32_t State::*chosen;
};

template <class State> struct ItemRow {
  using Text = HoldsText<State>;
  using OneOf = HoldsOneOf<State>;
  using Flag = HoldsFlag<State>;
  using Switch = HoldsSwitch<State>;
  using Choice = HoldsChoice<State>;
  using Held = std::variant<HoldsNothing, Text, OneOf, Flag, Switch, Choice>;
  using Rule = bool (*)(const State &);

  int32_t item;
  Held held = HoldsNothing();
  Rule isSensitive = nullptr; // always, without a rule
  Rule isVisible = nullptr;
  void (*react)(State &) = nullptr;
};

template <class Value> bool Assign(Value &place, const Value &value) {
  const bool changed = place != value;
  place = value;
  return changed;
}

// Takes the item's content into the state; says whether that changed it.
template <class State> class TakeHeld {
public:
  TakeHeld(State &target, int32_t itemNumber) : state(target), item(itemNumber) {}

  bool operator()(const HoldsNothing &) const { return false; }
  bool operator()(const HoldsText<State> &held) const { return Assign(state.*held.text, ItemText(state.dialog, item)); }
  bool operator()(const HoldsOneOf<State> &held) const { return Assign(state.*held.field, held.value); }
  bool operator()(const HoldsFlag<State> &held) const {
    return Assign(state.*held.flag, ItemState(state.dialog, item) != 0);
  }
  bool operator()(const HoldsSwitch<State> &held) const {
    return Assign(state.*held.field, static_cast<uint32_t>(ItemState(state.dialog, item) != 0));
  }
  bool operator()(const HoldsChoice<State> &held) const {
    return Assign(state.*held.chosen, ItemState(state.dialog, item));
  }

private:
  State &state;
  int32_t item;
};

// Shows what the state holds. A button or check box that is insensitive shows off, whatever the state remembers.
template <class State> class ShowHeld {
public:
  ShowHeld(const State &source, int32_t itemNumber, bool isSensitive)
      : state(source), item(itemNumber), sensitive(isSensitive) {}

  void operator()(const HoldsNothing &) const {}
  void operator()(const HoldsText<State> &held) const { SetItemText(state.dialog, item, state.*held.text); }
  void operator()(const HoldsOneOf<State> &held) const { ShowSwitch(state.*held.field == held.value); }
  void operator()(const HoldsFlag<State> &held) const { ShowSwitch(state.*held.flag); }
  void operator()(const HoldsSwitch<State> &held) const { ShowSwitch(state.*held.field != 0); }
  void operator()(const HoldsChoice<State> &held) const {
    SetItemChoices(state.dialog, item, state.*held.labels, state.*held.chosen);
  }

private:
  void ShowSwitch(bool on) const { SetItemState(state.dialog, item, sensitive && on); }

  const State &state;
  int32_t item;
  bool sensitive;
};

// Rows of notices, which have negative numbers, show nothing.
template <class State> void ShowItems(const State &state, std::span<const ItemRow<State>> rows) {
  for (const ItemRow<State> &row : rows) {
    if (row.item < 0)
      continue;
    const bool sensitive = !row.isSensitive || row.isSensitive(state);
    std::visit(ShowHeld<State>(state, row.item, sensitive), row.held);
    SetItemSensitive(state.dialog, row.item, sensitive);
    SetItemVisible(state.dialog, row.item, !row.isVisible || row.isVisible(state));
  }
}

// Events of other items change nothing. A state that wants to know which event changed what it holds
// has a member NoteChange.
template <class State> void ServeEvent(State &state, std::span<const ItemRow<State>> rows, int32_t item) {
  const auto row = std::ranges::find(rows, item, &ItemRow<State>::item);
  if (row == rows.end())
    return;
  const bool changed = std::visit(TakeHeld<State>(state, item), row->held);
  if constexpr (requires { state.NoteChange(); })
    if (changed)
      state.NoteChange();
  if (row->react)
    row->react(state);
  ShowItems(state, rows);
}

} // namespace dialogs

#endif
