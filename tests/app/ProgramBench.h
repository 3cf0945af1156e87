// ProgramBench: setups and sources for the program as a process.
#pragma once

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupStore.h"
#include "engine/setup/SplitMethod.h"
#include "tests/support/TextPdf.h"
#include "tests/support/Workplace.h"

namespace folivex::test {

/// What a shell shows of a negative exit code.
constexpr int shown(int code) {
  return code & 0xFF;
}

/// Writes "split.fxs": from match to next match at "Account:", named after the next word, into the
/// folder "out". Every source has one or more documents that begin with "Account: NAME".
class ProgramBench : public testing::Test {
protected:
  ProgramBench() {
    setup.findString = QStringLiteral("Account:");
    setup.pageExtract = splitMethodTexts()[0];
    setup.extract = fileNameMethodTexts()[1];
    setup.prefixFileName.clear();
    setup.outputDir = place.at(QStringLiteral("out"));
  }

  /// Writes the setup, by its own name or another.
  QString fxs(const QString& name = QStringLiteral("split.fxs")) {
    SetupStore store;
    store.edited() = setup;
    store.working() = setup;
    const SetupResult saved = store.SaveSetup(place.at(name), SavePath::Keep);
    EXPECT_TRUE(saved.ok()) << saved.message.toStdString();
    return QStringLiteral("-u") + place.at(name);
  }

  /// A source of one document an account.
  QString source(const QString& name, const QStringList& accounts) {
    TextPdf pdf;
    for (const QString& account : accounts) {
      pdf.page({QStringLiteral("Account: ") + account});
    }
    pdf.write(place.at(name));
    return QStringLiteral("-f") + place.at(name);
  }

  QStringList outputs() const { return filesBelow(place.at(QStringLiteral("out"))); }

  Workplace place;
  SplitSetup setup;
};

} // namespace folivex::test
