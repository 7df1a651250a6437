#include "catalogue/network.h"

#include "kit/values.h"

namespace catalogue {

namespace {

std::string CachedPath(const std::string &path) {
  return kit::HostString::Adopt(NetLibQueryCacheForURL(path.c_str())).Text();
}

} // namespace

std::string LocalCopy(const std::string &resolvedPath) {
  if (NetLibIsNetFile(resolvedPath.c_str()) == 0)
    return resolvedPath;
  const std::string cached = CachedPath(resolvedPath);
  return cached.empty() ? resolvedPath : cached;
}

bool PushBack(const std::string &resolvedPath) {
  // The question of what a network file is comes second: a host may keep copies of documents that it does not push.
  if (CachedPath(resolvedPath).empty() || NetLibIsNetFile(resolvedPath.c_str()) == 0)
    return true;
  return NetLibSave(resolvedPath.c_str()) == 1;
}

} // namespace catalogue
