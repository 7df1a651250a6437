// Preloaded into a process, makes one of its system calls on files fail. Counts the calls that change what is in
// $VLXSLT_FAULT_FOLDER and below, or only those named in $VLXSLT_FAULT_CALLS ("write,fsync"), and lists them in
// $VLXSLT_FAULT_LOG, a line each: number, call, path, what was done. $VLXSLT_FAULT_AT is the number of the call, "7+"
// for it and all that follow, or "all"; $VLXSLT_FAULT_DO says what happens there: an error ("ENOSPC"), "short" (half of
// what is written), "kill" or "stop" (the process gets that signal before the call).
#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#define EXPORT extern "C" __attribute__((visibility("default")))

namespace {

struct ErrorName {
  const char *name;
  int code;
};
constexpr std::array errorNames = {ErrorName{"ENOSPC", ENOSPC}, ErrorName{"EIO", EIO},     ErrorName{"EACCES", EACCES},
                                   ErrorName{"EPERM", EPERM},   ErrorName{"EINTR", EINTR}, ErrorName{"EROFS", EROFS}};

std::string Variable(const char *name) {
  const char *value = std::getenv(name);
  return value ? value : "";
}

// Never destroyed: calls are made until the process is gone.
struct Orders {
  std::string folder = Variable("VLXSLT_FAULT_FOLDER");
  std::string calls = "," + Variable("VLXSLT_FAULT_CALLS") + ",";
  std::string action = Variable("VLXSLT_FAULT_DO");
  bool isForAll = Variable("VLXSLT_FAULT_AT") == "all";
  bool goesOn = Variable("VLXSLT_FAULT_AT").ends_with('+');
  int at = std::atoi(Variable("VLXSLT_FAULT_AT").c_str());
  int log = OpenLog();

  // High up, and by the system itself, so that neither the program nor this library meets it.
  static int OpenLog() {
    const std::string path = Variable("VLXSLT_FAULT_LOG");
    const auto low = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600));
    if (low < 0)
      return -1;
    const int high = fcntl(low, F_DUPFD_CLOEXEC, 500);
    syscall(SYS_close, low);
    return high;
  }
};

const Orders &Given() {
  static const Orders &orders = *new Orders;
  return orders;
}

std::atomic<int> count{0};

enum class Verdict { Pass, Fail, Short };

bool IsBelow(std::string_view path) {
  const std::string &folder = Given().folder;
  return !folder.empty() && path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

// Decides on one call; sets errno for one that fails.
Verdict Judge(const char *call, std::string_view path) {
  const Orders &orders = Given();
  if (!IsBelow(path) || (orders.calls != ",," && orders.calls.find("," + std::string(call) + ",") == std::string::npos))
    return Verdict::Pass;
  const int number = ++count;
  const bool isMeant = orders.isForAll || number == orders.at || (orders.goesOn && number > orders.at);
  std::string line = std::to_string(number) + " " + call + " " + std::string(path);
  line += isMeant ? " " + orders.action + "\n" : "\n";
  if (orders.log >= 0)
    syscall(SYS_write, orders.log, line.data(), line.size());
  if (!isMeant)
    return Verdict::Pass;
  if (orders.action == "short")
    return Verdict::Short;
  if (orders.action == "kill" || orders.action == "stop") {
    // To this thread, which goes no further before it takes effect.
    raise(orders.action == "kill" ? SIGKILL : SIGSTOP);
    return Verdict::Pass;
  }
  const auto *error = std::ranges::find(errorNames, orders.action, &ErrorName::name);
  if (error == errorNames.end())
    return Verdict::Pass;
  errno = error->code;
  return Verdict::Fail;
}

Verdict JudgePath(const char *call, const char *path) {
  const int before = errno;
  std::string absolute = path ? path : "";
  std::array<char, PATH_MAX> current{};
  if (!absolute.starts_with('/') && getcwd(current.data(), current.size()))
    absolute = std::string(current.data()) + "/" + absolute;
  errno = before;
  return Judge(call, absolute);
}

Verdict JudgeFile(const char *call, int file, bool mustBeWritable) {
  const int before = errno;
  std::array<char, PATH_MAX> path{};
  std::array<char, 40> link{};
  std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
  const auto length = syscall(SYS_readlinkat, AT_FDCWD, link.data(), path.data(), path.size());
  const auto flags = mustBeWritable ? syscall(SYS_fcntl, file, F_GETFL) : O_RDWR;
  errno = before;
  if (length <= 0 || flags < 0 || (flags & O_ACCMODE) == O_RDONLY)
    return Verdict::Pass;
  return Judge(call, {path.data(), static_cast<size_t>(length)});
}

template <class Function> Function *Next(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

template <class Call> int OpenJudged(const char *path, int flags, const Call &call) {
  const bool writes = (flags & (O_WRONLY | O_RDWR | O_CREAT)) != 0;
  return writes && JudgePath("open", path) == Verdict::Fail ? -1 : call();
}

template <class Result, class Call> Result WriteJudged(int file, size_t size, const Call &call) {
  const Verdict verdict = JudgeFile("write", file, true);
  if (verdict == Verdict::Fail)
    return -1;
  return call(verdict == Verdict::Short && size > 1 ? size / 2 : size);
}

template <class Call> int PathJudged(const char *name, const char *path, const Call &call) {
  return JudgePath(name, path) == Verdict::Fail ? -1 : call();
}

template <class Call> int FileJudged(const char *name, int file, const Call &call) {
  return JudgeFile(name, file, false) == Verdict::Fail ? -1 : call();
}

mode_t ModeOf(int flags, va_list arguments) { return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0; }

__attribute__((constructor)) void Prepare() { (void)Given(); }

} // namespace

EXPORT int open(const char *path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = ModeOf(flags, more);
  va_end(more);
  return OpenJudged(path, flags, [&] { return Next<int(const char *, int, ...)>("open")(path, flags, mode); });
}
EXPORT int open64(const char *path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = ModeOf(flags, more);
  va_end(more);
  return OpenJudged(path, flags, [&] { return Next<int(const char *, int, ...)>("open64")(path, flags, mode); });
}
EXPORT int openat(int folder, const char *path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = ModeOf(flags, more);
  va_end(more);
  return OpenJudged(path, flags,
                    [&] { return Next<int(int, const char *, int, ...)>("openat")(folder, path, flags, mode); });
}
EXPORT int openat64(int folder, const char *path, int flags, ...) {
  va_list more;
  va_start(more, flags);
  const mode_t mode = ModeOf(flags, more);
  va_end(more);
  return OpenJudged(path, flags,
                    [&] { return Next<int(int, const char *, int, ...)>("openat64")(folder, path, flags, mode); });
}

EXPORT ssize_t write(int file, const void *bytes, size_t size) {
  return WriteJudged<ssize_t>(file, size, [&](size_t allowed) {
    return Next<ssize_t(int, const void *, size_t)>("write")(file, bytes, allowed);
  });
}
EXPORT ssize_t pwrite(int file, const void *bytes, size_t size, off_t at) {
  return WriteJudged<ssize_t>(file, size, [&](size_t allowed) {
    return Next<ssize_t(int, const void *, size_t, off_t)>("pwrite")(file, bytes, allowed, at);
  });
}
EXPORT ssize_t pwrite64(int file, const void *bytes, size_t size, off64_t at) {
  return WriteJudged<ssize_t>(file, size, [&](size_t allowed) {
    return Next<ssize_t(int, const void *, size_t, off64_t)>("pwrite64")(file, bytes, allowed, at);
  });
}
// A short one writes the first part only.
EXPORT ssize_t writev(int file, const iovec *parts, int number) {
  return WriteJudged<ssize_t>(file, static_cast<size_t>(number), [&](size_t allowed) {
    return Next<ssize_t(int, const iovec *, int)>("writev")(file, parts, static_cast<int>(allowed));
  });
}

EXPORT int fsync(int file) {
  return FileJudged("fsync", file, [&] { return Next<int(int)>("fsync")(file); });
}
EXPORT int fdatasync(int file) {
  return FileJudged("fsync", file, [&] { return Next<int(int)>("fdatasync")(file); });
}
// The descriptor is closed in any case, as Linux has it.
EXPORT int close(int file) {
  const bool fails = JudgeFile("close", file, true) == Verdict::Fail;
  const int error = errno;
  const int result = Next<int(int)>("close")(file);
  if (!fails)
    return result;
  errno = error;
  return -1;
}
EXPORT int ftruncate(int file, off_t size) noexcept {
  return FileJudged("ftruncate", file, [&] { return Next<int(int, off_t)>("ftruncate")(file, size); });
}
EXPORT int ftruncate64(int file, off64_t size) noexcept {
  return FileJudged("ftruncate", file, [&] { return Next<int(int, off64_t)>("ftruncate64")(file, size); });
}
EXPORT int fchmod(int file, mode_t mode) noexcept {
  return FileJudged("chmod", file, [&] { return Next<int(int, mode_t)>("fchmod")(file, mode); });
}
EXPORT int chmod(const char *path, mode_t mode) noexcept {
  return PathJudged("chmod", path, [&] { return Next<int(const char *, mode_t)>("chmod")(path, mode); });
}
EXPORT int fchown(int file, uid_t owner, gid_t group) noexcept {
  return FileJudged("chown", file, [&] { return Next<int(int, uid_t, gid_t)>("fchown")(file, owner, group); });
}
EXPORT int lchown(const char *path, uid_t owner, gid_t group) noexcept {
  return PathJudged("chown", path, [&] { return Next<int(const char *, uid_t, gid_t)>("lchown")(path, owner, group); });
}
EXPORT int mkdir(const char *path, mode_t mode) noexcept {
  return PathJudged("mkdir", path, [&] { return Next<int(const char *, mode_t)>("mkdir")(path, mode); });
}
EXPORT int link(const char *from, const char *to) noexcept {
  return PathJudged("link", to, [&] { return Next<int(const char *, const char *)>("link")(from, to); });
}
EXPORT int rename(const char *from, const char *to) noexcept {
  return PathJudged("rename", to, [&] { return Next<int(const char *, const char *)>("rename")(from, to); });
}
EXPORT int renameat(int fromFolder, const char *from, int toFolder, const char *to) noexcept {
  return PathJudged("rename", to, [&] {
    return Next<int(int, const char *, int, const char *)>("renameat")(fromFolder, from, toFolder, to);
  });
}
EXPORT int unlink(const char *path) noexcept {
  return PathJudged("unlink", path, [&] { return Next<int(const char *)>("unlink")(path); });
}
EXPORT int unlinkat(int folder, const char *path, int flags) noexcept {
  return PathJudged("unlink", path, [&] { return Next<int(int, const char *, int)>("unlinkat")(folder, path, flags); });
}
EXPORT int remove(const char *path) noexcept {
  return PathJudged("unlink", path, [&] { return Next<int(const char *)>("remove")(path); });
}
