#include "engine/job/RepairedCopies.h"

#include "engine/base/Utf16.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "platform/FileLocks.h"
#include "platform/Paths.h"

#include <utility>

namespace folivex {

namespace {

/// A private file under a name that no other run takes; what a killed run leaves of it is removed
/// with the other parts of the folder.
class PrivatePart {
public:
  PrivatePart()
      : m_path(platform::newPartPath(platform::temporaryFolder())),
        m_isThere(platform::openForLock(m_file, m_path, true) == 0 &&
                  m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {}
  ~PrivatePart() {
    m_file.close(); // else some systems do not remove it
    if (m_isThere) {
      QFile::remove(m_path);
    }
  }
  PrivatePart(const PrivatePart&) = delete;
  PrivatePart& operator=(const PrivatePart&) = delete;

  const QString& path() const { return m_path; }
  bool isThere() const { return m_isThere; }

  /// For a library to put a file in its place, which an open one does not let happen everywhere.
  void makeRoom() {
#ifdef Q_OS_WIN
    m_file.close();
#endif
  }

  /// Takes what a library has put in the file's place.
  bool hold() {
    m_file.close();
    return platform::openForLock(m_file, m_path, false) == 0 &&
           platform::lockFile(m_file, platform::LockUse::Shared) != platform::LockResult::Busy &&
           platform::isFileAt(m_file, m_path);
  }

private:
  QFile m_file;
  QString m_path;
  bool m_isThere;
};

} // namespace

std::shared_ptr<const QString> RepairedCopies::of(const QString& source, const QString& password) {
  const std::lock_guard lock(m_mutex);
  Key key{source, password, platform::FileStamp::beforeReading(source)};
  if (!key.stamp) {
    return nullptr;
  }
  if (key != m_last) {
    m_lastCopy = make(key);
    m_last = std::move(key);
  }
  return m_lastCopy;
}

int RepairedCopies::pagesOf(const QString& path, const QString& password) const {
  GlyphrunView* const view = m_text.OpenView(utf16(path), utf16(password), nullptr);
  const int pages = view != nullptr ? m_text.GetViewPageCount(view) : 0;
  m_text.CloseView(view);
  return pages;
}

std::shared_ptr<const QString> RepairedCopies::make(const Key& key) const {
  const auto part = std::make_shared<PrivatePart>();
  if (!part->isThere()) {
    return nullptr;
  }
  const char16_t* const source = utf16(key.source);
  const char16_t* const password = utf16(key.password);
  // A copy with fewer pages than the other library finds would lose them without a word.
  const int expected = pagesOf(key.source, key.password);
  part->makeRoom();
  int pages = m_split.RepairFile(source, password, utf16(part->path()));
  if (pages <= 0 || pages < expected) {
    pages = m_text.RepairFile(source, password, utf16(part->path()));
  }
  const bool isWhole = pages > 0 && part->hold() && pagesOf(part->path(), {}) == pages &&
                       platform::FileStamp::of(key.source) == key.stamp;
  return isWhole ? std::shared_ptr<const QString>(part, &part->path()) : nullptr;
}

} // namespace folivex
