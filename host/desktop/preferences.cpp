#include "host/desktop/preferences.h"

#include "host/desktop/processor_check.h"
#include "host/desktop/record_page.h"
#include "host/desktop/top_window.h"
#include "host/desktop/window_events.h"

#include <wx/dialog.h>
#include <wx/notebook.h>
#include <wx/weakref.h>

#include <sstream>

namespace desktop {

std::string JoinLines(const std::vector<std::string> &items) {
  std::string text;
  for (const std::string &item : items)
    text.append(text.empty() ? "" : "\n").append(item);
  return text;
}

std::vector<std::string> SplitLines(const std::string &text) {
  std::vector<std::string> items;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);)
    if (!line.empty())
      items.push_back(line);
  return items;
}

namespace {

using host::ApplicationSetting;
using host::Configuration;
using host::ProcessorSetting;

using ProcessorPage = RecordPage<ProcessorSetting>;
using ApplicationPage = RecordPage<ApplicationSetting>;

const ProcessorPage::Rules processorRules = {
    {"Name:", &ProcessorSetting::name, "What transformations call it"},
    {"Class path:", &ProcessorSetting::classPath, "Archives, with a semicolon between them"},
    {"Class:", &ProcessorSetting::className, "Its TransformerFactory"},
};

const ApplicationPage::Rules applicationRules = {
    {"Name:", &ApplicationSetting::name, "What it is called"},
    {"Catalogue:", &ApplicationSetting::catalogue, "The file of its transformations"},
    {"Root elements:", &ApplicationSetting::roots, "One a line"},
    {"Public ids:", &ApplicationSetting::publicIds, "One a line; * stands for anything"},
    {"Namespaces:", &ApplicationSetting::namespaces, "One a line; * stands for anything"},
    {"File names:", &ApplicationSetting::files, "One a line, such as *.dita"},
};

class Preferences : public wxDialog {
public:
  Preferences(wxWindow *parent, const Configuration &given)
      : wxDialog(parent, wxID_ANY, "Preferences", wxDefaultPosition, wxDefaultSize,
                 wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER),
        before(given), book(new wxNotebook(this, wxID_ANY)),
        processors(new ProcessorPage(book, given.processors, processorRules, "New processor")),
        applications(new ApplicationPage(book, given.applications, applicationRules, "New application")) {
    AddCheck();
    book->AddPage(processors, "Processors");
    book->AddPage(applications, "Applications");
    book->AddPage(MakeMainPage(), "Catalogs and Java");
    auto *sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(book, wxSizerFlags(1).Expand().Border());
    sizer->Add(CreateButtonSizer(wxOK | wxCANCEL), wxSizerFlags().Expand().Border());
    SetSizerAndFit(sizer);
    SetSize(FromDIP(wxSize(760, 520)));
    CentreOnParent();
    NoteActivation(*this);
  }

  [[nodiscard]] host::ConfigurationChange Change() const {
    host::ConfigurationChange change{before, before, processors->Origins(), applications->Origins()};
    change.after.processors = processors->Records();
    change.after.applications = applications->Records();
    TakeMain(change.after);
    return change;
  }

private:
  void AddCheck() {
    auto *row = new wxBoxSizer(wxHORIZONTAL);
    auto *check = new wxButton(processors, wxID_ANY, "C&heck");
    result = new wxStaticText(processors, wxID_ANY, {}, wxDefaultPosition, wxDefaultSize,
                              wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
    row->Add(check);
    row->Add(result, wxSizerFlags(1).CentreVertical().Border(wxLEFT));
    processors->AddBelow(row);
    processors->onChange = [this] { ShowResult({}); };
    check->Bind(wxEVT_BUTTON, [this](wxCommandEvent &) {
      const ProcessorSetting *chosen = processors->Chosen();
      if (!chosen)
        return;
      ShowResult("Loading...");
      // The window may be closed before the answer arrives.
      const wxWeakRef<Preferences> self(this);
      CheckProcessor(Change().after, *chosen, [self](const wxString &text) {
        if (self)
          self->ShowResult(text);
        NoteEvent("checked", FromWx(text));
      });
    });
  }

  void ShowResult(const wxString &text) {
    result->SetLabel(text);
    result->SetToolTip(text);
  }

  wxWindow *MakeMainPage() {
    auto *page = new wxPanel(book);
    auto *grid = new wxFlexGridSizer(2, FromDIP(wxSize(8, 8)));
    grid->AddGrowableCol(1);
    const auto add = [&](const wxString &label, const std::string &value, const wxString &hint, bool isList) {
      auto *box = new wxTextCtrl(page, wxID_ANY, ToWx(value), wxDefaultPosition,
                                 isList ? FromDIP(wxSize(-1, 80)) : wxDefaultSize, isList ? wxTE_MULTILINE : 0);
      if (!isList)
        box->SetHint(hint);
      box->SetToolTip(hint);
      grid->Add(new wxStaticText(page, wxID_ANY, label),
                isList ? wxSizerFlags().Border(wxTOP, FromDIP(6)) : wxSizerFlags().CentreVertical());
      grid->Add(box, wxSizerFlags().Expand());
      return box;
    };
    catalogs = add("XML catalogs:", JoinLines(before.catalogs), "One file a line", true);
    javaHome = add("Java:", before.javaHome, "The one that is found by itself", false);
    javaOptions = add("Java options:", JoinLines(before.javaOptions), "One a line, such as -Xmx2g", true);
    defaultCatalogue =
        add("Default transformations:", before.defaultCatalogue, "The file of the default transformations", false);
    editor = add("Editor:", before.editor, "For instance: code -g {file}:{line}:{column}", false);
    auto *sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(grid, wxSizerFlags(1).Expand().Border());
    page->SetSizer(sizer);
    return page;
  }

  void TakeMain(Configuration &after) const {
    after.catalogs = SplitLines(FromWx(catalogs->GetValue()));
    after.javaHome = FromWx(javaHome->GetValue());
    after.javaOptions = SplitLines(FromWx(javaOptions->GetValue()));
    after.defaultCatalogue = FromWx(defaultCatalogue->GetValue());
    after.editor = FromWx(editor->GetValue());
  }

  Configuration before;
  wxNotebook *book;
  ProcessorPage *processors;
  ApplicationPage *applications;
  wxStaticText *result = nullptr;
  wxTextCtrl *catalogs = nullptr;
  wxTextCtrl *javaHome = nullptr;
  wxTextCtrl *javaOptions = nullptr;
  wxTextCtrl *defaultCatalogue = nullptr;
  wxTextCtrl *editor = nullptr;
};

} // namespace

std::optional<host::ConfigurationChange> AskForPreferences(wxWindow *parent, const Configuration &configuration) {
  Preferences window(parent, configuration);
  const InnermostWindow innermost(&window);
  return window.ShowModal() == wxID_OK ? std::optional(window.Change()) : std::nullopt;
}

} // namespace desktop
