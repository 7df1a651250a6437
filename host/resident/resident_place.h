// Where a resident server is found: a socket in a folder that is this user's alone. The socket's name stands for the
// installation and for what a server cannot take over from its clients, so that only like meets like: another version,
// other limits, groups or namespaces have a server of their own.
#ifndef HOST_RESIDENT_RESIDENT_PLACE_H
#define HOST_RESIDENT_RESIDENT_PLACE_H

#include "host/configuration/installation.h"
#include "host/resident/descriptor.h"

#include <string>

namespace resident {

class ResidentPlace {
public:
  // Makes the folder when there is none. False with a problem when it cannot be made, is a link, another user's, or
  // open to others.
  [[nodiscard]] bool Find(const host::Installation &installation, std::string &problem);

  // Nothing when no server listens there. One that listens but takes no connection for that long is a problem.
  [[nodiscard]] Descriptor Connect(std::string &problem) const;
  // In the place of a socket that was left behind.
  [[nodiscard]] Descriptor Listen(std::string &problem) const;
  // Whether the socket there is the one that this process made.
  [[nodiscard]] bool IsOurs() const;
  void Remove() const;

  [[nodiscard]] std::string SocketPath() const;

private:
  [[nodiscard]] std::string ShortPath(const std::string &file) const;

  std::string folderPath;
  Descriptor folder;
  std::string name;
  mutable unsigned long madeNode = 0;
};

} // namespace resident

#endif
