// One start with arguments, and what it leaves to the person who goes on at the window.
#include "app/Program.h"
#include "tests/app/ProgramBench.h"
#include "tests/support/BuiltLibraries.h"
#include "tests/support/RecordingOperator.h"

#include <QCoreApplication>

using namespace folivex;
using namespace folivex::test;

namespace {

class ProgramStart : public ProgramBench {
protected:
  ProgramStart() {
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    EXPECT_EQ(loadBuiltLibraries(), QString());
    qputenv("TMPDIR", QFile::encodeName(place.temporary()));
    EXPECT_EQ(m_program.loadLibraries(), QString());
    m_program.loadDefaultSetup();
  }
  ~ProgramStart() override { qputenv("TMPDIR", m_temporaryBefore); }

  Program::Ended handle(const QStringList& arguments) {
    return m_program.handleCommandLine(parseCommandLine(QStringList("folivex") + arguments));
  }

  QByteArray m_temporaryBefore = qgetenv("TMPDIR");
  RecordingOperator m_person;
  Program m_program{m_person};
};

} // namespace

TEST_F(ProgramStart, UnattendedWorkIsOverWithItsArguments) {
  const QString file = source("a.pdf", {"A1"});
  EXPECT_FALSE(handle({fxs(), file}).mustEnd);
  EXPECT_EQ(outputs(), QStringList("A1.pdf"));
  EXPECT_TRUE(m_person.messages.isEmpty() && m_person.questions.isEmpty())
      << "nobody was there to answer";
  EXPECT_FALSE(m_program.store().automation());

  m_program.driver().StartProcessing();
  EXPECT_EQ(m_person.messages.size() + m_person.questions.size(), 1) << "how the run ended";

  writeFile(place.at("always.fxs"), contentOf(place.at("split.fxs")) + "AUTOMATION;1\r\n");
  EXPECT_FALSE(handle({"-u" + place.at("always.fxs"), file}).mustEnd);
  EXPECT_TRUE(m_program.store().automation()) << "a setup that asks for it is heeded";
  EXPECT_TRUE(m_program.driver().state().automation);
}

TEST_F(ProgramStart, AStopEndsTheWorkAndTheProgramOnlyWhenItWasToEnd) {
  const QString first = source("a.pdf", {"A1", "A2", "A3"});
  const QString second = source("b.pdf", {"B1"});
  m_person.onProgress = [this](const Progress&) { m_program.driver().Stop(); };
  for (const bool closes : {false, true}) {
    const Program::Ended ended = handle({fxs(), first, second, closes ? "-c" : ""});
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_EQ(ended.mustEnd, closes);
  }
  EXPECT_EQ(outputs().filter("B1"), QStringList());
}
