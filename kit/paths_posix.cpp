#include "kit/paths.h"
#include "kit/text.h"
#include "kit/unfinished_files.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace fs = std::filesystem;

namespace kit {

namespace {

constexpr int maxLinks = 40;

int HexDigit(char letter) {
  if (letter >= '0' && letter <= '9')
    return letter - '0';
  if (letter >= 'a' && letter <= 'f')
    return letter - 'a' + 10;
  if (letter >= 'A' && letter <= 'F')
    return letter - 'A' + 10;
  return -1;
}

// A zero byte, which would end the path, stays escaped.
std::string DecodeEscapes(std::string_view text) {
  std::string decoded;
  for (size_t at = 0; at < text.size(); ++at) {
    const int high = text[at] == '%' && at + 2 < text.size() ? HexDigit(text[at + 1]) : -1;
    const int low = high >= 0 ? HexDigit(text[at + 2]) : -1;
    if (low >= 0 && high + low > 0) {
      decoded += static_cast<char>(high * 16 + low);
      at += 2;
    } else {
      decoded += text[at];
    }
  }
  return decoded;
}

// Root passes every access check; a file without any write permission is meant to be kept all the same.
bool HasWritePermission(const std::string &path) {
  std::error_code error;
  constexpr fs::perms anyWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
  const bool marked = (fs::status(path, error).permissions() & anyWrite) != fs::perms::none;
  return !error && marked && access(path.c_str(), W_OK) == 0;
}

// Mode bits say nothing about read-only mounts and the like.
bool CanMakeFileIn(const std::string &folder) {
  const UnfinishedFile probe = MakeUnfinishedFile(folder, 0600);
  if (probe.file < 0)
    return false;
  close(probe.file);
  unlink(probe.path.c_str());
  return true;
}

} // namespace

bool IsFile(const std::string &path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

bool IsFolder(const std::string &path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

bool Exists(const std::string &path) {
  std::error_code error;
  return fs::exists(path, error);
}

std::string FollowLinks(const std::string &path) {
  std::error_code error;
  fs::path at(path);
  for (int link = 0; link < maxLinks && fs::is_symlink(at, error); ++link) {
    const fs::path next = fs::read_symlink(at, error);
    if (error)
      break;
    at = at.parent_path() / next;
  }
  return at.string();
}

bool IsSameFile(const std::string &path, const std::string &other) {
  std::error_code missing;
  return path == other || fs::equivalent(path, other, missing);
}

std::string RealPath(const std::string &path) {
  std::error_code error;
  const fs::path real = fs::weakly_canonical(path, error);
  return error ? path : real.string();
}

bool IsWritable(const std::string &path) {
  return HasWritePermission(path) && (!IsFolder(path) || CanMakeFileIn(path));
}

bool IsAbsolutePath(std::string_view path) { return !path.empty() && path.front() == '/'; }

std::string FolderOf(std::string_view path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string_view::npos)
    return ".";
  return std::string(slash == 0 ? "/" : path.substr(0, slash));
}

std::string FileNameOf(std::string_view path) {
  const size_t slash = path.rfind('/');
  return std::string(slash == std::string_view::npos ? path : path.substr(slash + 1));
}

std::string BaseNameOf(std::string_view path) {
  const std::string name = FileNameOf(path);
  const size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

std::string ExtensionOf(std::string_view path) {
  const std::string name = FileNameOf(path);
  const size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? std::string() : name.substr(dot + 1);
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string joined(folder);
  if (!joined.empty() && joined.back() != '/')
    joined += '/';
  return joined.append(name);
}

std::string AbsolutePath(std::string_view path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(fs::path(path), error);
  return error ? std::string(path) : absolute.lexically_normal().string();
}

std::string PersonalFolder(const char *variable, std::string_view belowHome) {
  const char *named = std::getenv(variable);
  if (named && IsAbsolutePath(named))
    return named;
  const char *home = std::getenv("HOME");
  return home && IsAbsolutePath(home) ? JoinPath(home, belowHome) : std::string();
}

std::string_view UrlScheme(std::string_view text) {
  static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.";
  const size_t colon = text.find_first_not_of(letters);
  const bool isScheme = colon != std::string_view::npos && colon > 1 && text[colon] == ':';
  return isScheme ? text.substr(0, colon) : std::string_view();
}

bool IsUrl(std::string_view text) {
  const std::string_view scheme = UrlScheme(text);
  return IsFileUrl(text) || (!scheme.empty() && text.substr(scheme.size()).starts_with("://"));
}

bool IsFileUrl(std::string_view text) { return EqualsIgnoreCase(UrlScheme(text), "file"); }

std::string UrlToPath(std::string_view text) {
  if (!IsFileUrl(text))
    return std::string(text);
  std::string_view rest = text.substr(5);
  rest = rest.substr(0, rest.find_first_of("?#"));
  if (rest.starts_with("//")) {
    rest.remove_prefix(2);
    const size_t path = rest.find('/');
    const std::string_view authority = rest.substr(0, path);
    if (path != std::string_view::npos && (authority.empty() || EqualsIgnoreCase(authority, "localhost")))
      rest.remove_prefix(path);
  }
  return DecodeEscapes(rest);
}

std::string PathToUrl(std::string_view path) {
  static constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/-._~!$&'()*+,;=:@";
  static constexpr char digits[] = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char letter : path) {
    if (plain.find(letter) != std::string_view::npos) {
      url += letter;
    } else {
      const auto byte = static_cast<unsigned char>(letter);
      url += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return url;
}

} // namespace kit
