// "--suggest" by the program as a process: what it writes, and what it never touches.
#include "tests/app/ProgramBench.h"

#include <QFileInfo>

using namespace folivex;
using namespace folivex::test;

namespace {

using ProgramSuggest = ProgramBench;

} // namespace

TEST_F(ProgramSuggest, WritesASetupThatSplitsAsItSaid) {
  const QString pdf = QStringLiteral("-f" FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  const QString target = place.at("my setup.fxs");
  const ProgramRun run = place.run({"--suggest=" + target, pdf, "-c"});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.out.startsWith("1. sure: \"Account:\" begins 12 documents")) << run.out.data();
  EXPECT_TRUE(run.out.contains("12 documents, 0 pages left over, 0 names that collide"));
  const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther;
  EXPECT_FALSE(QFileInfo(target).permissions() & others);

  SetupStore store;
  ASSERT_TRUE(store.LoadSetup(target).ok());
  setup = store.working();
  EXPECT_EQ(setup.emailMatchVert, setup.emailMatchVertTo) << "one address a statement, on one line";
  EXPECT_FALSE(setup.emailEnable);

  const ProgramRun plan = place.run({"-u" + target, "--plan=csv", pdf});
  EXPECT_EQ(plan.out.count('\n'), 13) << plan.out.data();
  EXPECT_TRUE(plan.out.contains("/10472.pdf,"));
  EXPECT_EQ(plan.err, "");
}

TEST_F(ProgramSuggest, RefusesWhatIsThereAndWhatIsNotSure) {
  const QString pdf = QStringLiteral("-f" FOLIVEX_SOURCE_DIR "/samples/statements.pdf");
  const QString target = place.at("there.fxs");
  const QByteArray own = "my own\n";
  const auto write = [&] {
    QFile file(target);
    EXPECT_TRUE(file.open(QFile::WriteOnly));
    file.write(own);
  };
  write();
  const QString link = place.at("link.fxs");
  QFile::link(target, link);
  EXPECT_EQ(place.run({"--suggest=" + target, pdf}).exitCode, shown(-5));
  EXPECT_EQ(place.run({"--suggest=" + link, "--force", pdf}).exitCode, shown(-5));
  EXPECT_EQ(contentOf(target), own);
  EXPECT_EQ(place.run({"--suggest=" + target, "--force", pdf}).exitCode, 0);
  EXPECT_NE(contentOf(target), own);

  const QString unsure = place.at("unsure.fxs");
  const ProgramRun run = place.run({"--suggest=" + unsure, source("one.pdf", {"A", "A", "A"})});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_TRUE(run.err.contains("no documents were found")) << run.err.data();
  EXPECT_FALSE(QFileInfo::exists(unsure));
}
