#include "dialogs/new_edit_dialog.h"

#include "catalogue/location.h"
#include "catalogue/stylesheet_parameters.h"
#include "catalogue/transformation.h"
#include "catalogue/writer.h"
#include "catalogue/xml_text.h"
#include "dialogs/dialog_numbers.h"
#include "dialogs/item_rows.h"
#include "dialogs/stylesheet_params_dialog.h"
#include "kit/paths.h"
#include "processors/processor_list.h"
#include "report/messages.h"

#include <algorithm>
#include <array>
#include <optional>

namespace dialogs {

namespace {

using catalogue::OpenOutputKind;
using catalogue::OutputLocationKind;
using report::MessageId;

enum InputKind : uint32_t { XslFile = 0, ProcessingInstruction = 1 };
enum SameLocationKind : uint32_t { AddSuffix = 1, OverwriteSource = 2 };
enum EditMode : uint32_t { Edit = 0, New = 1 };
constexpr auto noSave = static_cast<uint32_t>(OutputLocationKind::DoNotSave);
constexpr auto prompt = static_cast<uint32_t>(OutputLocationKind::Prompt);
constexpr auto inFolder = static_cast<uint32_t>(OutputLocationKind::DirPath);
constexpr auto besideSource = static_cast<uint32_t>(OutputLocationKind::SameLocationAsSource);
constexpr auto openNowhere = static_cast<uint32_t>(OpenOutputKind::None);
constexpr auto openInHost = static_cast<uint32_t>(OpenOutputKind::Vellis);
constexpr auto openByDefault = static_cast<uint32_t>(OpenOutputKind::DefaultProgram);

enum Item : int32_t {
  NameBox = 1,
  XslRadio = 4,
  XslBox = 5,
  BrowseXsl = 6,
  InstructionRadio = 7,
  ParametersButton = 8,
  ProcessorPopUp = 10,
  FolderRadio = 13,
  FolderBox = 14,
  BrowseFolder = 15,
  SourceFolderRadio = 16,
  SuffixRadio = 17,
  SuffixBox = 18,
  OverwriteRadio = 19,
  AskRadio = 20,
  NoSaveRadio = 21,
  OpenCheck = 22,
  FileBox = 23,
  BrowseFile = 25,
  SaveButton = 26,
  CloseButton = 27,
  OpenInHostRadio = 28,
  OpenByDefaultRadio = 29,
  SaveAsButton = 30
};

struct NewEditDialog {
  uint32_t inputKind = XslFile;
  uint32_t outputLocation = noSave;
  uint32_t sameLocationKind = AddSuffix;
  std::string trName;
  // The entry that Save replaces in Edit mode: the one that Edit opened, later the one that was saved last.
  std::string oldName;
  std::string oldFilePath;
  std::string xslPath;
  std::string processorName;
  std::vector<std::string> processorLabels; // behind a heading
  std::string dirPath;
  std::string suffix;
  std::string trFilePath;
  std::vector<Parameter> params;
  uint32_t openOutput = openNowhere;
  catalogue::Transformation record; // as built for the last save
  uint32_t editMode = New;
  V_ObjectT dialog = 0;
  bool modified = false;

  int32_t chosenProcessor = -1; // its position among the labels

  void NoteChange() { modified = true; }
};
using State = NewEditDialog;

State &TheDialog() {
  static State state;
  return state;
}

// Adds the pairs whose name is not there yet; what is there keeps its expression.
void MergeParameters(std::vector<Parameter> &params, const std::vector<std::string> &pairs) {
  for (size_t index = 0; index < pairs.size(); index += 2) {
    const std::string &name = pairs[index];
    if (!name.empty() && std::ranges::find(params, name, &Parameter::name) == params.end())
      params.push_back({name, index + 1 < pairs.size() ? pairs[index + 1] : std::string()});
  }
}

void LoadRecord(State &state, const catalogue::Transformation &record) {
  const catalogue::TransformationOutput &output = record.output;
  state.trName = record.name;
  state.xslPath = record.usePI ? std::string() : record.xslPath;
  state.inputKind = record.usePI ? ProcessingInstruction : XslFile;
  state.params.clear();
  MergeParameters(state.params, record.parameters);
  state.processorName = record.processor;
  state.outputLocation = static_cast<uint32_t>(output.outputLocation);
  const bool overwrites = state.outputLocation == besideSource && output.suffix.empty();
  state.sameLocationKind = overwrites ? OverwriteSource : AddSuffix;
  state.suffix = state.outputLocation == besideSource ? output.suffix : std::string();
  state.dirPath = state.outputLocation == inFolder ? output.dirPath : std::string();
  state.openOutput = static_cast<uint32_t>(output.openOutput);
}

void Initialise(State &state) {
  std::optional<catalogue::Transformation> record;
  if (!state.trFilePath.empty() && !state.trName.empty())
    record = catalogue::GetTransformation(state.trFilePath, {}, state.trName);
  LoadRecord(state, record.value_or(catalogue::Transformation()));
  const processors::ProcessorChoice choice = processors::MakeProcessorChoice(state.processorName);
  state.processorLabels = choice.labels;
  state.chosenProcessor = choice.selected;
  state.modified = state.editMode == New;
}

void BuildRecord(State &state) {
  catalogue::Transformation record;
  record.name = state.trName;
  record.usePI = state.inputKind == ProcessingInstruction;
  record.xslPath = record.usePI ? std::string() : state.xslPath;
  for (const Parameter &parameter : state.params)
    if (!parameter.name.empty())
      record.parameters.insert(record.parameters.end(), {parameter.name, parameter.expression});
  record.processor = state.processorName;
  record.output.outputLocation = static_cast<OutputLocationKind>(state.outputLocation);
  if (state.outputLocation == inFolder)
    record.output.dirPath = state.dirPath;
  if (state.outputLocation == besideSource && state.sameLocationKind == AddSuffix)
    record.output.suffix = state.suffix;
  record.output.openOutput = static_cast<OpenOutputKind>(state.openOutput);
  state.record = std::move(record);
}

void TakeProcessor(State &state) {
  if (state.chosenProcessor >= 1)
    state.processorName = state.processorLabels[static_cast<size_t>(state.chosenProcessor)];
}

void BrowseForXsl(State &state) {
  const std::string path = ChoosePath(V_CHOOSE_OPEN, MessageId::SelectXslFile, MessageId::XslFilter);
  if (!path.empty()) {
    state.inputKind = XslFile;
    state.modified = Assign(state.xslPath, path) || state.modified;
  }
  V_ApiKeepDialogUp(state.dialog);
}

void BrowseForFolder(State &state) {
  const std::string path = ChoosePath(V_CHOOSE_FOLDER, MessageId::BrowseFolder);
  if (!path.empty()) {
    state.outputLocation = inFolder;
    state.modified = Assign(state.dirPath, path) || state.modified;
  }
  V_ApiKeepDialogUp(state.dialog);
}

void EditParameters(State &state) {
  if (!state.xslPath.empty())
    MergeParameters(state.params,
                    catalogue::GetStylesheetParameters(state.xslPath).value_or(std::vector<std::string>()));
  state.params = EditStylesheetParams(state.params);
  state.modified = true;
  V_ApiKeepDialogUp(state.dialog);
}

void TakeOpenOutput(State &state) {
  state.modified = true;
  state.openOutput = ItemState(state.dialog, OpenCheck) ? openInHost : openNowhere;
}

void NoteSaved(State &state, catalogue::EditResult result) {
  if (result == catalogue::EditResult::Failed)
    V_ApiAlert(report::LoadMessage(MessageId::RequiredFieldsMissing).c_str(), V_ALERT_PLAIN);
  state.modified = result != catalogue::EditResult::Saved;
  if (result == catalogue::EditResult::Saved) {
    state.oldName = catalogue::Trim(state.record.name); // as the catalogue has it
    state.oldFilePath = state.trFilePath;
  }
  V_ApiKeepDialogUp(state.dialog);
}

// In another file the record is a new one: what stands there under its name is not what the person opened.
bool ReplacesOldEntry(const State &state) {
  return state.editMode == Edit &&
         kit::IsSameFile(catalogue::ResolvePath(state.trFilePath), catalogue::ResolvePath(state.oldFilePath));
}

void Save(State &state) {
  BuildRecord(state);
  NoteSaved(state, ReplacesOldEntry(state)
                       ? catalogue::EditTransformation(state.trFilePath, state.record, state.oldName,
                                                       processors::IsKnownProcessor)
                       : catalogue::AddTransformation(state.trFilePath, state.record, processors::IsKnownProcessor));
}

void SaveAs(State &state) {
  V_ApiKeepDialogUp(state.dialog);
  const std::string path = ChoosePath(V_CHOOSE_SAVE, MessageId::SaveTransformationFile, MessageId::XmlFilter);
  if (path.empty())
    return;
  state.trFilePath = path;
  BuildRecord(state);
  NoteSaved(state, catalogue::AddTransformation(path, state.record, processors::IsKnownProcessor));
}

bool UsesXslFile(const State &state) { return state.inputKind == XslFile; }
bool SavesInFolder(const State &state) { return state.outputLocation == inFolder; }
bool SavesBesideSource(const State &state) { return state.outputLocation == besideSource; }
bool AddsSuffix(const State &state) { return SavesBesideSource(state) && state.sameLocationKind == AddSuffix; }
bool OpensOutput(const State &state) { return state.openOutput != openNowhere; }

// The position is taken into the configured list as it stands, also when an unknown name pushed the labels down.
bool HasConfiguredProcessor(const State &state) {
  const auto &processors = processors::Processors();
  const auto position = static_cast<size_t>(state.chosenProcessor);
  return state.chosenProcessor >= 1 && position <= processors.size() && !processors[position - 1].name.empty();
}

// A catalogue keeps no blanks at the ends of a text. A suffix that is gone would mean the source itself.
bool IsBlank(const std::string &text) { return catalogue::Trim(text).empty(); }

bool IsComplete(const State &state) {
  const bool hasInput = !UsesXslFile(state) || !state.xslPath.empty();
  const bool lacksFolder = SavesInFolder(state) && state.dirPath.empty();
  const bool lacksSuffix = AddsSuffix(state) && IsBlank(state.suffix);
  return !IsBlank(state.trName) && hasInput && HasConfiguredProcessor(state) && !lacksFolder && !lacksSuffix;
}

bool CanSave(const State &state) { return IsComplete(state) && !state.trFilePath.empty() && state.modified; }

using Row = ItemRow<State>;
constexpr std::array rows = {
    Row{.item = V_ITEM_INITIALISE, .react = Initialise},
    Row{.item = NameBox, .held = Row::Text{&State::trName}},
    Row{.item = XslRadio, .held = Row::OneOf{&State::inputKind, XslFile}},
    Row{.item = XslBox, .held = Row::Text{&State::xslPath}, .isSensitive = UsesXslFile},
    Row{.item = BrowseXsl, .isSensitive = UsesXslFile, .react = BrowseForXsl},
    Row{.item = InstructionRadio, .held = Row::OneOf{&State::inputKind, ProcessingInstruction}},
    Row{.item = ParametersButton, .react = EditParameters},
    Row{.item = ProcessorPopUp,
        .held = Row::Choice{&State::processorLabels, &State::chosenProcessor},
        .react = TakeProcessor},
    Row{.item = FolderRadio, .held = Row::OneOf{&State::outputLocation, inFolder}},
    Row{.item = FolderBox, .held = Row::Text{&State::dirPath}, .isSensitive = SavesInFolder},
    Row{.item = BrowseFolder, .isSensitive = SavesInFolder, .react = BrowseForFolder},
    Row{.item = SourceFolderRadio, .held = Row::OneOf{&State::outputLocation, besideSource}},
    Row{.item = SuffixRadio, .held = Row::OneOf{&State::sameLocationKind, AddSuffix}, .isSensitive = SavesBesideSource},
    Row{.item = SuffixBox, .held = Row::Text{&State::suffix}, .isSensitive = AddsSuffix},
    Row{.item = OverwriteRadio,
        .held = Row::OneOf{&State::sameLocationKind, OverwriteSource},
        .isSensitive = SavesBesideSource},
    Row{.item = AskRadio, .held = Row::OneOf{&State::outputLocation, prompt}},
    Row{.item = NoSaveRadio, .held = Row::OneOf{&State::outputLocation, noSave}},
    Row{.item = OpenCheck, .held = Row::Switch{&State::openOutput}},
    Row{.item = OpenInHostRadio, .held = Row::OneOf{&State::openOutput, openInHost}, .isSensitive = OpensOutput},
    Row{.item = OpenByDefaultRadio, .held = Row::OneOf{&State::openOutput, openByDefault}, .isSensitive = OpensOutput},
    Row{.item = FileBox, .held = Row::Text{&State::trFilePath}},
    Row{.item = BrowseFile, .react = TakeOpenOutput},
    Row{.item = SaveButton, .isSensitive = CanSave, .react = Save},
    Row{.item = SaveAsButton, .isSensitive = IsComplete, .react = SaveAs},
};

void Open(const std::string &trFilePath, const std::string &trName, EditMode mode) {
  State &state = TheDialog();
  if (!state.dialog)
    state.dialog = OpenDialog("new_edit_transformation");
  if (!state.dialog)
    return;
  state.trFilePath = state.oldFilePath = trFilePath;
  state.trName = state.oldName = trName;
  state.editMode = mode;
  const MessageId title = mode == New ? MessageId::NewTransformationTitle : MessageId::EditTransformationTitle;
  V_ApiSetString(state.dialog, V_DP_TITLE, report::LoadMessage(title).c_str());
  V_ApiRunDialog(newEditDialogNumber, state.dialog);
}

} // namespace

void MakeNewTransformation(const std::string &trFilePath) { Open(trFilePath, {}, New); }

void ChangeTransformation(const std::string &trFilePath, const std::string &trName) { Open(trFilePath, trName, Edit); }

void ServeNewEditEvent(int32_t item) { ServeEvent<State>(TheDialog(), rows, item); }

void ForgetNewEditState() { TheDialog() = State(); }

} // namespace dialogs
