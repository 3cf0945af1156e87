#include "Splitting.h"

#include <tests/support/SmallDisk.h>

#include <array>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

namespace tests::cleftor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class TargetsTest : public SplittingTest {
protected:
  std::u16string target(int number) const { return wide(output(std::to_string(number)).string()); }
};

TEST_F(TargetsTest, AFileInTheWayIsReplacedAndItsNameMayBeOdd) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  const std::string longest(251, 'n');
  for (const std::string& name : {std::string("Käse 😀.pdf"), longest + ".pdf"}) {
    PdfBuilder::writeFile(output(name), "old");
    ASSERT_EQ(split(1, 1, name), CLEFTOR_OK) << errorText();
    EXPECT_THAT(contentsOf(output(name)), HasSubstr("%%EOF"));
  }
  ASSERT_EQ(split(1, 1, "blank.pdf  "), CLEFTOR_OK);
  EXPECT_TRUE(fs::exists(output("blank.pdf")));
  EXPECT_EQ(files().size(), 3U);
}

TEST_F(TargetsTest, AFullDiskLeavesTheOldFileAndNoPartOfTheNew) {
  ASSERT_EQ(open("clinging"), CLEFTOR_OK);
  PdfBuilder::writeFile(output(), "old");
  {
    const folivex::test::SmallDisk disk(20'000);
    EXPECT_EQ(split(1, 3), CLEFTOR_CANNOT_WRITE);
    EXPECT_THAT(errorText(), HasSubstr(output().string()));
    EXPECT_EQ(GetProcessingStatus(), CLEFTOR_CANNOT_WRITE);
  }
  EXPECT_EQ(contentsOf(output()), "old");
  EXPECT_THAT(files(), ElementsAre("out.pdf"));
  EXPECT_EQ(split(1, 3), CLEFTOR_OK) << errorText();
}

TEST_F(TargetsTest, PlacesThatCannotBeWrittenAreRefused) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  fs::create_directory(output("folder.pdf"));
  PdfBuilder::writeFile(output("file"), "no folder");
  for (const char* name : {"folder.pdf", "file/out.pdf", "no such folder/out.pdf", ""}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(split(1, 1, name), CLEFTOR_CANNOT_WRITE);
    EXPECT_THAT(errorText(), HasSubstr("Unable to write"));
  }
  EXPECT_EQ(SplitPdfPages(u"/dev/null", 1, 1, GetPageCount2()), CLEFTOR_CANNOT_WRITE);
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(SplitPdfPages(nullptr, 1, 1, GetPageCount2()), CLEFTOR_CANNOT_WRITE);
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(TargetsTest, TheSourceIsNeverTheTarget) {
  fs::copy_file(source("plain"), output("source.pdf"));
  const std::string before = contentsOf(output("source.pdf"));
  fs::create_symlink(output("source.pdf"), output("link.pdf"));
  ASSERT_EQ(PdfTextDumpOpenFile(wide(output("source.pdf").string()).c_str(), u""), CLEFTOR_OK);
  for (const char* name : {"source.pdf", "./source.pdf", "link.pdf"}) {
    EXPECT_EQ(split(1, 1, name), CLEFTOR_CANNOT_WRITE) << name;
    EXPECT_THAT(errorText(), HasSubstr("being split"));
  }
  EXPECT_EQ(contentsOf(output("source.pdf")), before);
}

/// A name that is looked for and not taken goes to both.
TEST_F(TargetsTest, ManyProcessesNeverGetOneName) {
  constexpr int processes = 4;
  constexpr int outputs = 60;
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  std::vector<pid_t> children;
  for (int process = 0; process < processes; ++process) {
    children.push_back(fork());
    if (children.back() != 0) {
      continue;
    }
    int number = 0;
    for (int made = 0; made < outputs; ++made) {
      while (ReserveTarget(target(++number).c_str()) == CLEFTOR_TAKEN) {
      }
      if (split(1 + process, 1 + process, std::to_string(number)) != CLEFTOR_OK) {
        _exit(1);
      }
    }
    _exit(0);
  }
  for (const pid_t child : children) {
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(files().size(), static_cast<size_t>(processes * outputs));
}

TEST_F(TargetsTest, WhatAKilledProcessReservedIsFreeAgain) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  std::array<int, 2> ready{};
  ASSERT_EQ(pipe(ready.data()), 0);
  const pid_t other = fork();
  if (other == 0) {
    const char code = ReserveTarget(target(1).c_str()) == CLEFTOR_OK ? 'y' : 'n';
    (void)!write(ready[1], &code, 1);
    pause();
  }
  char code = 0;
  ASSERT_EQ(read(ready[0], &code, 1), 1);
  EXPECT_EQ(code, 'y');
  EXPECT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_TAKEN) << "while it lives";
  EXPECT_EQ(files().size(), 1U);
  kill(other, SIGKILL);
  waitpid(other, nullptr, 0);
  EXPECT_EQ(files().size(), 1U) << "its part is left";
  EXPECT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_OK);
  EXPECT_EQ(split(1, 1, "1"), CLEFTOR_OK) << errorText();
  EXPECT_THAT(files(), ElementsAre("1"));
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST_F(TargetsTest, AFileThatCameAfterTheReservationStays) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  ASSERT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_OK);
  EXPECT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_TAKEN) << "by this process";
  PdfBuilder::writeFile(output("1"), "somebody's");
  EXPECT_EQ(split(1, 1, "1"), CLEFTOR_CANNOT_WRITE);
  EXPECT_THAT(errorText(), HasSubstr("another program has put a file there"));
  EXPECT_EQ(contentsOf(output("1")), "somebody's");
  EXPECT_THAT(files(), ElementsAre("1"));
  // What cannot be taken is not written as if it were: it may be there by then.
  EXPECT_EQ(ReserveTarget(wide(output("none/1").string()).c_str()), CLEFTOR_CANNOT_WRITE);
  fs::create_directory(output("none"));
  EXPECT_EQ(split(1, 1, "none/1"), CLEFTOR_CANNOT_WRITE);
  EXPECT_THAT(errorText(), HasSubstr("No such file"));
  // Nothing of a reservation outlives the source.
  ASSERT_EQ(ReserveTarget(target(2).c_str()), CLEFTOR_OK);
  PdfTextDumpCloseFile();
  EXPECT_THAT(files(), testing::UnorderedElementsAre("1", "none"));
}

TEST_F(TargetsTest, LinksThatSomebodyPutThereAreNotFollowed) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  PdfBuilder::writeFile(output("precious"), "precious");
  ASSERT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_OK);
  const fs::path part = output(".folivex-af63ac4c86019afc.part"); // of "1"
  ASSERT_TRUE(fs::exists(part)) << "the name must stay the same in every version and system";
  ReleaseTarget(target(1).c_str());
  fs::create_symlink(output("precious"), part);
  fs::create_symlink(output("precious"), output("2"));
  EXPECT_EQ(ReserveTarget(target(1).c_str()), CLEFTOR_OK);
  EXPECT_EQ(ReserveTarget(target(2).c_str()), CLEFTOR_TAKEN);
  EXPECT_EQ(split(1, 1, "1"), CLEFTOR_OK) << errorText();
  EXPECT_EQ(split(1, 1, "2"), CLEFTOR_OK) << errorText();
  EXPECT_EQ(contentsOf(output("precious")), "precious");
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(output("2"))));
}

} // namespace

} // namespace tests::cleftor
