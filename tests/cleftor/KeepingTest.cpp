#include "Splitting.h"

namespace tests::cleftor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class KeepingTest : public SplittingTest {};

TEST_F(KeepingTest, WholeRangeOfADocumentWithEverything) {
  SetKeepBookmarks(1);
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  ASSERT_EQ(GetPageCount2(), 12);
  ASSERT_EQ(split(4, 6), CLEFTOR_OK) << errorText();
  EXPECT_EQ(GetProcessingPage(), 6);
  EXPECT_THAT(facts(),
              ElementsAre("pages 3", "title Everything author Frieda Müller",
                          // The heading's own page is elsewhere, what is below it is here.
                          "bookmark 1 Part one -> nowhere", "bookmark 2 On four -> 1",
                          "bookmark 2 On five -> 2", "bookmark 3 Below five -> 2",
                          "layer hidden on", "layer shown on",
                          // The signed field looks as it did and is no field any more.
                          "page 1 text Page number 4 shown shown", "page 1 label iv",
                          "page 1 rotation 0 box [0, 0, 600, 800]",
                          // Forward, by name, to the web, and the end of a chain; two led out.
                          "page 1 link 3", "page 1 link 2", "page 1 link https://example.org/",
                          "page 1 link 2", "page 1 annotation Stamp",
                          // Hidden layers stay hidden.
                          "page 2 text Page number 5 seen shown", "page 2 label A-7",
                          "page 2 rotation 0 box [0, 0, 600, 800]", "page 2 annotation Text a note",
                          "page 2 annotation Text an answer", "page 3 text", "page 3 label A-8",
                          "page 3 rotation 90 box [10, 100, 500, 790]", "page 3 link 1",
                          "field account = 4711 on [1, 3]", "field person.name = Ada on [2]",
                          "calculated ['account']", "form ['/CO', '/DA', '/DR', '/Fields']"));
}

/// They are one document: links lead from one to the other, a field is one field, labels go with
/// their pages, and a page that is asked for twice stands there twice.
TEST_F(KeepingTest, SeveralRangesInOneFile) {
  SetKeepBookmarks(1);
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  const int32_t ranges[] = {6, 6, 4, 4, 9, 10, 4, 4};
  ASSERT_EQ(SplitPdfRanges(wide(output().string()).c_str(), ranges, 4, 12), CLEFTOR_OK)
      << errorText();
  EXPECT_THAT(facts("bookmark"),
              ElementsAre("bookmark 1 Part one -> nowhere", "bookmark 2 On four -> 2",
                          "bookmark 2 On nine -> 3", "bookmark 1 Part two -> 4"));
  EXPECT_THAT(facts("page 1"),
              ElementsAre("page 1 text", "page 1 label A-8",
                          "page 1 rotation 90 box [10, 100, 500, 790]", "page 1 link 2"));
  EXPECT_THAT(facts("page 2 l"),
              ElementsAre("page 2 label iv", "page 2 link 1", "page 2 link https://example.org/"));
  EXPECT_THAT(facts("page 3 label"), ElementsAre("page 3 label A-11"));
  EXPECT_THAT(facts("page 5 l"),
              ElementsAre("page 5 label iv", "page 5 link 1", "page 5 link https://example.org/"));
  EXPECT_THAT(facts("field"), ElementsAre("field account = 4711 on [1, 2, 3, 5]"));
  const int32_t outside[] = {6, 6, 12, 13};
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", ranges, 0, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", nullptr, 4, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", outside, 2, 12), CLEFTOR_BAD_RANGE);
}

TEST_F(KeepingTest, CatalogEntries) {
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  ASSERT_EQ(split(4, 6), CLEFTOR_OK) << errorText();
  EXPECT_THAT(facts("bookmark"), IsEmpty()); // nobody asked for them
  const std::string catalog = run("mutool show " + output().string() + " trailer/Root");
  EXPECT_THAT(catalog, HasSubstr("/Lang (de-CH)"));
  EXPECT_THAT(catalog, HasSubstr("/GTS_PDFA1"));
  EXPECT_THAT(catalog, Not(HasSubstr("/UseOutlines")));
  EXPECT_THAT(catalog, Not(HasSubstr("(other)")));
  EXPECT_THAT(run("mutool show -b " + output().string() + " trailer.Root.Metadata"),
              HasSubstr("Everything"));
  const std::string names = run("pdfinfo -dests " + output().string());
  EXPECT_THAT(names, HasSubstr("chapter5"));
  EXPECT_THAT(names, Not(HasSubstr("chapter1")));
}

TEST_F(KeepingTest, PagesWithoutFieldsLayersOrBookmarks) {
  SetKeepBookmarks(1);
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  ASSERT_EQ(split(7, 8), CLEFTOR_OK) << errorText();
  const std::string catalog = run("mutool show " + output().string() + " trailer/Root");
  for (const char* key : {"/AcroForm", "/OCProperties", "/Outlines", "/Names", "/Dests"}) {
    EXPECT_THAT(catalog, Not(HasSubstr(key)));
  }
  EXPECT_THAT(facts("page 1 label"), ElementsAre("page 1 label A-9"));
}

TEST_F(KeepingTest, OlderNamesAndPagesNamedByIndex) {
  ASSERT_EQ(open("older"), CLEFTOR_OK);
  ASSERT_EQ(split(2, 4), CLEFTOR_OK) << errorText();
  EXPECT_THAT(facts("page 2 link"), ElementsAre("page 2 link 3", "page 2 link 1"));
}

} // namespace

} // namespace tests::cleftor
