#include "dialogs/advanced_run_dialog.h"

#include "catalogue/location.h"
#include "catalogue/xml_text.h"
#include "dialogs/choose_manage_dialog.h"
#include "dialogs/dialog_numbers.h"
#include "dialogs/item_rows.h"
#include "kit/names.h"
#include "kit/request_builder.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
#include <optional>

namespace dialogs {

namespace {

using report::MessageId;

enum Scope : uint32_t { CurrentFile = 1, AllOpenFiles = 2, Folder = 3 };
enum Choice : uint32_t { ByTransformation = 1, ByXslFile = 2 };
enum Item : int32_t {
  CurrentFileRadio = 1,
  AllOpenFilesRadio = 2,
  FolderRadio = 3,
  FolderBox = 4,
  BrowseFolder = 5,
  ChildrenCheck = 6,
  TransformationRadio = 8,
  XslRadio = 9,
  TransformationBox = 10,
  BrowseTransformation = 11,
  XslBox = 12,
  BrowseXsl = 13,
  RunButton = 14,
  CancelButton = 15,
  SubFoldersCheck = 16
};

struct AdvancedRunDialog {
  uint32_t scope = CurrentFile;
  uint32_t choice = ByTransformation;
  bool includeChildren = false;
  std::string trName;
  std::string trFilePath; // used without an application
  std::string appName;
  std::string xslPath;
  std::string folderPath;
  bool includeSubFolders = false;
  std::string request;
  V_ObjectT dialog = 0;

  std::string nameText;  // what the transformation box shows; it may have been typed
  std::string foundName; // the last one that was chosen, or found after it had been typed
  bool hasCurrentFile = false;
  bool hasOpenFiles = false;
  bool hasChildren = false;
};
using State = AdvancedRunDialog;

State &TheDialog() {
  static State state;
  return state;
}

bool HasOpenFiles() {
  for (V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_FIRST_OPEN_DOCUMENT); document != 0;
       document = V_ApiGetObject(document, V_OP_NEXT_OPEN_DOCUMENT))
    if (V_ApiGetInt(document, V_OP_TYPE) == V_TYPE_DOCUMENT && V_ApiGetInt(document, V_OP_SHOWN))
      return true;
  return false;
}

// Keeps the scope where the open documents allow it.
void RefreshScope(State &state) {
  const V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT);
  const V_ObjectT book = V_ApiGetObject(V_SESSION, V_SP_ACTIVE_BOOK);
  state.hasCurrentFile = document || book;
  state.hasOpenFiles = HasOpenFiles();
  state.hasChildren = book || (document && V_ApiGetInt(document, V_OP_IS_DITA_MAP));
  if (state.scope == Folder || (state.scope == AllOpenFiles && state.hasOpenFiles))
    return;
  state.scope = state.hasCurrentFile ? CurrentFile : Folder;
}

void Initialise(State &state) {
  state.request.clear();
  RefreshScope(state);
}

bool RunsCurrentFile(const State &state) { return state.scope == CurrentFile; }
bool RunsFolder(const State &state) { return state.scope == Folder; }
bool OffersChildren(const State &state) { return RunsCurrentFile(state) && state.hasChildren; }
bool ByName(const State &state) { return state.choice == ByTransformation; }
bool ByXsl(const State &state) { return state.choice == ByXslFile; }

bool CanRun(const State &state) {
  // No transformation has a name of blanks only.
  const bool hasChoice = ByName(state) ? !catalogue::Trim(state.nameText).empty() : !state.xslPath.empty();
  return hasChoice && (!RunsFolder(state) || !state.folderPath.empty());
}

// An option with its value. The bytes of the request are settled; the builder beside it only finds what cannot be sent.
std::string Option(kit::RequestBuilder &check, const std::string &option, const std::string &value) {
  check.Add(option, {value});
  return option + " " + kit::QuoteValue(value);
}

std::string ScopePart(const State &state, kit::RequestBuilder &check) {
  switch (state.scope) {
  case AllOpenFiles:
    return "-allopenfiles ";
  case Folder:
    return Option(check, state.includeSubFolders ? "-folders" : "-folder", state.folderPath) + " ";
  default:
    return OffersChildren(state) && state.includeChildren ? "-currentfilewithchildren" : "-currentfile";
  }
}

// The name of an application stands without quotes.
std::string ChoicePart(const State &state, kit::RequestBuilder &check) {
  if (ByXsl(state))
    return " " + Option(check, "-xslfilepath", state.xslPath) + " ";
  const std::string source =
      state.appName.empty() ? Option(check, "-trfile", state.trFilePath) : "-appname " + state.appName;
  return " " + source + " " + Option(check, "-trname", state.trName);
}

bool Offers(const std::optional<std::vector<std::string>> &names, const std::string &name) {
  return names && std::ranges::find(*names, name) != names->end();
}

// Looks with the last choice, then with the active document's applications, and takes over where the name is.
bool FindTypedName(State &state) {
  if (!state.appName.empty() ? Offers(catalogue::GetTransformationNames(state.appName), state.trName)
                             : catalogue::GetTransformation(state.trFilePath, {}, state.trName).has_value())
    return true;
  const V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT);
  for (const std::string &application : catalogue::GetApplicationsForDocument(document))
    if (Offers(catalogue::GetTransformationNames(application), state.trName)) {
      state.appName = application;
      return true;
    }
  if (state.appName.empty() && state.trFilePath.empty())
    state.trFilePath = catalogue::GetDefaultTransformationFile();
  return false;
}

// A name that no catalogue has is kept: the run says so, and where it looked. It is looked for again at the next run,
// when another document may be active.
void MatchTypedName(State &state) {
  if (state.nameText == state.foundName)
    return;
  state.trName = state.nameText;
  state.foundName = FindTypedName(state) ? state.trName : std::string();
}

void Compose(State &state) {
  if (ByName(state))
    MatchTypedName(state);
  kit::RequestBuilder check(kit::runRequestName);
  state.request = std::string(kit::runRequestName) + "  " + ScopePart(state, check) + ChoicePart(state, check);
  if (check.Problem().empty())
    return;
  state.request.clear();
  V_ApiAlert(report::FormatMessage(MessageId::RunNotPossible, {check.Problem()}).c_str(), V_ALERT_PLAIN);
  V_ApiKeepDialogUp(state.dialog);
}

void BrowseForFolder(State &state) {
  const std::string path = ChoosePath(V_CHOOSE_FOLDER, MessageId::BrowseFolder);
  if (!path.empty())
    state.folderPath = path;
  V_ApiKeepDialogUp(state.dialog);
}

void BrowseForTransformation(State &state) {
  const bool withChildren = OffersChildren(state) && state.includeChildren;
  const ChosenTransformation chosen = OpenChooseManageDialog(
      RunsCurrentFile(state) && !withChildren ? ChooseMode::ForActiveDocument : ChooseMode::AmongAll);
  if (!chosen.trName.empty()) {
    state.trName = state.nameText = state.foundName = chosen.trName;
    state.appName = chosen.appName;
    state.trFilePath = chosen.appName.empty() ? chosen.trFilePath : std::string();
  }
  V_ApiKeepDialogUp(state.dialog);
}

void BrowseForXsl(State &state) {
  const std::string path = ChoosePath(V_CHOOSE_OPEN, MessageId::SelectXslFile, MessageId::XslFilter);
  if (!path.empty())
    state.xslPath = path;
  V_ApiKeepDialogUp(state.dialog);
}

using Row = ItemRow<State>;
constexpr std::array rows = {
    Row{.item = V_ITEM_INITIALISE, .react = Initialise},
    Row{.item = CurrentFileRadio,
        .held = Row::OneOf{&State::scope, CurrentFile},
        .isSensitive = [](const State &state) { return state.hasCurrentFile; },
        .react = RefreshScope},
    Row{.item = ChildrenCheck, .held = Row::Flag{&State::includeChildren}, .isSensitive = OffersChildren},
    Row{.item = AllOpenFilesRadio,
        .held = Row::OneOf{&State::scope, AllOpenFiles},
        .isSensitive = [](const State &state) { return state.hasOpenFiles; },
        .react = RefreshScope},
    Row{.item = FolderRadio, .held = Row::OneOf{&State::scope, Folder}, .react = RefreshScope},
    Row{.item = FolderBox, .held = Row::Text{&State::folderPath}, .isSensitive = RunsFolder},
    Row{.item = BrowseFolder, .isSensitive = RunsFolder, .react = BrowseForFolder},
    Row{.item = SubFoldersCheck, .held = Row::Flag{&State::includeSubFolders}, .isSensitive = RunsFolder},
    Row{.item = TransformationRadio, .held = Row::OneOf{&State::choice, ByTransformation}},
    Row{.item = XslRadio, .held = Row::OneOf{&State::choice, ByXslFile}},
    Row{.item = TransformationBox, .held = Row::Text{&State::nameText}, .isSensitive = ByName},
    Row{.item = BrowseTransformation, .isSensitive = ByName, .react = BrowseForTransformation},
    Row{.item = XslBox, .held = Row::Text{&State::xslPath}, .isSensitive = ByXsl},
    Row{.item = BrowseXsl, .isSensitive = ByXsl, .react = BrowseForXsl},
    Row{.item = RunButton, .isSensitive = CanRun, .react = Compose},
};

} // namespace

std::string AskForRunRequest() {
  State &state = TheDialog();
  if (!state.dialog)
    state.dialog = OpenDialog("advance_xslt");
  if (!state.dialog)
    return {};
  V_ApiRunDialog(advancedRunDialogNumber, state.dialog);
  return state.request;
}

void ServeAdvancedRunEvent(int32_t item) { ServeEvent<State>(TheDialog(), rows, item); }

void ForgetAdvancedRunState() { TheDialog() = State(); }

} // namespace dialogs
