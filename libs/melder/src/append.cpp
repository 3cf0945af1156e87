#include "append.h"

#include "document.h"
#include "failure.h"
#include "ledger.h"
#include "melder/melder.h"
#include "receiver.h"

#include <filesystem>
#include <list>
#include <unordered_map>

namespace melder {

namespace {

/** A run that appends to many files in turn keeps so many of them at hand. */
constexpr size_t kMostReceivers = 256;

/** The files of this run, the last used first. Unloading the library drops them, as the end of a
 * run. */
class Receivers {
public:
  Receiver& of(const std::string& path) {
    const auto known = m_places.find(path);
    if (known != m_places.end()) {
      m_list.splice(m_list.begin(), m_list, known->second);
      return m_list.front();
    }
    if (m_list.size() >= kMostReceivers) {
      m_places.erase(m_list.back().path());
      m_list.pop_back();
    }
    m_list.emplace_front(path);
    m_places[path] = m_list.begin();
    return m_list.front();
  }
  /** False if there was nothing to drop. */
  bool dropOthers(const std::string& path) {
    const bool any = m_list.size() > (m_places.contains(path) ? 1 : 0);
    clear();
    return any;
  }
  void clear() noexcept {
    m_places.clear();
    m_list.clear();
  }

private:
  std::list<Receiver> m_list;
  std::unordered_map<std::string, std::list<Receiver>::iterator> m_places;
};

Receivers& receivers() {
  static Receivers all;
  return all;
}

void requirePages(const Document& part) {
  if (part.pages.empty()) {
    throw Failure(MELDER_DAMAGED, part.path + ": the file has no pages");
  }
}

void appendOnce(const std::string& addition, const std::string& path) {
  Document part(addition);
  requirePages(part);
  receivers().of(path).append(part);
}

/** `target` looks as a file that it replaces did. */
void makeJoined(const std::string& first, const std::string& second, const std::string& target,
                const std::string& aside) {
  Document start(first);
  Document part(second);
  requirePages(part);
  writeAnew(start.pdf, aside, DiskFile::Audience::Usual, nullptr);
  Receiver(aside).append(part);
  if (start.pdf.isEncrypted()) {
    Document joined(aside, target);
    const std::string locked = hiddenName(target, "locked");
    writeAnew(joined.pdf, locked, DiskFile::Audience::Usual, &start.pdf);
    renameOver(locked, aside);
  }
  const DiskFile made = DiskFile::open(aside, DiskFile::Access::ReadWrite);
  if (stampAt(target).inode != 0) {
    requireWritable(target);
    made.dressLike(DiskFile::open(target, DiskFile::Access::Read));
  }
  made.sync();
  renameOver(aside, target);
}

} // namespace

void appendToFile(const std::string& addition, const std::string& existing) {
  const std::string path = finalPath(existing);
  try {
    appendOnce(addition, path);
  } catch (const Failure& failure) {
    // The working copies of other files take room that this one may need.
    if (failure.code() != MELDER_CANNOT_WRITE || !receivers().dropOthers(path)) {
      throw;
    }
    appendOnce(addition, path);
  }
}

void appendToNewFile(const std::string& first, const std::string& second,
                     const std::string& target) {
  // A link is followed, so that it stays one.
  const bool isThere = stampAt(target).inode != 0;
  const std::string place =
      isThere ? finalPath(target) : std::filesystem::absolute(target).string();
  const std::string aside = hiddenName(place, "new");
  try {
    makeJoined(first, second, place, aside);
  } catch (...) {
    removeQuietly(aside);
    throw;
  }
}

void dropWorkingCopies() noexcept {
  receivers().clear();
}

} // namespace melder
