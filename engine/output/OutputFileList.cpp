#include "engine/output/OutputFileList.h"

#include "platform/Paths.h"

namespace folivex {

namespace {

constexpr QLatin1Char fieldSeparator('|');

QString field(QString text) {
  return text.replace(fieldSeparator, QLatin1Char('?'));
}

} // namespace

QString OutputFileList::pathFor(const QString& outputFolder, const QString& source) {
  return platform::joinPath(outputFolder,
                            platform::fileTitle(source) + QStringLiteral("_filelist.txt"));
}

OutputFileList::OutputFileList(const SplitSetup& setup, const QString& source)
    : m_path(pathFor(setup.outputDir, source)), m_source(source),
      m_keepsBookmarks(QLatin1Char(setup.keepBookmarks ? 'Y' : 'N')) {}

void OutputFileList::output(const ReservedOutput& reserved) {
  if (reserved.path.isEmpty()) {
    return;
  }
  // A list that cannot be opened is told at the end, with the reason.
  if (m_count++ == 0 && !m_file.openReplacement(m_path)) {
    return;
  }
  m_file.write(field(m_source) + fieldSeparator + field(reserved.path) + fieldSeparator +
               QString::number(reserved.firstPage) + fieldSeparator +
               QString::number(reserved.lastPage) + fieldSeparator + m_keepsBookmarks +
               QStringLiteral("\r\n"));
}

QString OutputFileList::close() {
  const bool opened = m_file.isOpen();
  if (m_count == 0 || (m_file.close() && opened)) {
    return {};
  }
  return QStringLiteral("%1: the file list could not be written: %2")
      .arg(m_path, m_file.errorText());
}

} // namespace folivex
