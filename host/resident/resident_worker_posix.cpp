#include "host/resident/resident_worker.h"

#include "host/resident/client_watch.h"
#include "host/resident/command_words.h"
#include "host/resident/java_state.h"
#include "host/resident/resident_request.h"
#include "host/resident/socket_message.h"
#include "host/resident/start_process.h"
#include "kit/paths.h"
#include "kit/program_words.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

extern char **environ;

namespace resident {

namespace {

constexpr std::array standardStreams = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};
// For a client's answer; it waits for nothing else.
constexpr auto maxGoWait = std::chrono::seconds(5);

// A request as it came from the server.
struct Work {
  Descriptor connection;
  ResidentRequest request;
  Descriptor folder;
  std::array<Descriptor, 3> streams;
};

std::optional<Work> AdoptWork(Message message) {
  constexpr size_t count = 3 + standardStreams.size();
  if (message.kind != MessageKind::Work || message.descriptors.size() != count)
    return std::nullopt;
  std::optional<ResidentRequest> request = ReadRequest(message.descriptors[1].Get());
  if (!request)
    return std::nullopt;
  Work work{std::move(message.descriptors[0]), std::move(*request), std::move(message.descriptors[2]), {}};
  for (size_t index = 0; index < standardStreams.size(); ++index)
    work.streams.at(index) = std::move(message.descriptors[3 + index]);
  return work;
}

// What the streams of the command before left behind.
void RenewStreams() {
  for (std::FILE *stream : {stdin, stdout, stderr}) {
    __fpurge(stream);
    std::clearerr(stream);
  }
  // Decided once and for all otherwise.
  std::setvbuf(stdout, nullptr, isatty(STDOUT_FILENO) == 1 ? _IOLBF : _IOFBF, BUFSIZ);
  for (std::ostream *stream : {&std::cout, &std::cerr, &std::clog})
    stream->clear();
  std::cin.clear();
}

// This process in the place of the client's, until it goes.
class ClientContext {
public:
  explicit ClientContext(Work &work) : environment(kit::PointersTo(work.request.environment)) {
    environ = environment.data();
    tzset();
    umask(work.request.fileMask);
    isAtPlace = fchdir(work.folder.Get()) == 0;
  }
  ~ClientContext() {
    std::fflush(stdout);
    std::fflush(stderr);
    const Descriptor nowhere(open("/dev/null", O_RDWR | O_CLOEXEC));
    for (const int standard : standardStreams)
      dup2(nowhere.Get(), standard);
    // Other people's folders stay free.
    static_cast<void>(!chdir("/"));
    static std::array<char *, 1> none = {nullptr};
    environ = none.data();
  }
  ClientContext(const ClientContext &) = delete;
  ClientContext &operator=(const ClientContext &) = delete;

  [[nodiscard]] bool IsAtPlace() const { return isAtPlace; }
  // The standard streams come last: until then nothing can be said on them.
  static void TakeStreams(Work &work) {
    for (size_t index = 0; index < standardStreams.size(); ++index) {
      dup2(work.streams.at(index).Get(), standardStreams.at(index));
      work.streams.at(index) = Descriptor();
    }
    RenewStreams();
  }

private:
  std::vector<char *> environment;
  bool isAtPlace = false;
};

class Worker {
public:
  Worker(const WorkerProgram &given, const host::Installation &where) : program(given), installation(where) {}

  // What the server is told. Done or Leaving: the client on `connection` gets `code` then.
  [[nodiscard]] MessageKind Serve(Work work, Descriptor &connection, int &code) {
    std::vector<char *> words = kit::PointersTo(work.request.arguments);
    const int count = static_cast<int>(work.request.arguments.size());
    const ClientContext context(work);
    const host::Configuration configuration = ReadSettings(count, words.data());
    const std::string needs = DescribeJavaNeeds(configuration);
    if (hasServed && needs != servedNeeds)
      return MessageKind::Misfit;
    if (!context.IsAtPlace() || !Begin(work.connection.Get()))
      return MessageKind::Withdrawn;
    servedNeeds = needs;
    hasServed = true;
    ClientContext::TakeStreams(work);
    bool isStopped = false;
    {
      const ClientWatch watch(work.connection.Get());
      code = program.run(count, words.data());
      isStopped = watch.HasStopped();
    }
    connection = std::move(work.connection);
    const bool isUsable = !isStopped && (code == 0 || (HasLoadedJava() && program.isUsable(configuration)));
    return isUsable ? MessageKind::Done : MessageKind::Leaving;
  }

private:
  // As the command will read it; what is wrong with it is said then.
  [[nodiscard]] host::Configuration ReadSettings(int count, char **words) const {
    const CommandWords named = ReadCommandWords(count, words);
    const std::string file = host::FindConfigurationFile(named.configuration, installation);
    host::Configuration configuration = host::ReadConfiguration(file, installation).configuration;
    for (const std::string &catalog : named.catalogs)
      configuration.catalogs.push_back(kit::AbsolutePath(kit::UrlToPath(catalog)));
    return configuration;
  }

  // The client may have turned elsewhere meanwhile, and nothing may run twice.
  [[nodiscard]] static bool Begin(int connection) {
    const Descriptor self(static_cast<int>(syscall(SYS_pidfd_open, getpid(), 0)));
    Message message;
    return Send(connection, {MessageKind::Offer}, {self.Get()}) &&
           AwaitMessage(connection, message, std::chrono::steady_clock::now() + maxGoWait) == Received::Message &&
           message.kind == MessageKind::Go && Send(inheritedConnection, {MessageKind::Taken}) &&
           Send(connection, {MessageKind::Begun});
  }

  const WorkerProgram &program;
  const host::Installation &installation;
  std::string servedNeeds;
  bool hasServed = false;
};

} // namespace

void ServeAsWorker(const WorkerProgram &program, const host::Installation &installation) {
  fcntl(inheritedConnection, F_SETFD, FD_CLOEXEC);
  Worker worker(program, installation);
  Message message;
  while (AwaitMessage(inheritedConnection, message, Deadline::max()) == Received::Message) {
    std::optional<Work> work = AdoptWork(std::exchange(message, {}));
    Descriptor connection;
    int code = 0;
    const MessageKind answer = work ? worker.Serve(std::move(*work), connection, code) : MessageKind::Withdrawn;
    // The server first: the client's next request must find this worker free.
    const bool isHeard = Send(inheritedConnection, {answer});
    if (connection)
      static_cast<void>(Send(connection.Get(), {MessageKind::Ended, code}));
    if (!isHeard || answer == MessageKind::Leaving)
      return;
  }
}

} // namespace resident
