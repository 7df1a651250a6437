#include "processors/java/own_folder.h"

#include "kit/paths.h"

#include <dlfcn.h>

namespace processors {

std::string OwnFolder() {
  // The address of any object here leads to the file that it was loaded from.
  static const char here = 0;
  Dl_info info{};
  if (dladdr(&here, &info) == 0 || !info.dli_fname)
    return ".";
  return kit::FolderOf(kit::AbsolutePath(info.dli_fname));
}

} // namespace processors
