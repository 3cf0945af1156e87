#include "mail/windows/EmailListCommands.h"

#include "mail/EmailListFile.h"
#include "mail/delivery/SendOutcome.h"
#include "mail/import/EmailImport.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace folivex {

namespace {

bool hasTextsOfItsOwn(const EmailRow& row) {
  const EmailEntry& entry = row.entry;
  return !entry.body.isEmpty() || !entry.cc.isEmpty() || !entry.subject.isEmpty() ||
         !entry.invoiceNumberInSubject.isEmpty() || !entry.separateInvoices.isEmpty();
}

QString onLines(const QString& first, const QString& second) {
  return first.isEmpty() || second.isEmpty() ? first + second : first + u'\n' + second;
}

} // namespace

QString EmailListCommands::startPath() const {
  return m_state.listPath.isEmpty() ? platform::folderOf(m_list.sourcePath()) : m_state.listPath;
}

CommandWords EmailListCommands::load(const QString& path) {
  const EmailListResult loaded = loadEmailList(m_list, path);
  m_state.hasUnsavedWork = false;
  m_state.listPath = loaded.ok ? path : QString();
  QString notice = loaded.note;
  if (loaded.ok && m_list.isEmpty()) {
    notice = onLines(notice, QStringLiteral("There are no rows in %1").arg(path));
  }
  return {loaded.message, notice};
}

CommandWords EmailListCommands::save() {
  const QString path =
      m_state.listPath.isEmpty() ? QString(defaultEmailListPath) : m_state.listPath;
  const EmailListResult saved = saveEmailList(m_list, path);
  QString notice = saved.note;
  if (saved.ok) {
    m_state.listPath = path;
    m_state.hasUnsavedWork = false;
    notice = onLines(notice, lostInFile());
    if (QFileInfo(path).isRelative()) {
      notice = onLines(QStringLiteral("Saved in the folder %1")
                           .arg(QDir::toNativeSeparators(QDir::currentPath())),
                       notice);
    }
  }
  return {saved.message, notice};
}

CommandWords EmailListCommands::saveAs(const QString& path) {
  m_state.listPath = path;
  return save();
}

QString EmailListCommands::lostInFile() const {
  const auto rows = m_list.rows();
  return std::ranges::any_of(rows, hasTextsOfItsOwn)
             ? QStringLiteral("A list file keeps addresses, files and pages only: the bodies, "
                              "subjects and copy addresses of these rows are not in it.")
             : QString();
}

CommandWords EmailListCommands::take(const EmailImport& import, const QString& spreadsheet) {
  m_list.setEntries(import.entries, spreadsheet);
  m_state.listPath.clear();
  m_state.hasUnsavedWork = true;
  return {{},
          QStringLiteral("%1 imported from %2").arg(mailCount(import.entries.size()), spreadsheet)};
}

QStringList EmailListCommands::findingsOf(const EmailImport& import) {
  QStringList lines;
  for (const ImportFinding& finding : import.findings) {
    lines += finding.text();
  }
  const auto cut = std::ranges::count_if(
      import.entries, [](const EmailEntry& entry) { return fitted(entry) != entry; });
  if (cut > 0) {
    lines += QStringLiteral("Texts longer than the list holds will be cut: %1")
                 .arg(mailCount(static_cast<std::size_t>(cut)));
  }
  return lines;
}

QString EmailListCommands::changeAddress(std::size_t row, const QString& text) {
  const QString before = m_list.rows().at(row).entry.address;
  QString problem = m_list.setAddress(row, text);
  m_state.hasUnsavedWork = m_state.hasUnsavedWork || m_list.rows()[row].entry.address != before;
  return problem;
}

QString EmailListCommands::countText(const EmailList& list, std::size_t shown,
                                     std::size_t selected) {
  QString text = list.count() == 1 ? QStringLiteral("1 row")
                                   : QStringLiteral("%1 rows").arg(countWithCommas(list.count()));
  text += QStringLiteral(", %1 with an address").arg(countWithCommas(list.addressedCount()));
  if (shown < list.count()) {
    text += QStringLiteral(", %1 shown").arg(countWithCommas(shown));
  }
  return text + QStringLiteral(", %1 selected").arg(countWithCommas(selected));
}

} // namespace folivex
