#ifndef MELDER_DISK_FILE_H
#define MELDER_DISK_FILE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace melder {

/** What tells one state of a file from another without reading it. */
struct FileStamp {
  uint64_t device = 0;
  uint64_t inode = 0;
  uint64_t size = 0;
  int64_t modified = 0; ///< nanoseconds
  int64_t changed = 0;  ///< nanoseconds; also moves when the mode or a name changes
  uint64_t links = 0;
  bool operator==(const FileStamp&) const = default;
  [[nodiscard]] bool sameFile(const FileStamp& other) const {
    return device == other.device && inode == other.inode;
  }
};

/** An open regular file. Every call that fails throws Failure naming the file and the reason. */
class DiskFile {
public:
  enum class Access { Read, ReadWrite };
  /** Who may read a new file: nobody else, or whoever may read what this process makes. */
  enum class Audience { Owner, Usual };

  /** Opens what exists; refuses anything but a regular file, without waiting on a pipe. */
  static DiskFile open(const std::string& path, Access access);
  /** Makes a new file; whatever else has that name is removed first. */
  static DiskFile create(const std::string& path, Audience audience);

  DiskFile(DiskFile&& other) noexcept;
  DiskFile& operator=(DiskFile&& other) noexcept;
  DiskFile(const DiskFile&) = delete;
  DiskFile& operator=(const DiskFile&) = delete;
  ~DiskFile();

  [[nodiscard]] const std::string& path() const { return m_path; }
  [[nodiscard]] FileStamp stamp() const;
  /** Up to `length` bytes; fewer only at the end of the file. */
  [[nodiscard]] std::string read(uint64_t offset, size_t length) const;
  void write(uint64_t offset, std::string_view bytes) const;
  void cut(uint64_t size) const;
  /** Returns when the bytes have survived a power failure. */
  void sync() const;
  /**
   * Makes sure that a power failure never leaves a later change of the file's name without the
   * bytes; both may be lost together. Much cheaper than `sync` where the file system keeps its
   * changes in order, the same elsewhere.
   */
  void settleBeforeRename() const;

  /** Copies the bytes [from, to) of `source` to the same place here. */
  void copyRange(const DiskFile& source, uint64_t from, uint64_t to) const;
  /** Mode, owner and access lists of `model`; what the system refuses (the owner) is left. */
  void dressLike(const DiskFile& model) const;

  /** Waits until no other process appends to this very file; false if one still does after a while.
   */
  [[nodiscard]] bool lock() const;
  /** Whether nobody else has the file open, so that nobody can see it grow. */
  [[nodiscard]] bool isUnwatched() const;

private:
  DiskFile(std::string path, int descriptor);
  [[noreturn]] void fail(int32_t code, const char* action) const;

  std::string m_path;
  int m_descriptor;
};

/** The file a path leads to at the end of all links. Throws Failure if there is none. */
[[nodiscard]] std::string finalPath(const std::string& path);
/** Throws Failure unless the file may be written by this process. */
void requireWritable(const std::string& path);
/** Stamp of what has this name, links not followed; inode 0 if there is nothing. */
[[nodiscard]] FileStamp stampAt(const std::string& path) noexcept;
void removeQuietly(const std::string& path) noexcept;

/** Exchanges two names in one step; false where the file system cannot do that. */
[[nodiscard]] bool exchangeNames(const std::string& one, const std::string& other);
/** `from` takes the name `to` in one step. */
void renameOver(const std::string& from, const std::string& to);

} // namespace melder

#endif
