#include "host/resident/socket_message.h"

#include "kit/system_call.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace resident {

namespace {

constexpr size_t maxDescriptors = 6;
constexpr size_t maxText = 8000;

struct Header {
  MessageKind kind;
  int32_t value;
};

void AdoptDescriptors(msghdr &received, std::vector<Descriptor> &into) {
  for (cmsghdr *part = CMSG_FIRSTHDR(&received); part; part = CMSG_NXTHDR(&received, part)) {
    if (part->cmsg_level != SOL_SOCKET || part->cmsg_type != SCM_RIGHTS)
      continue;
    const size_t count = (part->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (size_t index = 0; index < count; ++index) {
      int number = -1;
      std::memcpy(&number, CMSG_DATA(part) + index * sizeof(int), sizeof number);
      into.emplace_back(number);
    }
  }
}

} // namespace

bool Send(int socket, const Outgoing &message, std::initializer_list<int> descriptors) {
  Header header{message.kind, message.value};
  std::string text(message.text.substr(0, maxText));
  std::array<iovec, 2> parts = {{{&header, sizeof header}, {text.data(), text.size()}}};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * maxDescriptors)> control{};
  msghdr sent{};
  sent.msg_iov = parts.data();
  sent.msg_iovlen = parts.size();
  if (descriptors.size() > 0) {
    const size_t size = sizeof(int) * descriptors.size();
    sent.msg_control = control.data();
    sent.msg_controllen = CMSG_SPACE(size);
    cmsghdr *part = CMSG_FIRSTHDR(&sent);
    part->cmsg_level = SOL_SOCKET;
    part->cmsg_type = SCM_RIGHTS;
    part->cmsg_len = CMSG_LEN(size);
    std::memcpy(CMSG_DATA(part), descriptors.begin(), size);
  }
  return kit::Repeat([&] { return sendmsg(socket, &sent, MSG_NOSIGNAL | MSG_DONTWAIT); }) >= 0;
}

Received Receive(int socket, Message &message) {
  Header header{};
  std::string text(maxText, '\0');
  std::array<iovec, 2> parts = {{{&header, sizeof header}, {text.data(), text.size()}}};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int) * maxDescriptors)> control{};
  msghdr received{};
  received.msg_iov = parts.data();
  received.msg_iovlen = parts.size();
  received.msg_control = control.data();
  received.msg_controllen = control.size();
  const ssize_t size = kit::Repeat([&] { return recvmsg(socket, &received, MSG_CMSG_CLOEXEC | MSG_DONTWAIT); });
  if (size < 0 && (errno == EAGAIN || errno == EWOULDBLOCK))
    return Received::Nothing;
  message = {};
  if (size > 0)
    AdoptDescriptors(received, message.descriptors);
  if (size < static_cast<ssize_t>(sizeof header) || (received.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0)
    return Received::End;
  message.kind = header.kind;
  message.value = header.value;
  message.text = text.substr(0, static_cast<size_t>(size) - sizeof header);
  return Received::Message;
}

int MillisecondsUntil(Deadline deadline) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
  return static_cast<int>(std::clamp<long long>(left, 0, 1 << 30));
}

Received AwaitMessage(int socket, Message &message, Deadline deadline, int wake) {
  for (;;) {
    if (const Received received = Receive(socket, message); received != Received::Nothing)
      return received;
    std::array<pollfd, 2> waiting = {{{socket, POLLIN, 0}, {wake, POLLIN, 0}}};
    const int ready = poll(waiting.data(), waiting.size(), MillisecondsUntil(deadline));
    if (ready == 0 || (ready > 0 && waiting[1].revents != 0))
      return Received::Nothing;
  }
}

bool IsOwnPeer(int socket) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

} // namespace resident
