#include "dialogs/advanced_run_dialog.h"

#include "catalogue/location.h"
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

  std::string nameText; // what the transformation box shows; it may have been typed
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
  return (!RunsFolder(state) || !state.folderPath.empty()) && !(ByName(state) ? state.nameText : state.xslPath).empty();
}

std::string ScopePart(const State &state) {
  switch (state.scope) {
  case AllOpenFiles:
    return "-allopenfiles ";
  case Folder:
    return (state.includeSubFolders ? "-folders " : "-folder ") + kit::QuoteValue(state.folderPath) + " ";
  default:
    return OffersChildren(state) && state.includeChildren ? "-currentfilewithchildren" : "-currentfile";
  }
}

// The name of an application stands without quotes.
std::string ChoicePart(const State &state) {
  if (ByXsl(state))
    return " -xslfilepath " + kit::QuoteValue(state.xslPath) + " ";
  return (state.appName.empty() ? " -trfile " + kit::QuoteValue(state.trFilePath) : " -appname " + state.appName) +
         " -trname " + kit::QuoteValue(state.trName);
}

bool Offers(const std::optional<std::vector<std::string>> &names, const std::string &name) {
  return names && std::ranges::find(*names, name) != names->end();
}

// A name that was typed is looked for where the last one was chosen, then with the active document's applications. It
// is kept when no catalogue has it: the run says so, and where it looked.
void MatchTypedName(State &state) {
  if (state.nameText == state.trName)
    return;
  state.trName = state.nameText;
  if (!state.appName.empty() ? Offers(catalogue::GetTransformationNames(state.appName), state.trName)
                             : catalogue::GetTransformation(state.trFilePath, {}, state.trName).has_value())
    return;
  const V_ObjectT document = V_ApiGetObject(V_SESSION, V_SP_ACTIVE_DOCUMENT);
  for (const std::string &application : catalogue::GetApplicationsForDocument(document))
    if (Offers(catalogue::GetTransformationNames(application), state.trName)) {
      state.appName = application;
      return;
    }
  if (state.appName.empty() && state.trFilePath.empty())
    state.trFilePath = catalogue::GetDefaultTransformationFile();
}

void Compose(State &state) {
  if (ByName(state))
    MatchTypedName(state);
  state.request = std::string(kit::runRequestName) + "  " + ScopePart(state) + ChoicePart(state);
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
    state.trName = state.nameText = chosen.trName;
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
