// PdfFacts: what a PDF shows and does, seen by readers that share no code with ours.
#pragma once

#include "tests/support/Programs.h"

#include <QSet>

#include <functional>

namespace folivex::test {

/// The facts that describe.py tells of a file, which must be sound, too.
inline QStringList factsOf(const QString& pdf) {
  const ProgramRun check = runProgram("qpdf", {"--check", pdf});
  EXPECT_EQ(check.exitCode, 0) << (check.out + check.err).toStdString();
  const ProgramRun seen =
      runProgram("/usr/bin/python3", {FOLIVEX_SOURCE_DIR "/tests/support/describe.py", pdf});
  EXPECT_EQ(seen.exitCode, 0) << seen.err.toStdString();
  return QString::fromUtf8(seen.out).split('\n', Qt::SkipEmptyParts);
}

/// Rows of tests/`file` with empty lines between them: "# the fault that it would catch", a line
/// from whose words `make` makes a PDF, and facts. Of each kind that a row names the PDF has these
/// and no others.
inline void expectFacts(const char* file, const std::function<QString(QStringList)>& make) {
  const QByteArray rows = contentOf(QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/") + file);
  for (const QString& row : QString::fromUtf8(rows).split("\n\n")) {
    QStringList lines = row.split('\n', Qt::SkipEmptyParts);
    SCOPED_TRACE(lines.takeFirst().toStdString());
    QStringList seen = factsOf(make(lines.takeFirst().split(' ')));
    QSet<QString> kinds;
    for (const QString& line : lines) {
      kinds += line.section(' ', 0, 0);
    }
    seen.removeIf([&](const QString& fact) { return !kinds.contains(fact.section(' ', 0, 0)); });
    EXPECT_FALSE(lines.isEmpty());
    EXPECT_EQ(seen.join('\n'), lines.join('\n'));
  }
}

} // namespace folivex::test
