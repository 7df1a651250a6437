// The client's texts, by id, from its embedded resources. Ids and texts are those of the string table in
// resources/XSLT.rc. Host's thread only, like everything in the client.
#ifndef REPORT_MESSAGES_H
#define REPORT_MESSAGES_H

#include "kit/resources.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>

namespace report {

enum class MessageId : uint16_t {
  SelectXslFile = 18000,
  XslFilter = 18001,
  XmlFilter = 18002,
  Defaults = 18003,
  ChooseTransformationTitle = 18004,
  ManageTransformationsTitle = 18005,
  TransformationNotDeleted = 18006,
  DeleteSelectedTransformation = 18007,
  SelectTransformationFile = 18008,
  NewTransformationTitle = 18009,
  EditTransformationTitle = 18010,
  XsltProcessors = 18011,
  BrowseFolder = 18012,
  SaveTransformationFile = 18013,
  RequiredFieldsMissing = 18014,
  Choices = 18015,
  ReplaceTransformation = 18016,
  InvalidCommand = 18017,
  NoActiveDocument = 18018,
  TransformationNotFound = 18019,
  TransformationNotFoundForApplication = 18020,
  TransformationNotFoundInFile = 18021,
  CannotApplyToBook = 18022,
  NoActiveBookOrMap = 18023,
  CannotSaveTransformationFile = 18024,
  FolderNotWritable = 18025,
  FolderMissing = 18026,
  OutputReadOnly = 18027,
  OutputOpenElsewhere = 18028,
  ProviderNotFound = 18029,
  ProcessorNotFound = 18030,
  ProcessorNotFoundCreateAnyway = 18031,
  NoInputs = 18032,
  OverwriteExistingFile = 18033,
  LogInput = 18034,
  LogXsl = 18035,
  LogXslFromPi = 18036,
  LogOutput = 18037,
  LogTitle = 18038,
  LogProcessorMessages = 18039,
  DiagnosticWarning = 18040,
  DiagnosticError = 18041,
  DiagnosticFatalError = 18042,
  TransformationAborted = 18043,
  TransformationSuccessful = 18044,
  OutputCountMismatch = 18045,
  SaveDocumentFirst = 18046,
  FileMissing = 18047,
  NotATransformationFile = 18048,
  CreateMissingFile = 18049,
  NothingToRun = 18050,
  InvalidStylesheetParams = 18051,
  InputFolderMissing = 18052,
  NameTitle = 18053,
  ExpressionTitle = 18054,
  XslNotSpecified = 18055,
  OutputFolderNotSpecified = 18056,
  TransformationXslMissing = 18057,
  SaveOutputFile = 18058,
  NoValue = 18061,
  SchemaMissing = 18140,
  EntitiesTooLarge = 18141,
  CannotHoldCharacter = 18142,
  TransformationFileNotWritten = 18143,
  OutputsNotSynced = 18144,
  UnknownOptionValue = 18150,
  NoSuchParameter = 18151,
  NameMissing = 18152,
  InternalError = 18153,
  XslFromInstruction = 18154,
  OutputNotSaved = 18155,
  OutputAsked = 18156,
  OutputInFolder = 18157,
  OutputBesideInput = 18158,
  OutputReplacesInput = 18159,
  OpensInHost = 18160,
  OpensInDefaultProgram = 18161,
  FieldName = 18162,
  FieldXsl = 18163,
  FieldProcessor = 18164,
  FieldFolder = 18165,
  FieldSuffix = 18166,
  FieldParameters = 18167,
  NotUtf8 = 18168,
  OutOfMemory = 18169,
  CannotMakeFolder = 18200,
  SharedOutput = 18201,
  // What is foreseen of a job.
  ForeseenInputMissing = 18210,
  ForeseenUnsavedChanges = 18211,
  ForeseenOtherApplication = 18212,
  ForeseenStylesheetMissing = 18213,
  ForeseenProcessorUnknown = 18214,
  ForeseenFolderMissing = 18215,
  ForeseenFolderReadOnly = 18216,
  ForeseenOutputReadOnly = 18217,
  ForeseenSameOutput = 18218,
  ForeseenOwnInput = 18219,
  JavaNoInstallation = 18230,
  JavaTooOld = 18231,
  JavaNotFound = 18232,
  JavaAdvice = 18233,
  JavaNotLoaded = 18234,
  JavaNotStarted = 18235,
  JavaPartMissing = 18236,
  JavaNotResumed = 18237,
  JavaLayerUnusable = 18238,
  JavaFailed = 18239,
  JavaEnded = 18240,
  JavaShutDown = 18241,
  ClassPathEntryMissing = 18242,
  ProcessorMessageLost = 18243,
  DialogNotOpened = 18244,
  TransformationGivenUp = 18245,
  JavaGivenUp = 18246,
  JavaFasterInstalled = 18247,
  JavaStartNotPrepared = 18248,
  // The texts of the Java layer, which names them itself.
  JavaLayerFirst = 18250,
  JavaLayerLast = 18292,
  OtherNamesKeepOld = 18289,
  PermissionsNotKept = 18290,
  OptionsUnreadable = 18300,
  NestedTooDeep = 18301,
  EntityNotRead = 18302,
  TransformationFileLocked = 18303,
  TransformationFileUnreadable = 18304,
  OverwriteInvalidFile = 18305,
  InvalidFileKept = 18306,
  RunNotPossible = 18320,
  OutputIsStylesheet = 18321,
  ForeseenOwnStylesheet = 18322,
};

// The embedded image, valid for the life of the client.
[[nodiscard]] kit::Resources::Bytes ResourceImage();
// The reader over that image.
[[nodiscard]] const kit::Resources &ClientResources();

// At most kit::maxTextSize bytes of the text; empty when there is none.
[[nodiscard]] std::string LoadMessage(MessageId id);
// The text with %0, %1, … replaced by the values in order.
[[nodiscard]] std::string FormatMessage(MessageId id, std::initializer_list<std::string_view> values);

} // namespace report

#endif
