#include "dialogs/choose_manage_dialog.h"

#include "catalogue/location.h"
#include "catalogue/reader.h"
#include "catalogue/writer.h"
#include "dialogs/dialog_numbers.h"
#include "dialogs/item_rows.h"
#include "dialogs/new_edit_dialog.h"
#include "kit/paths.h"
#include "kit/values.h"
#include "report/messages.h"
#include "report/run_event.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace dialogs {

namespace {

using report::MessageId;

enum Source : uint32_t { FromDefaultFile = 1, FromApplication = 2, FromFile = 3 };
enum Item : int32_t {
  DefaultFileRadio = 1,
  ApplicationRadio = 2,
  ApplicationPopUp = 3,
  TransformationList = 4,
  EditButton = 5,
  NewButton = 6,
  DeleteButton = 7,
  OkButton = 8,
  CloseButton = 9,
  FileRadio = 11,
  PathBox = 12,
  BrowseButton = 13
};

struct ChooseManageDialog {
  std::vector<std::string> appNames; // behind a heading
  std::vector<std::string> trNames;
  uint32_t source = FromApplication;
  ChooseMode mode = ChooseMode::ForActiveDocument;
  std::string trName;
  std::string appName;
  std::string trFilePath;
  V_ObjectT dialog = 0;

  // What the items show beside that. The list may be empty although `trNames` still holds what it showed before.
  std::vector<std::string> shownNames;
  std::string pathText;
  int32_t chosenApplication = -1;
  int32_t chosenTransformation = -1;
};
using State = ChooseManageDialog;

State &TheDialog() {
  static State state;
  return state;
}

std::string EntryAt(const std::vector<std::string> &names, int32_t index) {
  return index >= 0 && static_cast<size_t>(index) < names.size() ? names[static_cast<size_t>(index)] : std::string();
}

int32_t PositionOf(const std::vector<std::string> &names, const std::string &name) {
  const auto found = std::ranges::find(names, name);
  return found == names.end() ? -1 : static_cast<int32_t>(found - names.begin());
}

void FillApplications(State &state) {
  const V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT);
  const std::vector<std::string> names = state.mode == ChooseMode::ForActiveDocument
                                             ? catalogue::GetApplicationsForDocument(document)
                                             : catalogue::GetAllApplications();
  state.appNames = {report::LoadMessage(MessageId::Choices)};
  state.appNames.insert(state.appNames.end(), names.begin(), names.end());
  const std::string wanted =
      state.appName.empty() && document ? kit::GetString(document, V_OP_APPLICATION) : state.appName;
  const int32_t position = PositionOf(state.appNames, wanted);
  state.chosenApplication = position >= 1 ? position : names.empty() ? 0 : 1;
}

void ReadApplication(State &state) {
  state.appName = state.chosenApplication >= 1 ? EntryAt(state.appNames, state.chosenApplication) : std::string();
  state.trFilePath = catalogue::GetTransformationFile(state.appName);
}

void ReadSource(State &state) {
  if (state.source == FromApplication) {
    ReadApplication(state);
    return;
  }
  state.appName.clear();
  state.trFilePath = state.source == FromFile ? state.pathText : catalogue::GetDefaultTransformationFile();
}

void ReadSelection(State &state) { state.trName = EntryAt(state.trNames, state.chosenTransformation); }

void FillList(State &state) {
  const catalogue::LoadResult loaded = catalogue::LoadTransformationFile(state.trFilePath);
  if (loaded.status == catalogue::LoadStatus::FileMissing ||
      loaded.status == catalogue::LoadStatus::NotATransformationFile)
    report::ReportProblem(loaded.status == catalogue::LoadStatus::FileMissing ? MessageId::FileMissing
                                                                              : MessageId::NotATransformationFile,
                          {state.trFilePath});
  state.trNames.clear();
  for (const catalogue::Transformation &each : loaded.list.value_or(catalogue::TransformationList()))
    state.trNames.push_back(each.name);
  state.shownNames = state.trNames;
  const int32_t position = PositionOf(state.trNames, state.trName);
  state.chosenTransformation = position >= 0 ? position : state.trNames.empty() ? -1 : 0;
}

void ChangeSource(State &state) {
  ReadSource(state);
  FillList(state);
}

void ChangeApplication(State &state) {
  state.source = FromApplication;
  ChangeSource(state);
}

void ChangePath(State &state) {
  state.trFilePath = state.pathText;
  if (kit::IsFile(catalogue::ResolvePath(state.trFilePath))) {
    FillList(state);
    return;
  }
  state.shownNames.clear();
  state.chosenTransformation = -1;
}

void BrowsePath(State &state) {
  const std::string path = ChoosePath(V_CHOOSE_OPEN, MessageId::SelectTransformationFile, MessageId::XmlFilter);
  if (!path.empty())
    state.trFilePath = state.pathText = path;
  FillList(state);
  V_ApiKeepDialogUp(state.dialog);
}

void TakeChoice(State &state) {
  ReadSource(state);
  ReadSelection(state);
}

void EditSelected(State &state) {
  TakeChoice(state);
  ChangeTransformation(state.trFilePath, state.trName);
  FillList(state);
  V_ApiKeepDialogUp(state.dialog);
}

void ServeList(State &state) {
  if (!V_ApiGetInt(state.dialog, V_DP_DOUBLE_CLICK))
    return;
  if (state.mode == ChooseMode::Manage)
    EditSelected(state);
  else
    TakeChoice(state);
}

void MakeNew(State &state) {
  MakeNewTransformation(state.trFilePath);
  FillList(state);
  V_ApiKeepDialogUp(state.dialog);
}

void DeleteSelected(State &state) {
  TakeChoice(state);
  const std::string question = report::LoadMessage(MessageId::DeleteSelectedTransformation);
  if (V_ApiAlert(question.c_str(), V_ALERT_YES_NO_DEFAULT_NO) == V_ANSWER_PROCEED) {
    const catalogue::EditResult result = catalogue::DeleteTransformation(state.trFilePath, state.trName);
    if (result == catalogue::EditResult::Failed)
      V_ApiAlert(report::LoadMessage(MessageId::TransformationNotDeleted).c_str(), V_ALERT_PLAIN);
    if (result == catalogue::EditResult::Saved)
      FillList(state);
  }
  V_ApiKeepDialogUp(state.dialog);
}

void Forget(State &state) {
  state.trName.clear();
  state.appName.clear();
  state.trFilePath.clear();
}

void Initialise(State &state) {
  FillApplications(state);
  ChangeSource(state);
}

bool Manages(const State &state) { return state.mode == ChooseMode::Manage; }
bool HasSelection(const State &state) { return state.chosenTransformation >= 0; }
bool IsFromFile(const State &state) { return state.source == FromFile; }

bool IsFromApplication(const State &state) { return state.source == FromApplication; }
bool CanAccept(const State &state) { return Manages(state) || HasSelection(state); }

using Row = ItemRow<State>;
constexpr std::array rows = {
    Row{.item = V_ITEM_INITIALISE, .react = Initialise},
    Row{.item = V_ITEM_FRAME_CLOSED, .react = Forget},
    Row{.item = DefaultFileRadio, .held = Row::OneOf{&State::source, FromDefaultFile}, .react = ChangeSource},
    Row{.item = ApplicationRadio, .held = Row::OneOf{&State::source, FromApplication}, .react = ChangeSource},
    Row{.item = FileRadio, .held = Row::OneOf{&State::source, FromFile}, .react = ChangeSource},
    Row{.item = ApplicationPopUp,
        .held = Row::Choice{&State::appNames, &State::chosenApplication},
        .isSensitive = IsFromApplication,
        .react = ChangeApplication},
    Row{.item = TransformationList,
        .held = Row::Choice{&State::shownNames, &State::chosenTransformation},
        .react = ServeList},
    Row{.item = PathBox, .held = Row::Text{&State::pathText}, .isSensitive = IsFromFile, .react = ChangePath},
    Row{.item = BrowseButton, .isSensitive = IsFromFile, .react = BrowsePath},
    Row{.item = EditButton, .isSensitive = HasSelection, .isVisible = Manages, .react = EditSelected},
    Row{.item = DeleteButton, .isSensitive = HasSelection, .isVisible = Manages, .react = DeleteSelected},
    Row{.item = NewButton, .isVisible = Manages, .react = MakeNew},
    Row{.item = OkButton, .isSensitive = CanAccept, .react = TakeChoice},
    Row{.item = CloseButton, .react = Forget},
};

} // namespace

ChosenTransformation OpenChooseManageDialog(ChooseMode mode) {
  State &state = TheDialog();
  if (!state.dialog) {
    state.dialog = OpenDialog("choose_manage_xslt");
    if (!state.dialog)
      return {};
    V_ApiSetInt(V_ApiDialogItem(state.dialog, TransformationList), V_IP_REPORTS_DOUBLE_CLICK, 1);
  }
  state.mode = mode;
  const MessageId title = Manages(state) ? MessageId::ManageTransformationsTitle : MessageId::ChooseTransformationTitle;
  V_ApiSetString(state.dialog, V_DP_TITLE, report::LoadMessage(title).c_str());
  V_ApiRunDialog(chooseManageDialogNumber, state.dialog);
  return {state.trFilePath, state.trName, state.appName};
}

void ServeChooseManageEvent(int32_t item) { ServeEvent<State>(TheDialog(), rows, item); }

void ForgetChooseManageState() { TheDialog() = State(); }

} // namespace dialogs
