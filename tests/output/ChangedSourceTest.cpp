// A source that becomes another one while a run reads it.
#include "tests/support/RunBench.h"

using namespace folivex;
using namespace folivex::test;

namespace {

constexpr int documents = 30;

/// One page each; those of the other file are just as long.
TextPdf accounts(int first) {
  TextPdf pdf;
  for (int i = 0; i < documents; ++i) {
    pdf.page({QStringLiteral("Account: %1").arg(first + i), QStringLiteral("m%1@x.org").arg(i)});
  }
  return pdf;
}

class AtSigns : public AddressReader {
public:
  Found read(WordSource& words) override {
    Found found;
    for (int i = 0; i < words.numWords(); ++i) {
      if (const PageWord word = words.word(i); word.text.contains(u'@')) {
        found.address = word.text.toString();
      }
    }
    return found;
  }
};

class ChangedSource : public RunBench {
protected:
  ChangedSource() {
    accounts(1001).write(source());
    accounts(5001).write(at("in/other.pdf"));
    setup().emailEnable = true;
    driver().setAddressReaderMaker([](const SplitSetup&) { return std::make_unique<AtSigns>(); });
  }

  void at(const QString& status, const std::function<void()>& act) {
    m_person.onProgress = [status, act](const Progress& progress) {
      if (progress.text == status) {
        act();
      }
    };
  }
  using RunBench::at;

  void overwriteInPlace() const {
    QFile file(source());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly));
    file.write(contentOf(at("in/other.pdf")));
  }
  void replace() const {
    QFile::copy(at("in/other.pdf"), at("in/new.pdf"));
    ASSERT_EQ(std::rename(QFile::encodeName(at("in/new.pdf")).constData(),
                          QFile::encodeName(source()).constData()),
              0);
  }
  void cut() const { ASSERT_TRUE(QFile::resize(source(), QFileInfo(source()).size() / 2)); }

  void expectTold() {
    EXPECT_EQ(m_person.messages.filter("a.pdf: was changed or replaced while it was read").size(),
              1)
        << m_person.messages.join('\n').toStdString() << m_person.allNotes().toStdString();
    EXPECT_TRUE(m_person.messages.filter("Done!").isEmpty());
    EXPECT_TRUE(m_person.notes.back().contains(": 0 in 0 file(s)"))
        << m_person.notes.back().toStdString();
    EXPECT_EQ(reportLines(), QStringList{",0, PDF file(s)"});
    EXPECT_TRUE(contentOf(at("in/a.pdf_report.txt")).contains("was changed or replaced"));
    EXPECT_TRUE(driver().emails().all().empty());
    m_person.messages.clear();
  }
};

} // namespace

TEST_F(ChangedSource, LeavesNoNewFileAndNoOldOneChanged) {
  const std::function<void()> changes[] = {[this] { overwriteInPlace(); }, [this] { replace(); },
                                           [this] { cut(); }};
  for (const auto& change : changes) {
    for (int mode = 0; mode < 3; ++mode) {
      SCOPED_TRACE(mode);
      accounts(1001).write(source());
      statements({"of yesterday"}).write(at("out/1003.pdf"));
      setup().alwaysOverwrite = mode == 1;
      setup().alwaysAppend = mode == 2;
      at("Processing page: 20", change);
      EXPECT_EQ(run(), RunError::SourceChanged);
      EXPECT_EQ(outputs(), QStringList("1003.pdf: of yesterday"));
      EXPECT_EQ(filesBelow(at("out")).size(), 1);
      expectTold();
    }
  }
}

/// All pages are read and some of the files are in place when it comes to light.
TEST_F(ChangedSource, IsNoticedAfterTheLastPageToo) {
  statements({"of yesterday"}).write(at("out/1003.pdf"));
  setup().alwaysAppend = true;
  int told = 0;
  m_person.onProgress = [&](const Progress& progress) {
    if (progress.text.endsWith("out/1003.pdf") && ++told == 2) {
      replace();
    }
  };
  EXPECT_EQ(run(), RunError::SourceChanged);
  EXPECT_EQ(outputs(), QStringList("1003.pdf: of yesterday"));
  expectTold();
}

TEST_F(ChangedSource, LeavesWhatAPersonHasChangedSince) {
  at("Processing page: 29", [this] {
    while (!QFile::exists(at("out/1001.pdf"))) {
    }
    QFile file(at("out/1001.pdf"));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write("%stamped");
    file.close();
    replace();
  });
  EXPECT_EQ(run(), RunError::SourceChanged);
  EXPECT_EQ(filesBelow(at("out")), QStringList("1001.pdf"));
  EXPECT_EQ(m_person.notes.filter("1001.pdf: is left").size(), 1);
  expectTold();
}

TEST_F(ChangedSource, LeavesNothingOfAnExternalCommand) {
  const QString script = at("cut.sh");
  writeFile(script, "#!/bin/sh\nexec qpdf \"$1\" --pages . \"$3-$4\" -- \"$2\"\n");
  QFile(script).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  setup().configUseExternal = true;
  setup().configExternalCommand = script;
  setup().configExternalParams = "\"[IN]\" \"[OUT]\" [START] [END]";
  at("Processing page: 3", [this] { replace(); });
  EXPECT_EQ(run(), RunError::SourceChanged);
  EXPECT_EQ(filesBelow(at("out")), QStringList());
  expectTold();
}
