// Paths and file URLs, as host strings (UTF-8). Nothing here throws; what cannot be examined counts as absent.
#ifndef KIT_PATHS_H
#define KIT_PATHS_H

#include <string>
#include <string_view>
#include <vector>

namespace kit {

[[nodiscard]] bool IsFile(const std::string &path);
[[nodiscard]] bool IsFolder(const std::string &path);
[[nodiscard]] bool Exists(const std::string &path);
// Whether this process may write to it; a folder is probed, since some file systems refuse in spite of the mode bits.
[[nodiscard]] bool IsWritable(const std::string &path);
// Where a chain of symbolic links ends, whether or not there is a file yet.
[[nodiscard]] std::string FollowLinks(const std::string &path);
// The one path of whatever has several through links, also in its folders; what does not exist keeps its name.
[[nodiscard]] std::string RealPath(const std::string &path);
// Whether two paths lead to one file; the same path does, also where there is none.
[[nodiscard]] bool IsSameFile(const std::string &path, const std::string &other);

[[nodiscard]] bool IsAbsolutePath(std::string_view path);
// Everything before the last separator: "/" for a file in the root, "." for a bare name.
[[nodiscard]] std::string FolderOf(std::string_view path);
[[nodiscard]] std::string FileNameOf(std::string_view path);
// "name.ext" without its extension, and the extension without its dot. ".profile" is all base name.
[[nodiscard]] std::string BaseNameOf(std::string_view path);
[[nodiscard]] std::string ExtensionOf(std::string_view path);
[[nodiscard]] std::string JoinPath(std::string_view folder, std::string_view name);
// Lexical: absolute against the working folder, without "." and "..".
[[nodiscard]] std::string AbsolutePath(std::string_view path);

// A folder of the person's: what the variable names, as "XDG_STATE_HOME", or `belowHome`. Only absolute paths count;
// empty without one.
[[nodiscard]] std::string PersonalFolder(const char *variable, std::string_view belowHome);

// "http" of "http://host/path"; empty without one. One letter is the drive of another system, not a scheme.
[[nodiscard]] std::string_view UrlScheme(std::string_view text);
// A file URL, or "scheme://" of another kind, as network documents have it.
[[nodiscard]] bool IsUrl(std::string_view text);
// "file:" in any of its forms, with or without slashes.
[[nodiscard]] bool IsFileUrl(std::string_view text);
// The platform path of a file URL, escapes decoded; other text comes back as it is.
[[nodiscard]] std::string UrlToPath(std::string_view text);
// "file:///…" with everything escaped that a URI cannot carry.
[[nodiscard]] std::string PathToUrl(std::string_view path);

} // namespace kit

#endif
