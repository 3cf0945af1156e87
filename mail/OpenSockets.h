// OpenSockets: the sockets of a connection, so that another thread can end a wait on them.
#pragma once

#include <curl/curl.h>

#include <mutex>
#include <vector>

namespace folivex {

/// For any thread.
class OpenSockets {
public:
  /// Makes a socket and remembers it.
  curl_socket_t open(const curl_sockaddr& address);
  int close(curl_socket_t handle);
  /// Ends every talk at once: whoever waits on a socket sees it closed. The sockets stay open.
  void shutDownAll();

private:
  std::mutex m_mutex;
  std::vector<curl_socket_t> m_open;
};

} // namespace folivex
