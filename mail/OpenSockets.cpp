#include "mail/OpenSockets.h"

#include <algorithm>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace folivex {

namespace {

#ifdef _WIN32
constexpr int notInherited = 0;
constexpr int bothWays = SD_BOTH;
constexpr auto closeHandle = &closesocket;
#else
/// No program that is started meanwhile inherits the connection.
constexpr int notInherited = SOCK_CLOEXEC;
constexpr int bothWays = SHUT_RDWR;
constexpr auto closeHandle = &::close;
#endif

} // namespace

curl_socket_t OpenSockets::open(const curl_sockaddr& address) {
  const curl_socket_t handle =
      ::socket(address.family, address.socktype | notInherited, address.protocol);
  if (handle != CURL_SOCKET_BAD) {
    const std::lock_guard lock(m_mutex);
    m_open.push_back(handle);
  }
  return handle;
}

int OpenSockets::close(curl_socket_t handle) {
  // Under the lock: a number that was given back may be another socket a moment later.
  const std::lock_guard lock(m_mutex);
  std::erase(m_open, handle);
  return closeHandle(handle);
}

void OpenSockets::shutDownAll() {
  const std::lock_guard lock(m_mutex);
  for (const curl_socket_t handle : m_open) {
    ::shutdown(handle, bothWays);
  }
}

} // namespace folivex
