// Files that are not whole yet lie beside their targets, under names that say which process writes them; a killed
// process leaves them. The Java layer names its files in the same way. Any thread.
#ifndef KIT_UNFINISHED_FILES_H
#define KIT_UNFINISHED_FILES_H

#include <string>
#include <string_view>

namespace kit {

// How the name of every such file begins.
inline constexpr std::string_view unfinishedPrefix = ".vlxslt-";

// How the names of this process's files begin: the prefix, the system that counts its process numbers, its number.
[[nodiscard]] const std::string &OwnUnfinishedPrefix();

struct UnfinishedFile {
  std::string path;
  int file = -1; // with errno when it cannot be made
};
// Makes a file that was not there, for writing. Its name cannot be guessed and no link is followed: in a folder of
// several people, a link under a known name would lead the writer elsewhere.
[[nodiscard]] UnfinishedFile MakeUnfinishedFile(const std::string &folder, unsigned mode);

enum class Reservation { Made, Taken, Failed };
// Makes an empty file under that name, for its owner only, unless there is something: of several processes that want
// the name, one gets it. No link is followed.
[[nodiscard]] Reservation ReserveFile(const std::string &path);

// Removes from the folder the files of processes that are gone: of this system at once, of others, whose processes
// cannot be seen from here, a day after they were last written. What cannot be removed stays.
void RemoveAbandonedFiles(const std::string &folder) noexcept;

} // namespace kit

#endif
