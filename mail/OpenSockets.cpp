#include "mail/OpenSockets.h"

#include <algorithm>

#ifdef _WIN32
#include <winsock2.h>
#else
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace folivex {

#ifdef _WIN32

namespace {

int closeHandle(curl_socket_t handle) {
  return closesocket(handle);
}
void shutDown(curl_socket_t handle) {
  ::shutdown(handle, SD_BOTH);
}
curl_socket_t makeSocket(const curl_sockaddr& address) {
  return ::socket(address.family, address.socktype, address.protocol);
}

} // namespace

#else

namespace {

int closeHandle(curl_socket_t handle) {
  return ::close(handle);
}
void shutDown(curl_socket_t handle) {
  ::shutdown(handle, SHUT_RDWR);
}
/// No program that is started meanwhile inherits the connection.
curl_socket_t makeSocket(const curl_sockaddr& address) {
  const curl_socket_t handle = ::socket(address.family, address.socktype, address.protocol);
  if (handle >= 0) {
    ::fcntl(handle, F_SETFD, FD_CLOEXEC);
  }
  return handle;
}

} // namespace

#endif

curl_socket_t OpenSockets::open(const curl_sockaddr& address) {
  const curl_socket_t handle = makeSocket(address);
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
  std::for_each(m_open.begin(), m_open.end(), shutDown);
}

} // namespace folivex
