// The keys of a configuration file and the fields that they fill, for reading a file and for changing one.
#ifndef HOST_CONFIGURATION_CONFIGURATION_KEYS_H
#define HOST_CONFIGURATION_CONFIGURATION_KEYS_H

#include "host/configuration/configuration.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host {

// WriteFolder: a path, or one of the words that stand for folders.
enum class Meaning { Text, Path, StoredPath, ClassPath, WriteFolder, Host };
// Written: stands in a new file even when it is empty, since its default is not.
enum class Presence { Optional, Written, Required };

template <class Record> struct KeyRule {
  std::string_view key;
  std::variant<std::string Record::*, std::vector<std::string> Record::*, std::vector<AttributeSetting> Record::*,
               bool Record::*, int32_t Record::*>
      field;
  Meaning meaning = Meaning::Text;
  Presence presence = Presence::Optional;
};

inline constexpr std::array configurationKeys = {
    KeyRule<Configuration>{"product", &Configuration::product, Meaning::Text, Presence::Written},
    KeyRule<Configuration>{"install_dir", &Configuration::installFolder, Meaning::Path, Presence::Written},
    KeyRule<Configuration>{"structure_dir", &Configuration::structureFolder, Meaning::Path, Presence::Written},
    KeyRule<Configuration>{"default_catalogue", &Configuration::defaultCatalogue, Meaning::StoredPath},
    KeyRule<Configuration>{"temp_dir", &Configuration::tempFolder, Meaning::Path},
    KeyRule<Configuration>{"java_home", &Configuration::javaHome, Meaning::Path},
    KeyRule<Configuration>{"editor", &Configuration::editor},
    KeyRule<Configuration>{"catalogs", &Configuration::catalogs, Meaning::StoredPath},
    KeyRule<Configuration>{"java_options", &Configuration::javaOptions},
    KeyRule<Configuration>{"jobs", &Configuration::jobs},
};

inline constexpr std::array processorKeys = {
    KeyRule<ProcessorSetting>{"name", &ProcessorSetting::name, Meaning::Text, Presence::Required},
    KeyRule<ProcessorSetting>{"class_path", &ProcessorSetting::classPath, Meaning::ClassPath},
    KeyRule<ProcessorSetting>{"class_name", &ProcessorSetting::className, Meaning::Text, Presence::Required},
    KeyRule<ProcessorSetting>{"extensions", &ProcessorSetting::allowsExtensions},
    KeyRule<ProcessorSetting>{"attributes", &ProcessorSetting::attributes},
};

inline constexpr std::array applicationKeys = {
    KeyRule<ApplicationSetting>{"name", &ApplicationSetting::name, Meaning::Text, Presence::Required},
    KeyRule<ApplicationSetting>{"catalogue", &ApplicationSetting::catalogue, Meaning::StoredPath},
    KeyRule<ApplicationSetting>{"root", &ApplicationSetting::roots},
    KeyRule<ApplicationSetting>{"public_id", &ApplicationSetting::publicIds},
    KeyRule<ApplicationSetting>{"namespace", &ApplicationSetting::namespaces},
    KeyRule<ApplicationSetting>{"file", &ApplicationSetting::files},
};

inline constexpr std::array trustKeys = {
    KeyRule<Configuration>{"network", &Configuration::trustedHosts, Meaning::Host},
    KeyRule<Configuration>{"extensions", &Configuration::allowsExtensions},
    KeyRule<Configuration>{"write", &Configuration::writeFolders, Meaning::WriteFolder, Presence::Written},
};

inline constexpr std::array outputKeys = {
    KeyRule<Configuration>{"sync", &Configuration::syncsOutputs, Meaning::Text, Presence::Written},
};

// The tables that group some keys.
struct KeyGroup {
  std::string_view name;
  std::span<const KeyRule<Configuration>> keys;
};
inline constexpr std::array keyGroups = {KeyGroup{"trust", trustKeys}, KeyGroup{"outputs", outputKeys}};

// The lists of tables.
inline constexpr std::array<std::string_view, 2> tableKeys = {"processor", "application"};

} // namespace host

#endif
