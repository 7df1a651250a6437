#include "host/resident/resident_place.h"

#include "host/resident/resident_request.h"
#include "host/resident/socket_message.h"
#include "kit/hash.h"
#include "kit/paths.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <vector>

namespace resident {

namespace {

constexpr int waitingClients = 256;
constexpr auto maxConnectWait = std::chrono::seconds(3);
constexpr auto connectInterval = std::chrono::milliseconds(10);
// Of what is said over the sockets.
constexpr int protocolVersion = 1;

std::string DescribeError() { return std::generic_category().message(errno); }

std::string DescribeFile(const std::string &path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0)
    return path + '\n';
  return path + '|' + std::to_string(found.st_dev) + '|' + std::to_string(found.st_ino) + '|' +
         std::to_string(found.st_size) + '|' + std::to_string(found.st_mtim.tv_sec) + '.' +
         std::to_string(found.st_mtim.tv_nsec) + '\n';
}

std::string DescribeInstallation(const host::Installation &installation) {
  std::string text = kit::RealPath("/proc/self/exe") + '\n';
  for (const std::string &path : {std::string("/proc/self/exe"), installation.ClientPath("XSLT"),
                                  kit::JoinPath(installation.clientFolder, "vlxslt-java.jar"),
                                  kit::JoinPath(installation.clientFolder, "parser/xercesImpl.jar")})
    text += DescribeFile(path);
  return text;
}

// What a process has from its parent, and cannot be handed another one for a single request.
std::string DescribeProcess() {
  std::string text = std::to_string(getegid());
  std::vector<gid_t> groups(static_cast<size_t>(std::max(0, getgroups(0, nullptr))));
  const int count = getgroups(static_cast<int>(groups.size()), groups.data());
  for (int index = 0; index < count; ++index)
    text += ',' + std::to_string(groups[static_cast<size_t>(index)]);
  for (int kind = 0; kind < RLIM_NLIMITS; ++kind) {
    rlimit limit{};
    if (getrlimit(static_cast<__rlimit_resource_t>(kind), &limit) == 0)
      text += '/' + std::to_string(limit.rlim_cur) + ':' + std::to_string(limit.rlim_max);
  }
  text += '\n' + std::to_string(getpriority(PRIO_PROCESS, 0)) + '\n';
  for (const char *space : {"mnt", "net", "pid", "user"}) {
    std::array<char, 64> target{};
    const std::string link = std::string("/proc/self/ns/") + space;
    const ssize_t size = readlink(link.c_str(), target.data(), target.size());
    text.append(target.data(), size > 0 ? static_cast<size_t>(size) : 0).push_back('\n');
  }
  struct stat root {};
  if (stat("/", &root) == 0)
    text += std::to_string(root.st_dev) + ':' + std::to_string(root.st_ino);
  return text;
}

std::string ComposeName(const host::Installation &installation) {
  std::array<char, 20> digits{};
  const uint64_t hash =
      kit::Hash(std::to_string(protocolVersion) + '\n' + DescribeInstallation(installation) + DescribeProcess());
  std::snprintf(digits.data(), digits.size(), "%016lx", hash);
  return digits.data();
}

// The runtime folder of this user's session, or else one below /tmp.
std::string ChooseFolder() {
  const char *runtime = std::getenv("XDG_RUNTIME_DIR");
  struct stat found {};
  if (runtime && *runtime == '/' && stat(runtime, &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == geteuid())
    return kit::JoinPath(runtime, "vlxslt");
  return "/tmp/vlxslt-" + std::to_string(geteuid());
}

std::string FindFault(const struct stat &folder) {
  if (folder.st_uid != geteuid())
    return "belongs to another user";
  if ((folder.st_mode & 077) != 0)
    return "is open to other users";
  return {};
}

} // namespace

bool ResidentPlace::Find(const host::Installation &installation, std::string &problem) {
  folderPath = ChooseFolder();
  if (mkdir(folderPath.c_str(), 0700) != 0 && errno != EEXIST) {
    problem = "cannot make the folder " + folderPath + ": " + DescribeError();
    return false;
  }
  folder = Descriptor(open(folderPath.c_str(), O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat found {};
  if (!folder || fstat(folder.Get(), &found) != 0) {
    problem = folderPath + " is no folder";
    return false;
  }
  if (const std::string fault = FindFault(found); !fault.empty()) {
    problem = "the folder " + folderPath + " " + fault;
    return false;
  }
  name = ComposeName(installation);
  return true;
}

std::string ResidentPlace::SocketPath() const { return kit::JoinPath(folderPath, name); }

// The address of a socket holds 107 bytes, and folders may be deep.
std::string ResidentPlace::ShortPath(const std::string &file) const {
  return "/proc/self/fd/" + std::to_string(folder.Get()) + "/" + file;
}

namespace {

struct Address {
  explicit Address(const std::string &path) { std::strncpy(value.sun_path, path.c_str(), sizeof value.sun_path - 1); }
  [[nodiscard]] const sockaddr *Get() const { return reinterpret_cast<const sockaddr *>(&value); }
  sockaddr_un value{AF_UNIX, {}};
};

Descriptor MakeSocket() { return Descriptor(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)); }

} // namespace

Descriptor ResidentPlace::Connect(std::string &problem) const {
  Descriptor made = MakeSocket();
  const Address address(ShortPath(name));
  const Deadline deadline = std::chrono::steady_clock::now() + maxConnectWait;
  while (connect(made.Get(), address.Get(), sizeof address.value) != 0) {
    // Too many are waiting already.
    if (errno == EAGAIN && MillisecondsUntil(deadline) > 0) {
      poll(nullptr, 0, static_cast<int>(connectInterval.count()));
      continue;
    }
    if (errno != ECONNREFUSED && errno != ENOENT)
      problem = SocketPath() + " cannot be used: " + DescribeError();
    return {};
  }
  if (IsOwnPeer(made.Get()))
    return made;
  problem = SocketPath() + " is served by another user";
  return {};
}

Descriptor ResidentPlace::Listen(std::string &problem) const {
  // Beside its place, and then put there, so that no client finds a socket that does not listen yet.
  const std::string fresh = name + "-" + std::to_string(getpid());
  unlinkat(folder.Get(), fresh.c_str(), 0);
  Descriptor made = MakeSocket();
  const Address address(ShortPath(fresh));
  struct stat found {};
  if (bind(made.Get(), address.Get(), sizeof address.value) == 0 &&
      fchmodat(folder.Get(), fresh.c_str(), 0600, 0) == 0 && listen(made.Get(), waitingClients) == 0 &&
      fstatat(folder.Get(), fresh.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 &&
      renameat(folder.Get(), fresh.c_str(), folder.Get(), name.c_str()) == 0) {
    madeNode = found.st_ino;
    return made;
  }
  problem = "cannot listen on " + SocketPath() + ": " + DescribeError();
  unlinkat(folder.Get(), fresh.c_str(), 0);
  return {};
}

bool ResidentPlace::IsOurs() const {
  struct stat found {};
  return fstatat(folder.Get(), name.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0 && found.st_ino == madeNode;
}

void ResidentPlace::Remove() const { unlinkat(folder.Get(), name.c_str(), 0); }

} // namespace resident
