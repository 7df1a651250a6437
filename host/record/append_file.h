// Appends whole pieces to a file that is there, each with one system call, so that a reader and a process that is
// killed see complete pieces. A piece that does not fit on the disk is taken back.
#ifndef HOST_RECORD_APPEND_FILE_H
#define HOST_RECORD_APPEND_FILE_H

#include <string>
#include <string_view>

namespace host {

class AppendFile {
public:
  AppendFile() = default;
  ~AppendFile();
  AppendFile(const AppendFile &) = delete;
  AppendFile &operator=(const AppendFile &) = delete;

  // After the first failure everything else fails too, and Error keeps the first reason.
  [[nodiscard]] bool Open(const std::string &path);
  [[nodiscard]] bool Append(std::string_view piece);
  // Syncs and closes.
  [[nodiscard]] bool Close();

  // "path: what the system says"; empty while nothing has failed.
  [[nodiscard]] const std::string &Error() const { return error; }

private:
  bool Fail(int code);

  std::string name;
  int file = -1;
  std::string error;
};

} // namespace host

#endif
