#include "receiver.h"

#include "digest.h"
#include "failure.h"
#include "melder/melder.h"

#include <qpdf/QPDFWriter.hh>

#include <filesystem>

namespace melder {

namespace {

constexpr size_t kLongestName = 255;

[[noreturn]] void failChanged(const std::string& path) {
  throw Failure(MELDER_CANNOT_WRITE,
                path + ": another program changed the file while it was appended to");
}

/** A person knows nothing of working copies: messages name the file that was to grow. */
std::string withPublicName(std::string text, const std::string& hidden, const std::string& path) {
  const size_t at = text.find(hidden);
  return at == std::string::npos ? text : text.replace(at, hidden.size(), path);
}

} // namespace

std::string hiddenName(const std::string& path, const std::string& purpose) {
  const std::filesystem::path full(path);
  std::string name = full.filename().string();
  const std::string ending = ".melder-" + purpose;
  if (name.size() + ending.size() + 1 > kLongestName) {
    const Digest digest = sha256(name);
    name = hexOf({reinterpret_cast<const char*>(digest.data()), digest.size()});
  }
  return (full.parent_path() / ('.' + name + ending)).string();
}

void writeAnew(QPDF& document, const std::string& path, DiskFile::Audience audience,
               QPDF* protection) {
  // Made first: the writer opens what is there and leaves its mode alone.
  { const DiskFile made = DiskFile::create(path, audience); }
  try {
    QPDFWriter writer(document, path.c_str());
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setPreserveEncryption(false);
    if (protection != nullptr) {
      writer.copyEncryptionParameters(*protection);
    }
    writer.write();
  } catch (const QPDFExc&) {
    removeQuietly(path);
    throw;
  } catch (const std::runtime_error& problem) {
    removeQuietly(path);
    throw Failure(MELDER_CANNOT_WRITE, path + ": cannot write: " + problem.what());
  }
}

Receiver::Receiver(std::string path)
    : m_path(std::move(path)), m_copyPath(hiddenName(m_path, "copy")) {}

Receiver::~Receiver() {
  forget();
}

void Receiver::forget() noexcept {
  m_ledger.reset();
  // Another process may have put its own working copy there: only ours is removed.
  if (m_copy && stampAt(m_copyPath).sameFile(*m_copy)) {
    removeQuietly(m_copyPath);
  }
  m_copy.reset();
  m_copyIsDurable = false;
}

DiskFile Receiver::lockPublished() const {
  requireWritable(m_path);
  for (;;) {
    DiskFile file = DiskFile::open(m_path, DiskFile::Access::Read);
    if (!file.lock()) {
      throw Failure(MELDER_CANNOT_WRITE, m_path + ": another program is appending to the file");
    }
    if (stampAt(m_path).sameFile(file.stamp())) {
      return file;
    }
  }
}

/** The working copy of the last append, with the update it lacks; nothing if it is not safe to use.
 */
std::optional<DiskFile> Receiver::caughtUp(const DiskFile& published) const {
  if (!m_copy || stampAt(m_copyPath) != *m_copy || m_copy->links != 1) {
    return std::nullopt;
  }
  DiskFile copy = DiskFile::open(m_copyPath, DiskFile::Access::ReadWrite);
  // Whoever opened it under its public name would see it grow.
  if (!copy.isUnwatched()) {
    return std::nullopt;
  }
  copy.copyRange(published, m_copy->size, m_published.size);
  return copy;
}

DiskFile Receiver::workingCopy(const DiskFile& published) {
  if (auto copy = caughtUp(published)) {
    return std::move(*copy);
  }
  DiskFile copy = DiskFile::create(m_copyPath, DiskFile::Audience::Owner);
  m_copy = copy.stamp();
  m_copyIsDurable = false;
  copy.copyRange(published, 0, m_published.size);
  copy.dressLike(published);
  return copy;
}

/** A working copy that takes updates, of a file that does not. */
DiskFile Receiver::rewritten(Document& existing, const DiskFile& published) {
  writeAnew(existing.pdf, m_copyPath, DiskFile::Audience::Owner, nullptr);
  DiskFile copy = DiskFile::open(m_copyPath, DiskFile::Access::ReadWrite);
  m_copy = copy.stamp();
  copy.dressLike(published);
  Document anew(m_copyPath, m_path);
  m_ledger = Ledger::of(anew);
  if (!m_ledger || anew.pages.size() != existing.pages.size()) {
    throw Failure(MELDER_DAMAGED, m_path + ": too damaged to be appended to");
  }
  return copy;
}

void Receiver::publish(const DiskFile& copy, const DiskFile& published, Copy kind) {
  // After a power failure the name must not stand for bytes that never reached the disk. What a
  // person had before the run is synced for good, once; for the updates it is enough that they
  // are there or not there as a whole.
  if (m_copyIsDurable) {
    copy.settleBeforeRename();
  } else {
    copy.sync();
  }
  if (stampAt(m_path) != m_published) {
    failChanged(m_path);
  }
  if (!exchangeNames(m_copyPath, m_path)) {
    renameOver(m_copyPath, m_path);
    m_copy.reset();
    m_copyIsDurable = false;
    m_published = copy.stamp();
    return;
  }
  if (!stampAt(m_copyPath).sameFile(m_published)) {
    // Somebody put another file there in between: it gets its name back.
    (void)exchangeNames(m_copyPath, m_path);
    failChanged(m_path);
  }
  m_copy = published.stamp();
  m_copyIsDurable = true;
  m_published = copy.stamp();
  if (kind == Copy::Rewritten || m_copy->links != 1) {
    removeQuietly(m_copyPath);
    m_copy.reset();
    m_copyIsDurable = false;
  }
}

/** A protected file keeps its protection, and so is written anew each time. */
void Receiver::appendProtected(Document& existing, Document& part, const DiskFile& published) {
  const DiskFile plain = rewritten(existing, published);
  m_ledger->append(part, plain);
  Document joined(m_copyPath, m_path);
  const std::string aside = hiddenName(m_path, "locked");
  try {
    writeAnew(joined.pdf, aside, DiskFile::Audience::Owner, &existing.pdf);
    const DiskFile locked = DiskFile::open(aside, DiskFile::Access::ReadWrite);
    locked.dressLike(published);
    locked.sync();
    renameOver(aside, m_copyPath);
    m_copy = locked.stamp();
    publish(locked, published, Copy::Rewritten);
  } catch (...) {
    removeQuietly(aside);
    throw;
  }
  m_ledger.reset();
}

void Receiver::appendLocked(Document& part, const DiskFile& published) {
  const FileStamp now = published.stamp();
  if (!m_ledger || now != m_published) {
    forget();
    m_published = now;
    Document existing(m_path);
    m_ledger = Ledger::of(existing);
    if (!m_ledger && existing.pdf.isEncrypted()) {
      appendProtected(existing, part, published);
      return;
    }
    if (!m_ledger) {
      const DiskFile copy = rewritten(existing, published);
      m_ledger->append(part, copy);
      publish(copy, published, Copy::Rewritten);
      return;
    }
  }
  const DiskFile copy = workingCopy(published);
  m_ledger->append(part, copy);
  publish(copy, published, Copy::Prolonged);
}

void Receiver::append(Document& part) {
  const DiskFile published = lockPublished();
  try {
    appendLocked(part, published);
  } catch (const Failure& failure) {
    forget();
    throw Failure(failure.code(), withPublicName(failure.what(), m_copyPath, m_path));
  } catch (...) {
    forget();
    throw;
  }
}

} // namespace melder
