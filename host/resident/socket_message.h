// What the client, the server and its workers say to one another, over sockets that keep messages apart. A socket is
// closed by its owner; descriptors that arrive with a message belong to it. Nothing waits but AwaitMessage.
//
//   client to server   Hello
//   server to client   Accepted: it is alive
//   client to server   Request, with the file of the request, the working folder and the three standard streams, which
//                      a server that does not answer would hold open
//   server to worker   Work: the request with the client's connection
//   worker to server   Misfit: its Java cannot serve this one, or Withdrawn: the client has gone; nothing has begun
//   worker to client   Offer; client to worker Go; worker to client Begun. Until then the client may turn elsewhere
//   worker to server   Taken
//   client to worker   Signal, with its number
//   worker to client   Ended, with the exit code
//   worker to server   Done: ready for the next one, or Leaving
#ifndef HOST_RESIDENT_SOCKET_MESSAGE_H
#define HOST_RESIDENT_SOCKET_MESSAGE_H

#include "host/resident/descriptor.h"

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace resident {

enum class MessageKind : uint32_t {
  Hello = 1,
  Accepted,
  Request,
  Work,
  Misfit,
  Withdrawn,
  Offer,
  Go,
  Begun,
  Taken,
  Signal,
  Ended,
  Done,
  Leaving,
  Status, // the answer is a text
  Stop    // answered by the end of the connection, when the server has ended
};

struct Message {
  MessageKind kind{};
  int32_t value = 0;
  std::string text;
  std::vector<Descriptor> descriptors;
};

struct Outgoing {
  MessageKind kind{};
  int32_t value = 0;
  std::string_view text = {};
};

enum class Received { Message, Nothing, End };

// False when the other side is gone, or does not read.
[[nodiscard]] bool Send(int socket, const Outgoing &message, std::initializer_list<int> descriptors = {});
// Nothing when none has arrived yet. What is no message counts as the end.
[[nodiscard]] Received Receive(int socket, Message &message);

using Deadline = std::chrono::steady_clock::time_point;
// Nothing when the time is over, or `wake`, unless it is -1, is readable before.
[[nodiscard]] Received AwaitMessage(int socket, Message &message, Deadline deadline, int wake = -1);
// For poll: milliseconds, rounded up, 0 when it is over.
[[nodiscard]] int MillisecondsUntil(Deadline deadline);

// Whether the process at the other end is of this process's user.
[[nodiscard]] bool IsOwnPeer(int socket);

} // namespace resident

#endif
