// Programs at work in one folder at the same time.
#include "tests/app/ProgramBench.h"

#include <csignal>
#include <memory>

using namespace folivex;
using namespace folivex::test;

namespace {

class ProgramBeside : public ProgramBench {
protected:
  ProgramBeside() {
    writeFile(place.at("hold"), "echo > began; read line < gate; cp \"$1\" \"$2\"\n");
    EXPECT_EQ(mkfifo(QFile::encodeName(place.at("gate")).constData(), 0600), 0);
  }
  ~ProgramBeside() override {
    if (m_holder) {
      letGo();
      m_holder->waitForFinished(hangLimit);
    }
  }

  std::unique_ptr<QProcess> start(const QStringList& arguments) {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(place.environment());
    process->setWorkingDirectory(place.work());
    process->setReadChannel(QProcess::StandardError);
    process->start(QStringLiteral(FOLIVEX_BIN_DIR "/folivex"), arguments);
    EXPECT_TRUE(process->waitForStarted());
    return process;
  }

  /// A run of "held.pdf" with the setup as it is, which stands still at its one output.
  QProcess& hold() {
    const SplitSetup before = setup;
    setup.configUseExternal = true;
    setup.configExternalCommand = "sh";
    setup.configExternalParams = "hold \"[IN]\" \"[OUT]\"";
    m_holder = start({fxs("held.fxs"), source("held.pdf", {"HELD"}), "-c"});
    setup = before;
    m_isHeld = true;
    while (m_holder->state() == QProcess::Running && !QFile::exists(place.at("began"))) {
      m_holder->waitForFinished(1);
    }
    return *m_holder;
  }
  void letGo() {
    QFile gate(place.at("gate"));
    // Opening it waits for the reader, which is there or will come.
    if (m_isHeld && gate.open(QIODevice::WriteOnly)) {
      gate.write("\n");
    }
    m_isHeld = false;
  }

  /// Starts a run of "a.pdf" and returns when it says that it waits for the one that is held.
  std::unique_ptr<QProcess> startWaiting() {
    std::unique_ptr<QProcess> run = start({fxs(), source("a.pdf", {"A", "B"}), "-c"});
    QByteArray said;
    while (!said.contains("waits until this run may") && run->waitForReadyRead(hangLimit)) {
      said += run->readAllStandardError();
    }
    EXPECT_TRUE(said.contains("held.pdf")) << said.toStdString();
    EXPECT_FALSE(QFile::exists(place.at("a.pdf_report.txt"))) << "began before it had the folder";
    return run;
  }
  int exitCodeOf(QProcess& run) {
    EXPECT_TRUE(run.state() == QProcess::NotRunning || run.waitForFinished(hangLimit));
    return run.exitStatus() == QProcess::NormalExit ? run.exitCode() : -999;
  }

private:
  std::unique_ptr<QProcess> m_holder;
  bool m_isHeld = false;
};

} // namespace

TEST_F(ProgramBeside, PlainRunsDoNotWaitForEachOther) {
  QProcess& held = hold();
  EXPECT_EQ(place.run({fxs(), source("a.pdf", {"A", "B"}), "-c"}).exitCode, 0);
  EXPECT_EQ(outputs().filter(".pdf"), (QStringList{"A.pdf", "B.pdf"}));
  letGo();
  EXPECT_EQ(exitCodeOf(held), 0);
  EXPECT_EQ(outputs(), (QStringList{"A.pdf", "B.pdf", "HELD.pdf"})) << "the lock is left";
}

TEST_F(ProgramBeside, OverwritingAppendingAndClearingWaitForAPlainRun) {
  for (bool SplitSetup::*const kind : {&SplitSetup::alwaysOverwrite, &SplitSetup::alwaysAppend,
                                       &SplitSetup::otherSettingsRemoveFiles}) {
    QDir(place.at("out")).removeRecursively();
    QDir().mkdir(place.at("out"));
    QFile::remove(place.at("began"));
    QFile::remove(place.at("a.pdf_report.txt"));
    writeFile(place.at("out/old.txt"), "old");
    QProcess& held = hold();
    setup.*kind = true;
    const std::unique_ptr<QProcess> run = startWaiting();
    EXPECT_TRUE(QFile::exists(place.at("out/old.txt"))) << "cleared beside a run";
    letGo();
    EXPECT_EQ(exitCodeOf(held), 0);
    EXPECT_EQ(exitCodeOf(*run), 0);
    const bool clears = kind == &SplitSetup::otherSettingsRemoveFiles;
    EXPECT_EQ(outputs(), clears ? QStringList({"A.pdf", "B.pdf"})
                                : QStringList({"A.pdf", "B.pdf", "HELD.pdf", "old.txt"}));
    setup.*kind = false;
  }
}

TEST_F(ProgramBeside, FolderThatAPrefixMakesIsWaitedForToo) {
  setup.prefixFileName = "in/";
  QProcess& held = hold();
  setup.prefixFileName.clear();
  setup.outputDir = place.at("out/in");
  setup.alwaysOverwrite = true;
  const std::unique_ptr<QProcess> run = startWaiting();
  letGo();
  EXPECT_EQ(exitCodeOf(held), 0);
  EXPECT_EQ(exitCodeOf(*run), 0);
  EXPECT_EQ(outputs(), (QStringList{"in/A.pdf", "in/B.pdf", "in/HELD.pdf"}));
}

TEST_F(ProgramBeside, KilledHolderLetsTheNextOneIn) {
  setup.alwaysOverwrite = true;
  QProcess& held = hold();
  setup.alwaysOverwrite = false;
  const std::unique_ptr<QProcess> run = startWaiting();
  const QByteArray unfinished = "This run was not finished.\r\r\n";
  EXPECT_TRUE(contentOf(place.at("held.pdf_report.txt")).endsWith("\t" + unfinished));
  held.kill();
  EXPECT_EQ(exitCodeOf(*run), 0) << run->readAllStandardError().toStdString();
  EXPECT_EQ(outputs(), (QStringList{"A.pdf", "B.pdf"}));
  EXPECT_TRUE(contentOf(place.at("held.pdf_report.txt")).endsWith("\t" + unfinished));
  EXPECT_TRUE(contentOf(place.at("held.pdf_report.csv")).endsWith("," + unfinished));
}

TEST_F(ProgramBeside, StopEndsTheWaiting) {
  hold();
  setup.alwaysOverwrite = true;
  const std::unique_ptr<QProcess> run = startWaiting();
  ::kill(static_cast<pid_t>(run->processId()), SIGINT);
  EXPECT_EQ(exitCodeOf(*run), 1);
  EXPECT_EQ(outputs().filter(".pdf"), QStringList());
}

TEST_F(ProgramBeside, RunOfAMachineWithoutLocksIsNotWaitedFor) {
  QDir().mkdir(place.at("out"));
  const QByteArray other = "kim on desk7 since 2026-03-09 08:05:07: far.pdf\n";
  writeFile(place.at("out/.folivex-run-17"), other);
  writeFile(place.at("out/A.pdf"), "theirs");
  const QString a = source("a.pdf", {"A", "B"});
  setup.alwaysOverwrite = true;
  const ProgramRun refused = place.run({fxs(), a, "-c"});
  EXPECT_EQ(refused.exitCode, shown(-16));
  EXPECT_TRUE(refused.err.contains("out/.folivex-run-17: it tells of another run (kim on desk7"))
      << refused.err.toStdString();
  EXPECT_EQ(contentOf(place.at("out/A.pdf")), "theirs");
  EXPECT_EQ(outputs(), (QStringList{".folivex-run-17", "A.pdf"}));
  setup.alwaysOverwrite = false;
  EXPECT_EQ(place.run({fxs(), a, "-c"}).exitCode, 0);
  EXPECT_EQ(outputs(), (QStringList{".folivex-run-17", "A.pdf", "A_part002.pdf", "B.pdf"}));
}
