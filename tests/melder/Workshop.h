// Workshop: sample parts, and a folder to append them in.
#pragma once

#include "melder/melder.h"
#include "tests/support/PdfBuilder.h"
#include "tests/support/PdfFacts.h"

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

  QString at(const QString& name) const { return m_folder.filePath(name); }
  /// One of the parts, which are all made once for a program.
  static QString sample(const QString& name) {
    static const QTemporaryDir folder;
    [[maybe_unused]] static const bool areMade = makeParts(folder.path() + '/');
    return folder.filePath(name);
  }
  /// A copy of a sample that a test may append to, with parts at its end; "itself" is one, too.
  QString receiver(const QString& name, const QStringList& parts = {}) const {
    QFile::remove(at(name));
    QFile::copy(sample(name), at(name));
    for (const QString& part : parts) {
      EXPECT_EQ(append(part == "itself" ? at(name) : sample(part), at(name)), MELDER_OK)
          << lastError();
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

  QTemporaryDir m_folder;

private:
  /// What the texts tell, and what another program makes of plain.pdf.
  static bool makeParts(const QString& folder) {
    const QDir texts(FOLIVEX_SOURCE_DIR "/tests/melder/parts");
    for (const QString& name : texts.entryList({"*.txt"})) {
      testpdf::PdfBuilder pdf;
      pdf.addText(contentOf(texts.filePath(name)).toStdString());
      // A version that some of what is appended is too new for.
      const QByteArray bytes =
          QByteArray::fromStdString(pdf.finish()).replace("PDF-1.7", "PDF-1.4");
      writeFile(folder + name.chopped(4) + ".pdf", bytes);
    }
    for (const auto& [name, options] : {std::pair("packed", "--object-streams=generate"),
                                        {"linear", "--linearize"},
                                        {"open-locked", "--encrypt  owner 256 --"},
                                        {"locked", "--encrypt u o 256 --"}}) {
      const ProgramRun made =
          runProgram("qpdf", QString(options).split(' ') +
                                 QStringList{folder + "plain.pdf", folder + name + ".pdf"});
      EXPECT_EQ(made.exitCode, 0) << made.err.toStdString();
    }
    return true;
  }
};

} // namespace folivex::test
