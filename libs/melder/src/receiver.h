#ifndef MELDER_RECEIVER_H
#define MELDER_RECEIVER_H

#include "disk_file.h"
#include "document.h"
#include "ledger.h"

#include <memory>
#include <optional>
#include <string>

namespace melder {

/**
 * A file that parts are appended to, and its working copy.
 *
 * An append is written to the working copy, a hidden file beside the published one, and then the
 * two exchange their names in one step. What was published becomes the working copy; it lacks
 * one update, which the next append copies over before its own. So at every moment the published
 * name stands for a whole file, and an append costs twice what it adds, whatever is there already.
 * Where names cannot be exchanged, each append copies the file and renames the copy.
 */
class Receiver {
public:
  /** `path` has to be free of links: it is what gets replaced. */
  explicit Receiver(std::string path);
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;
  /** Removes the working copy. */
  ~Receiver();

  /** Throws on failure; the published file is then as it was. */
  void append(Document& part);

  [[nodiscard]] const std::string& path() const { return m_path; }

private:
  [[nodiscard]] DiskFile lockPublished() const;
  [[nodiscard]] DiskFile workingCopy(const DiskFile& published);
  [[nodiscard]] std::optional<DiskFile> caughtUp(const DiskFile& published) const;
  [[nodiscard]] DiskFile rewritten(Document& existing, const DiskFile& published);
  /** Whether the copy repeats the published bytes and adds to them, or says the same anew. */
  enum class Copy { Prolonged, Rewritten };
  void publish(const DiskFile& copy, const DiskFile& published, Copy kind);
  void appendLocked(Document& part, const DiskFile& published);
  void appendProtected(Document& existing, Document& part, const DiskFile& published);
  void forget() noexcept;

  std::string m_path;
  std::string m_copyPath;
  std::optional<Ledger> m_ledger;
  FileStamp m_published;           ///< the file that the ledger describes
  std::optional<FileStamp> m_copy; ///< the file before the last update, under the hidden name
  bool m_copyIsDurable = false;    ///< all of the copy but its last updates has been synced
};

/** The hidden name of the working copy of `path`; `purpose` tells several of them apart. */
[[nodiscard]] std::string hiddenName(const std::string& path, const std::string& purpose);
/** Writes `document` anew to `path`, unprotected or with the protection of another one. */
void writeAnew(QPDF& document, const std::string& path, DiskFile::Audience audience,
               QPDF* protection);

} // namespace melder

#endif
