// Properties of the session and of documents, one table per kind of value.
#include "host/applications.h"
#include "host/host_services.h"
#include "kit/names.h"

#include <algorithm>
#include <array>

namespace host {

namespace {

template <class Field> struct Property {
  int32_t number;
  Field field;
};
// Older compilers do not deduce for aggregates by themselves.
template <class Field> Property(int32_t, Field) -> Property<Field>;

constexpr std::array sessionTexts = {
    Property{V_SP_PRODUCT_NAME, &Configuration::product},
    Property{V_SP_INSTALL_DIR, &Configuration::installFolder},
    Property{V_SP_STRUCTURE_DIR, &Configuration::structureFolder},
    Property{V_SP_DEFAULT_CATALOGUE, &Configuration::defaultCatalogue},
    Property{V_SP_JAVA_HOME, &Configuration::javaHome},
};

constexpr std::array documentTexts = {
    Property{V_OP_NAME, &Document::name},
    Property{V_OP_FULL_NAME, &Document::path},
    Property{V_OP_LABEL, &Document::name},
};

constexpr std::array documentFlags = {
    Property{V_OP_MODIFIED, &Document::isModified},
    Property{V_OP_SHOWN, &Document::isShown},
};

template <class Table> auto FindField(const Table &table, int32_t number) -> decltype(table[0].field) {
  const auto found = std::ranges::find(table, number, [](const auto &each) { return each.number; });
  return found == table.end() ? nullptr : found->field;
}

int32_t Find(const std::map<int32_t, int32_t> &properties, int32_t property) {
  const auto found = properties.find(property);
  return found == properties.end() ? 0 : found->second;
}

} // namespace

int32_t HostServices::GetSessionInt(int32_t property) const {
  switch (property) {
  case V_OP_TYPE:
    return V_TYPE_SESSION;
  case V_SP_ALLOW_EXTENSIONS:
    return configuration.allowsExtensions ? 1 : 0;
  case V_SP_JOBS:
    return configuration.jobs;
  case V_SP_UNSYNCED_OUTPUTS:
    return configuration.syncsOutputs ? 0 : 1;
  default:
    return Find(numbers, property);
  }
}

int32_t HostServices::GetInt(V_ObjectT object, int32_t property) {
  if (object == V_SESSION)
    return GetSessionInt(property);
  if (DialogHost::Owns(object))
    return dialogs.GetInt(object, property);
  const Document *document = documents.Find(object);
  if (!document)
    return 0;
  if (property == V_OP_TYPE)
    return document->source == ComponentSource::Book ? V_TYPE_BOOK : V_TYPE_DOCUMENT;
  if (property == V_OP_IS_DITA_MAP)
    return document->source == ComponentSource::DitaMap ? 1 : 0;
  if (bool Document::*const flag = FindField(documentFlags, property))
    return document->*flag ? 1 : 0;
  return Find(document->settings, property);
}

void HostServices::SetInt(V_ObjectT object, int32_t property, int32_t value) {
  if (object == V_SESSION) {
    numbers[property] = value;
  } else if (DialogHost::Owns(object)) {
    dialogs.SetInt(object, property, value);
  } else if (Document *document = documents.Find(object)) {
    if (bool Document::*const flag = FindField(documentFlags, property))
      document->*flag = value != 0;
    else
      document->settings[property] = value;
  }
}

std::optional<std::string> HostServices::GetString(V_ObjectT object, int32_t property) {
  if (object == V_SESSION) {
    if (property == V_SP_TEMP_DIR)
      return tempFolder.Path();
    const auto field = FindField(sessionTexts, property);
    return field ? std::optional(configuration.*field) : std::nullopt;
  }
  if (DialogHost::Owns(object))
    return dialogs.GetString(object, property);
  const Document *document = documents.Find(object);
  if (document && property == V_OP_APPLICATION)
    return ApplicationOf(*document);
  const auto field = FindField(documentTexts, property);
  return document && field ? std::optional(document->*field) : std::nullopt;
}

// Names of documents are the files' names; only dialogs have texts that can be written.
void HostServices::SetString(V_ObjectT object, int32_t property, const std::string &value) {
  dialogs.SetString(object, property, value);
}

void HostServices::SetStrings(V_ObjectT object, int32_t property, std::vector<std::string> value) {
  dialogs.SetStrings(object, property, std::move(value));
}

V_ObjectT HostServices::GetObject(V_ObjectT object, int32_t property) {
  if (object != V_SESSION)
    return property == V_OP_NEXT_OPEN_DOCUMENT && documents.Find(object) ? documents.After(object) : 0;
  switch (property) {
  case V_SP_ACTIVE_DOCUMENT:
    return documents.ActiveDocument();
  case V_SP_ACTIVE_BOOK:
    return documents.ActiveBook();
  case V_SP_FIRST_OPEN_DOCUMENT:
    return documents.First();
  default:
    return 0;
  }
}

std::vector<std::string> HostServices::GetStrings(V_ObjectT object, int32_t property) {
  if (object != V_SESSION)
    return dialogs.GetStrings(object, property);
  if (property == V_SP_JAVA_OPTIONS)
    return configuration.javaOptions;
  if (property == V_SP_TRUSTED_HOSTS)
    return configuration.trustedHosts;
  if (property == V_SP_WRITE_FOLDERS)
    return configuration.writeFolders.empty() ? std::vector<std::string>{kit::writeNowhere}
                                              : configuration.writeFolders;
  std::vector<std::string> names;
  if (property == V_SP_APPLICATIONS)
    for (const ApplicationSetting &application : configuration.applications)
      names.push_back(application.name);
  return names;
}

kit::TypedValues HostServices::GetTypedVals(V_ObjectT object, int32_t property) {
  kit::TypedValues values;
  if (object == V_SESSION && property == V_SP_XSLT_PROCESSORS)
    for (const ProcessorSetting &processor : configuration.processors) {
      std::vector<std::string> fields = {processor.name, processor.classPath, processor.className};
      for (const AttributeSetting &attribute : processor.attributes)
        fields.insert(fields.end(), {attribute.name, attribute.type, attribute.value});
      if (processor.allowsExtensions)
        fields.insert(fields.end(), {kit::extensionsAttribute, "boolean", "true"});
      values.AddStrings(fields);
    }
  return values;
}

std::string HostServices::ApplicationOf(const Document &document) const {
  const std::vector<std::string> names = FindApplications(configuration, document.path);
  return names.empty() ? std::string() : names.front();
}

} // namespace host
