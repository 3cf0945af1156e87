// Workshop: sample parts, a folder to append them in, and readers that share no code with the
// library.
#pragma once

#include "melder/melder.h"
#include "tests/support/Programs.h"

#include <QTemporaryDir>

#include <filesystem>
#include <string>

namespace folivex::test {

namespace fs = std::filesystem;

class Workshop : public testing::Test {
protected:
  ~Workshop() override {
    EXPECT_EQ(filesBelow(m_folder.path()).filter(QStringLiteral(".part")), QStringList());
  }

  QString at(const char* name) const { return m_folder.filePath(QString::fromUtf8(name)); }
  static QString sample(const char* name) { return QLatin1String(MELDER_SAMPLES) + name; }
  /// A copy of a sample that a test may append to, with parts at its end.
  QString receiver(const char* name, std::initializer_list<const char*> parts = {}) const {
    QFile::remove(at(name));
    QFile::copy(sample(name), at(name));
    for (const char* part : parts) {
      EXPECT_EQ(append(sample(part), at(name)), MELDER_OK) << lastError();
    }
    return at(name);
  }

  static const char16_t* utf16(const QString& text) {
    return reinterpret_cast<const char16_t*>(text.utf16());
  }
  static int32_t append(const QString& addition, const QString& existing) {
    const bool isDone = getAppendPDFToFile(utf16(addition), utf16(existing), u"") != 0;
    return isDone ? MELDER_OK : GetStatus();
  }
  static std::string lastError() { return fs::path(MelderLastErrorText()).string(); }

  static fs::path pathOf(const QString& file) { return file.toStdString(); }

  /// Pages, links, fields and so on of a file that must be sound, one fact a line.
  static QStringList look(const QString& file) {
    const ProgramRun check = runProgram("qpdf", {"--check", file});
    EXPECT_EQ(check.exitCode, 0) << (check.out + check.err).toStdString();
    const ProgramRun seen = runProgram(MELDER_PYTHON, {MELDER_SCRIPTS "look.py", file});
    EXPECT_EQ(seen.exitCode, 0) << seen.err.toStdString();
    return QString::fromUtf8(seen.out).split('\n', Qt::SkipEmptyParts);
  }
  /// The facts of one kind, without the word that names it.
  static QStringList facts(const QStringList& seen, const QString& kind) {
    QStringList found;
    for (const QString& line : seen) {
      if (line.startsWith(kind + ' ')) {
        found += line.mid(kind.size() + 1);
      }
    }
    return found;
  }

  QTemporaryDir m_folder;
};

} // namespace folivex::test
