// Any text as a path and as a file URL: what is taken apart is put together again, and a URL leads back to its path.
#include "kit/paths.h"
#include "tests/fuzz/fuzzing.h"

void fuzz::RunInput(std::string_view input) {
  const std::string text(input.substr(0, input.find('\0')));
  Require(kit::UrlToPath(text).find('\0') == std::string::npos, "no URL leads to a path that ends early");
  Require(!kit::IsFileUrl(text) || kit::IsUrl(text), "a file URL is a URL");

  // No path stays none.
  const std::string path = kit::AbsolutePath(text.empty() ? "." : text);
  Require(kit::IsAbsolutePath(path), "an absolute path is absolute");
  Require(kit::AbsolutePath(path) == path, "an absolute path stays");
  Require(path.find("/../") == std::string::npos && !path.ends_with("/.."), "an absolute path has no way up");
  Require(kit::UrlToPath(kit::PathToUrl(path)) == path, "the URL of a path leads to it");
  Require(kit::IsFileUrl(kit::PathToUrl(path)), "the URL of a path is a file URL");

  const std::string name = kit::FileNameOf(path);
  Require(name.empty() || kit::JoinPath(kit::FolderOf(path), name) == path, "a path is a folder and a name");
  const std::string base = kit::BaseNameOf(path);
  Require(name == base || name == base + "." + kit::ExtensionOf(path), "a name is a base name and an extension");
}
