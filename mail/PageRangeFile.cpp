#include "mail/PageRangeFile.h"

#include "engine/output/CSplitPdfInit.h"
#include "platform/Paths.h"

#include <QFile>

namespace folivex {

namespace {

AttachmentFile otherFile(const EmailEntry& entry) {
  return {
      {},
      QStringLiteral("the file %1 has changed since it was written: no pages are taken out of it "
                     "unless a person accepts it in the list")
          .arg(entry.file),
      {},
      true};
}

} // namespace

bool hasPageRange(const EmailEntry& entry) {
  return entry.extractPageStart != 0 || entry.extractPageEnd != 0;
}

QString pageRangeLabel(const EmailEntry& entry) {
  const QString pages =
      QStringLiteral("p%1-%2").arg(entry.extractPageStart).arg(entry.extractPageEnd);
  const QString invoice = entry.invoiceNumberInSubject.trimmed();
  return invoice.isEmpty() ? pages : invoice + u' ' + pages;
}

QString pageRangePath(const QString& file, const QString& label) {
  const QString suffix = QStringLiteral(".pdf");
  QString base = platform::withoutTrailingBlanks(file);
  if (base.endsWith(suffix, Qt::CaseInsensitive)) {
    base.chop(suffix.size());
  }
  QString flat = label;
  flat.replace(u'/', u'-');
  return base + u' ' + platform::safePathComponent(flat) + suffix;
}

AttachmentFile writePageRange(CSplitPdfInit& library, const EmailEntry& entry,
                              const QString& label) {
  if (!library.loaded) {
    return {{}, library.error, {}};
  }
  // A range that is open at one end could hand somebody else's pages to the recipient.
  if (entry.extractPageStart < 1 || entry.extractPageEnd < entry.extractPageStart) {
    return {{},
            QStringLiteral("the page range %1 to %2 of %3 is none")
                .arg(entry.extractPageStart)
                .arg(entry.extractPageEnd)
                .arg(entry.file),
            {}};
  }
  const platform::FileDigest before = platform::FileDigest::of(entry.file);
  if (entry.identity.isKnown() && before != entry.identity) {
    return otherFile(entry);
  }
  const QString path = pageRangePath(entry.file, label);
  QFile::remove(path);
  const QString source = platform::withoutTrailingBlanks(entry.file);
  const auto utf16 = [](const QString& text) {
    return reinterpret_cast<const char16_t*>(text.utf16());
  };
  if (library.SplitPdf(utf16(source), u"", utf16(path), entry.extractPageStart,
                       entry.extractPageEnd) != CSplitPdfInit::ok) {
    return {{},
            QStringLiteral("pages %1 to %2 of %3 cannot be taken out: %4")
                .arg(entry.extractPageStart)
                .arg(entry.extractPageEnd)
                .arg(entry.file, library.lastErrorText()),
            {}};
  }
  const platform::FileDigest made = platform::FileDigest::of(path);
  if (platform::FileDigest::of(entry.file) != before) {
    QFile::remove(path); // these pages may be of either file
    return otherFile(entry);
  }
  return {path, {}, made};
}

} // namespace folivex
