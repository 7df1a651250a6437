// The host and the folders of the catalogues' tests, with a configured processor and an application "DITA" whose
// catalogue is catalogue.xml.
#ifndef TESTS_UNIT_CLIENT_FIXTURE_H
#define TESTS_UNIT_CLIENT_FIXTURE_H

#include "processors/processor_list.h"
#include "tests/unit/catalogue_fixture.h"
#include "tests/unit/fake_processor.h"

#include <filesystem>
#include <string>

class ClientParts : public CatalogueTest {
protected:
  ClientParts() {
    for (const char *name : {"temp", "structure", "out"})
      std::filesystem::create_directories(Path(name));
    host.strings[{V_SESSION, V_SP_TEMP_DIR}] = Path("temp");
    host.stringTables[{V_SESSION, V_SP_XSLT_PROCESSORS}] = {{"Saxon", "s.jar", "the.Class"}};
    host.clients["VlDispatcher"] = [this](const std::string &request) {
      kit::TypedValues reply;
      if (request.starts_with("GetAppsForFile"))
        reply.AddStrings({request.find(".dita") != std::string::npos ? "DITA" : "Other"});
      else if (request.find("DITA") != std::string::npos)
        reply.AddString(Path("catalogue.xml"));
      return reply;
    };
    processor.classes = {"the.Class"};
    processors::LoadProcessors(processor);
  }

  [[nodiscard]] static std::string Read(const std::string &path) { return test::ReadAll(path); }

  FakeProcessor processor;
};

#endif
