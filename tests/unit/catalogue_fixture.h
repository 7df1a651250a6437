// A host with an installation folder whose name is as awkward as names get, and a folder for the catalogues of a test.
#ifndef TESTS_UNIT_CATALOGUE_FIXTURE_H
#define TESTS_UNIT_CATALOGUE_FIXTURE_H

#include "catalogue/transformation.h"
#include "tests/unit/folder.h"
#include "tests/unit/log_fixture.h"

#include <optional>
#include <string>
#include <vector>

class CatalogueTest : public LogTest {
protected:
  CatalogueTest();
  ~CatalogueTest() override;

  // The full path of a file in the test's folder.
  [[nodiscard]] std::string Path(const std::string &name) const { return folder.Path(name); }
  std::string Write(const std::string &name, const std::string &bytes = {}) const { return folder.Write(name, bytes); }
  [[nodiscard]] std::vector<FakeHost::Asked> TakeAsked() { return std::exchange(host.asked, {}); }

  test::Folder folder;
  const std::string &root = folder.Root();
  std::string install;
};

// The processors that the tests' catalogues may name.
[[nodiscard]] bool IsInstalled(std::string_view processor);
// A catalogue's text around the given transformations.
[[nodiscard]] std::string Catalogue(const std::string &content);
// A complete transformation of that name.
[[nodiscard]] std::string Element(const std::string &name);
[[nodiscard]] catalogue::Transformation MakeTransformation(const std::string &name);
[[nodiscard]] std::vector<std::string> NamesOf(const std::optional<catalogue::TransformationList> &list);

#endif
