#include "document.h"

#include "disk_file.h"
#include "failure.h"
#include "melder/melder.h"
#include "update.h"

#include <qpdf/BufferInputSource.hh>
#include <qpdf/FileInputSource.hh>
#include <qpdf/QPDFLogger.hh>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace melder {

namespace {

/** Where a sound file may still have its last words; padding and mail footers come behind them. */
constexpr uint64_t kTail = uint64_t{64} << 10;

/** A small file is read in one go: qpdf asks for it in thousands of tiny pieces. */
constexpr uint64_t kReadWhole = uint64_t{16} << 20;

void requireEnd(const DiskFile& file, uint64_t size, const std::string& name) {
  if (size == 0) {
    throw Failure(MELDER_DAMAGED, name + ": the file is empty");
  }
  const uint64_t tail = std::min(size, kTail);
  if (file.read(size - tail, tail).find("startxref") == std::string::npos) {
    throw Failure(MELDER_DAMAGED, name + ": no PDF, or cut off: the end of a PDF is missing");
  }
}

std::shared_ptr<InputSource> sourceOf(const std::string& path, const std::string& name) {
  const DiskFile file = DiskFile::open(path, DiskFile::Access::Read);
  const uint64_t size = file.stamp().size;
  requireEnd(file, size, name);
  if (size <= kReadWhole) {
    return std::make_shared<BufferInputSource>(name, file.read(0, size));
  }
  std::FILE* stream = std::fopen(path.c_str(), "rbe");
  if (stream == nullptr) {
    throw Failure(MELDER_CANNOT_OPEN, name + ": cannot open: " + std::strerror(errno));
  }
  return std::make_shared<FileInputSource>(name.c_str(), stream, true);
}

} // namespace

Document::Document(const std::string& file, const std::string& shownAs)
    : path(file), name(shownAs) {
  const auto silent = QPDFLogger::create();
  silent->setInfo(silent->discard());
  silent->setWarn(silent->discard());
  silent->setError(silent->discard());
  pdf.setLogger(silent);
  pdf.setSuppressWarnings(true);
  pdf.processInputSource(sourceOf(path, name));
  pages = pdf.getAllPages();
  for (const QPDFExc& warning : pdf.getWarnings()) {
    const bool table = warning.getMessageDetail().find("reconstruct") != std::string::npos;
    rebuilt = rebuilt || table;
    pdf.warn(warning); // asking for the list empties it
  }
  QPDFObjectHandle count = pdf.getRoot().getKey("/Pages").getKey("/Count");
  if (!count.isInteger() || count.getIntValue() != static_cast<long long>(pages.size())) {
    throw Failure(MELDER_DAMAGED, name + ": damaged: pages are missing (found " +
                                      std::to_string(pages.size()) + ", announced " +
                                      count.unparse() + ")");
  }
}

void Catalog::read(QPDF& pdf) {
  QPDFObjectHandle root = pdf.getRoot();
  m_id = root.getObjGen();
  m_entries = dictText(root);
  m_changed = false;
}

void Catalog::set(const std::string& key, const std::string& value) {
  std::string& entry = m_entries[key];
  m_changed = m_changed || entry != value;
  entry = value;
}

const std::string& Catalog::get(const std::string& key) const {
  static const std::string kNone;
  const auto found = m_entries.find(key);
  return found == m_entries.end() ? kNone : found->second;
}

void Catalog::write(Update& update) {
  if (m_changed) {
    update.put(m_id, written(m_entries));
    m_changed = false;
  }
}

} // namespace melder
