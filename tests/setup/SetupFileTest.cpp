// The setup file's text, line by line and whole.
#include "engine/setup/SetupFile.h"
#include "tests/support/Programs.h"
#include "tests/support/Rows.h"

using namespace folivex;
using namespace folivex::test;

namespace {

struct Loaded {
  explicit Loaded(const QString& text) {
    SetupTarget target{edited, working, automation};
    for (const QString& line : text.split(QLatin1Char('\n'))) {
      readSetupLine(line, target);
    }
  }

  SplitSetup edited;
  SplitSetup working;
  bool automation = false;
};

} // namespace

// Every field of the file differs from its default and from its neighbours.
TEST(SetupFile, EveryFieldComesBackToItsCopyAndItsLine) {
  const QString text =
      QString::fromUtf8(contentOf(FOLIVEX_SOURCE_DIR "/tests/setup/every-field.txt"));
  SplitSetup whole;
  bool automation = false;
  SetupTarget target{whole, whole, automation};
  for (const QString& line : text.split(u'\n')) {
    readSetupLine(line, target);
  }
  whole.useOutlookAuto = true; // the one key that is not read
  EXPECT_EQ(setupFileText(whole), QString(text).replace("\n", "\r\n"));
  EXPECT_EQ(whole.emailMsg, "Hello\r\n\r\nBye");
  EXPECT_EQ(keysLostInFile(whole), QStringList());
  EXPECT_EQ(changedLines(whole).size() + 1, text.count(u'\n')) << "a field at its default";

  const Loaded loaded(text);
  EXPECT_FALSE(loaded.automation || loaded.edited.useOutlookAuto);
  const QStringList working{"STRIPEND;6",
                            "REPORTOPTIONSTXT;0",
                            "REPORTOPTIONSCSV;0",
                            "REPORTOPTIONSCURRENT;0",
                            "REPORTOPTIONSOUTPUTFOLDER;/reports",
                            "REPORTUSEFILELIST;/names.txt",
                            "REPORTREMOVECHARS;()",
                            "HORIZWORDSPACING;1.500000"};
  EXPECT_EQ(changedLines(loaded.working), working);
  QStringList edited = changedLines(whole);
  for (const QString& line : working + QStringList{"USEOUTLOOKAUTO;1"}) {
    edited.removeAll(line);
  }
  EXPECT_EQ(changedLines(loaded.edited), edited);
}

TEST(SetupFile, OddLines) {
  forEachRow("setup/lines.json", [](const SplitSetup&, const QStringList& row) {
    const Loaded loaded(row[0]);
    const QStringList found = changedLines(loaded.edited) +
                              changedLines(loaded.working, QStringLiteral("working ")) +
                              (loaded.automation ? QStringList{"automation"} : QStringList());
    EXPECT_EQ(found.join(u'|'), row[1]);
  });
  EXPECT_EQ(Loaded("HORIZWORDSPACING;-1e999").working.horizWordSpacing,
            -std::numeric_limits<double>::max());
  EXPECT_EQ(Loaded("REPORTREMOVECHARS;" + QString(300, u'x') + " ").working.reportRemoveChars,
            QString(255, u'x'))
      << "a buffer overrun";
}

TEST(SetupFile, TellsWhatTheFormatCannotHold) {
  SplitSetup setup;
  setup.emailPassword = QStringLiteral("a;b");
  setup.findString = QStringLiteral("a\nb");
  setup.reportRemoveChars = QString(256, QLatin1Char('x'));
  setup.emailMsg = QStringLiteral("line\r\n").repeated(400);
  EXPECT_EQ(keysLostInFile(setup),
            QStringList({"FINDSTRING", "REPORTREMOVECHARS", "EMAILPASSWORD", "EMAILMSG"}));
}
