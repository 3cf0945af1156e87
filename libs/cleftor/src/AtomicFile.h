#ifndef CLEFTOR_ATOMIC_FILE_H
#define CLEFTOR_ATOMIC_FILE_H

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace cleftor {

/**
 * A file that appears whole or not at all. It is written under a name of its own in the target's
 * folder and takes the target's place at keep(); without that, nothing of it stays and a file that
 * was at the target is as it was. The data is not forced to the disk: thousands of forced writes
 * would take longer than all the rest, and a power cut ends the run anyway.
 *
 * Every operation throws Failure CLEFTOR_CANNOT_WRITE that names the target and the system's
 * reason.
 */
class AtomicFile {
public:
  /** Refuses a target that is there and no ordinary file: a folder or device is never replaced. */
  explicit AtomicFile(const std::string& target);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  /** Adds bytes at the end. Small pieces are collected: most outputs are written in one go. */
  void append(std::string_view bytes);

  /** Replaces bytes that were appended before; all of them must exist. */
  void overwrite(uint64_t offset, std::string_view bytes);

  /** Bytes appended so far. */
  uint64_t size() const { return m_written + m_pending.size(); }

  /** Completes the file and puts it in the target's place. */
  void keep();

private:
  [[noreturn]] void fail(int error) const;
  void open();
  void flush();
  void drop();

  std::string m_target;
  std::filesystem::path m_place;
  std::filesystem::path m_part;
  std::FILE* m_file = nullptr;
  std::string m_pending;
  uint64_t m_written = 0;
};

} // namespace cleftor

#endif
