#include "Splitting.h"

#include <tests/support/SmallDisk.h>

namespace tests::cleftor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class TargetsTest : public SplittingTest {};

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

} // namespace

} // namespace tests::cleftor
