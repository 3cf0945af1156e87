// What some tests call that Windows does not have. Those are left out there (left-out.txt) and need
// only compile: a call ends the program.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <sys/types.h>

using uid_t = unsigned;
using gid_t = unsigned;
using rlim_t = std::uint64_t;
struct rlimit {
  rlim_t rlim_cur;
  rlim_t rlim_max;
};

enum { RLIMIT_FSIZE, RLIMIT_NOFILE };
inline constexpr int SIGKILL = 9;
inline constexpr int SIGXFSZ = 25;
inline constexpr int SIGPIPE = 13;
inline constexpr int WNOHANG = 1;

template <typename... Arguments> int elsewhere(const Arguments&... /*arguments*/) {
  std::abort();
}

template <typename Letter> int mkfifo(const Letter* name, unsigned mode) {
  return elsewhere(name, mode);
}
inline int symlink(const char* target, const char* name) {
  return elsewhere(target, name);
}
inline pid_t fork() {
  return elsewhere();
}
inline pid_t waitpid(pid_t child, int* status, int options) {
  return elsewhere(child, status, options);
}
inline int kill(pid_t process, int signal) {
  return elsewhere(process, signal);
}
inline int pipe(int* ends) {
  return elsewhere(ends);
}
inline int pause() {
  return elsewhere();
}
inline int getrlimit(int what, rlimit* limit) {
  return elsewhere(what, limit);
}
inline int setrlimit(int what, const rlimit* limit) {
  return elsewhere(what, limit);
}
inline uid_t geteuid() {
  return static_cast<uid_t>(elsewhere());
}
inline int seteuid(uid_t user) {
  return elsewhere(user);
}
inline int setresuid(uid_t real, uid_t effective, uid_t saved) {
  return elsewhere(real, effective, saved);
}
inline int setresgid(gid_t real, gid_t effective, gid_t saved) {
  return elsewhere(real, effective, saved);
}
inline int setuid(uid_t user) {
  return elsewhere(user);
}
inline bool WIFEXITED(int status) {
  return status == elsewhere();
}
inline bool WIFSIGNALED(int status) {
  return status == elsewhere();
}
inline int WEXITSTATUS(int status) {
  return elsewhere(status);
}
inline int WTERMSIG(int status) {
  return elsewhere(status);
}
