// A host with an installation folder for targets that drive parts of the client, and what one input leaves is taken
// away again.
#ifndef TESTS_FUZZ_CLIENT_SITE_H
#define TESTS_FUZZ_CLIENT_SITE_H

#include "tests/unit/fake_host.h"
#include "tests/unit/folder.h"

#include <map>
#include <string>
#include <string_view>

namespace fuzz {

class ClientSite {
public:
  // One for the process.
  [[nodiscard]] static ClientSite &Get();

  // Files that every input finds.
  void Keep(std::string_view name, std::string_view content);
  // Every block of the host's memory has been given back; files, log and what the host saw are as before.
  void EndInput();

  test::Folder folder;
  FakeHost host;

private:
  ClientSite();

  std::map<std::string, std::string> kept; // by path
};

} // namespace fuzz

#endif
