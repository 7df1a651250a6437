// A page of preferences that lists records of one kind and shows the chosen one's fields.
#ifndef HOST_DESKTOP_RECORD_PAGE_H
#define HOST_DESKTOP_RECORD_PAGE_H

#include "host/desktop/window_events.h"
#include "host/desktop/window_texts.h"

#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace desktop {

// One value per line, for lists in a text box.
[[nodiscard]] std::string JoinLines(const std::vector<std::string> &items);
[[nodiscard]] std::vector<std::string> SplitLines(const std::string &text);

template <class Record> struct FieldRule {
  const char *label;
  std::variant<std::string Record::*, std::vector<std::string> Record::*> field;
  const char *hint;
};

template <class Record> class RecordPage : public wxPanel {
public:
  using Rules = std::vector<FieldRule<Record>>;

  RecordPage(wxWindow *parent, std::vector<Record> given, Rules fieldRules, const wxString &newName)
      : wxPanel(parent), records(std::move(given)), rules(std::move(fieldRules)), nameOfNew(newName),
        list(new wxListBox(this, wxID_ANY)) {
    for (size_t index = 0; index < records.size(); ++index)
      origins.push_back(static_cast<int>(index));
    auto *left = new wxBoxSizer(wxVERTICAL);
    left->Add(list, wxSizerFlags(1).Expand());
    left->Add(MakeButtons(), wxSizerFlags().Expand().Border(wxTOP));
    auto *all = new wxBoxSizer(wxHORIZONTAL);
    all->Add(left, wxSizerFlags(2).Expand().Border());
    right = new wxBoxSizer(wxVERTICAL);
    right->Add(MakeFields(), wxSizerFlags(1).Expand());
    all->Add(right, wxSizerFlags(5).Expand().Border());
    SetSizer(all);
    list->Bind(wxEVT_LISTBOX, [this](wxCommandEvent &) { ShowRecord(); });
    ShowList(0);
  }

  [[nodiscard]] const std::vector<Record> &Records() const { return records; }
  [[nodiscard]] const std::vector<int> &Origins() const { return origins; }
  // Null when none is chosen.
  [[nodiscard]] const Record *Chosen() const {
    const int at = list->GetSelection();
    return at == wxNOT_FOUND ? nullptr : &records[static_cast<size_t>(at)];
  }
  // Below the fields.
  void AddBelow(wxSizer *sizer) { right->Add(sizer, wxSizerFlags().Expand().Border(wxTOP)); }
  std::function<void()> onChange = [] {};

private:
  wxSizer *MakeButtons() {
    auto *sizer = new wxBoxSizer(wxHORIZONTAL);
    const std::array<std::pair<const char *, void (RecordPage::*)()>, 3> buttons = {
        std::pair{"&Add", &RecordPage::Add}, std::pair{"&Remove", &RecordPage::Remove},
        std::pair{"Move &Up", &RecordPage::MoveUp}};
    for (const auto &[label, act] : buttons) {
      auto *button = new wxButton(this, wxID_ANY, label, wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
      button->Bind(wxEVT_BUTTON, [this, act = act](wxCommandEvent &) { (this->*act)(); });
      sizer->Add(button, wxSizerFlags(1).Border(wxRIGHT, FromDIP(3)));
    }
    return sizer;
  }

  wxSizer *MakeFields() {
    auto *grid = new wxFlexGridSizer(2, FromDIP(wxSize(8, 8)));
    grid->AddGrowableCol(1);
    for (size_t index = 0; index < rules.size(); ++index) {
      const bool isList = rules[index].field.index() == 1;
      auto *box = new wxTextCtrl(this, wxID_ANY, {}, wxDefaultPosition,
                                 isList ? FromDIP(wxSize(-1, 64)) : wxDefaultSize, isList ? wxTE_MULTILINE : 0);
      if (!isList)
        box->SetHint(rules[index].hint);
      box->SetToolTip(rules[index].hint);
      box->Bind(wxEVT_TEXT, [this, index](wxCommandEvent &) { TakeField(index); });
      grid->Add(new wxStaticText(this, wxID_ANY, rules[index].label),
                isList ? wxSizerFlags().Border(wxTOP, FromDIP(6)) : wxSizerFlags().CentreVertical());
      grid->Add(box, wxSizerFlags().Expand());
      boxes.push_back(box);
    }
    return grid;
  }

  void ShowList(int chosen) {
    list->Clear();
    for (const Record &record : records)
      list->Append(ToWx(record.name));
    list->SetSelection(chosen < static_cast<int>(records.size()) ? chosen : static_cast<int>(records.size()) - 1);
    ShowRecord();
  }

  void ShowRecord() {
    const Record *record = Chosen();
    for (size_t index = 0; index < rules.size(); ++index) {
      boxes[index]->Enable(record != nullptr);
      boxes[index]->ChangeValue(record ? ToWx(ReadField(*record, rules[index])) : wxString());
    }
    onChange();
  }

  void TakeField(size_t index) {
    const int at = list->GetSelection();
    if (at == wxNOT_FOUND)
      return;
    Record &record = records[static_cast<size_t>(at)];
    const std::string text = FromWx(boxes[index]->GetValue());
    if (const auto *single = std::get_if<0>(&rules[index].field))
      record.*(*single) = text;
    else
      record.*std::get<1>(rules[index].field) = SplitLines(text);
    list->SetString(static_cast<unsigned>(at), ToWx(record.name));
    onChange();
  }

  static std::string ReadField(const Record &record, const FieldRule<Record> &rule) {
    if (const auto *single = std::get_if<0>(&rule.field))
      return record.*(*single);
    return JoinLines(record.*std::get<1>(rule.field));
  }

  void Add() {
    Record record;
    record.name = FromWx(nameOfNew);
    records.push_back(std::move(record));
    origins.push_back(-1);
    ShowList(static_cast<int>(records.size()) - 1);
    boxes.front()->SetFocus();
    boxes.front()->SelectAll();
    NoteEvent("added", records.back().name);
  }

  void Remove() {
    const int at = list->GetSelection();
    if (at == wxNOT_FOUND)
      return;
    records.erase(records.begin() + at);
    origins.erase(origins.begin() + at);
    ShowList(at);
  }

  void MoveUp() {
    const int at = list->GetSelection();
    if (at < 1)
      return;
    std::swap(records[static_cast<size_t>(at)], records[static_cast<size_t>(at - 1)]);
    std::swap(origins[static_cast<size_t>(at)], origins[static_cast<size_t>(at - 1)]);
    ShowList(at - 1);
  }

  std::vector<Record> records;
  std::vector<int> origins; // index in the given records; -1 for a new one
  Rules rules;
  wxString nameOfNew;
  wxListBox *list;
  wxBoxSizer *right = nullptr;
  std::vector<wxTextCtrl *> boxes;
};

} // namespace desktop

#endif
