#include "Splitting.h"

namespace tests::cleftor {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class SourcesTest : public SplittingTest {};

TEST_F(SourcesTest, ProtectedOnesOpenWithTheirPasswordInAnyEncoding) {
  const std::tuple<std::string, const char*, int32_t> rows[] = {
      {"protected-latin", "grüße", CLEFTOR_OK},           // stored as Windows-1252
      {"protected-latin", "grüße ", CLEFTOR_OK},          // a trailing blank is no part of it
      {"protected-aes", "grüße", CLEFTOR_OK},             // stored as UTF-8
      {"protected-aes", "gru\u0308ß\u00ADe", CLEFTOR_OK}, // decomposed, with a soft hyphen
      {"protected-aes", "owner", CLEFTOR_OK},             // the other password
      {"protected-blank", "word ", CLEFTOR_OK},           // here the blank belongs to it
      {"protected-open", "", CLEFTOR_OK},
      {"protected-open", "not needed", CLEFTOR_OK}, // a list of files has one password
      {"protected-aes", "", CLEFTOR_CANNOT_OPEN},
      {"protected-aes", "Grüße", CLEFTOR_CANNOT_OPEN},
      {"protected-latin", "wrong-word", CLEFTOR_CANNOT_OPEN},
      {"plain", "not needed", CLEFTOR_OK},
  };
  for (const auto& [name, password, result] : rows) {
    SCOPED_TRACE(name + " with " + password);
    ASSERT_EQ(open(name, password), result) << errorText();
    EXPECT_EQ(CleftorLastError(), result);
    if (result != CLEFTOR_OK) {
      EXPECT_THAT(errorText(), HasSubstr(source(name).string()));
      EXPECT_THAT(errorText(), HasSubstr("password"));
      EXPECT_THAT(errorText(), Not(HasSubstr("wrong-word")));
      EXPECT_EQ(GetPageCount2(), 0);
    }
  }
}

TEST_F(SourcesTest, OutputsOfProtectedOnesAreUnprotected) {
  for (const char* name : {"protected-latin", "protected-aes"}) {
    ASSERT_EQ(open(name, "grüße"), CLEFTOR_OK);
    EXPECT_EQ(GetFileFacts(), CLEFTOR_FILE_ENCRYPTED);
    ASSERT_EQ(split(4, 5), CLEFTOR_OK) << errorText();
    EXPECT_THAT(facts("text 2"), ElementsAre("text 2 the last page"));
    EXPECT_THAT(facts("title"), ElementsAre(HasSubstr("Geheimnis ä")));
    EXPECT_THAT(run("qpdf --show-encryption " + output().string()), HasSubstr("not encrypted"));
  }
}

TEST_F(SourcesTest, TagsAreTheSameHoweverTheFileHoldsThem) {
  const auto elements = [this](const char* name) {
    EXPECT_EQ(open(name), CLEFTOR_OK) << errorText();
    EXPECT_EQ(split(1, 5), CLEFTOR_OK) << errorText();
    return facts("element");
  };
  const std::vector<std::string> expected = elements("tagged");
  EXPECT_THAT(expected, testing::SizeIs(19));
  EXPECT_EQ(elements("tagged-packed"), expected);
  EXPECT_EQ(elements("tagged-protected"), expected);
  // What cannot be read costs its own words at most: the parser has the say about it.
  const std::vector<std::string> torn = elements("tagged-torn");
  EXPECT_THAT(torn, testing::Contains("element 3 P ActualText=begun and ended 1:begun 2:ended"));
}

TEST_F(SourcesTest, WhatCannotBeOpenedIsRefusedWithTheReason) {
  for (const char* name : {"empty", "garbage", "headless", "truncated", "no such file"}) {
    SCOPED_TRACE(name);
    EXPECT_EQ(open(name), CLEFTOR_CANNOT_OPEN);
    EXPECT_THAT(errorText(), HasSubstr(source(name).string()));
    EXPECT_EQ(GetPageCount2(), 0);
    EXPECT_EQ(split(1, 1), CLEFTOR_NOT_OPEN);
  }
  EXPECT_EQ(PdfTextDumpOpenFile(wide(folder_.string()).c_str(), u""), CLEFTOR_CANNOT_OPEN);
  EXPECT_EQ(PdfTextDumpOpenFile(nullptr, nullptr), CLEFTOR_CANNOT_OPEN);
  EXPECT_EQ(PdfTextDumpOpenFile(u"/dev/zero", u""), CLEFTOR_CANNOT_OPEN);
}

/// What was begun is taken only where it is asked for, and its fault is told there.
TEST_F(SourcesTest, OnesBegunBeforehandOpenLikeTheOthers) {
  const auto begin = [](const char* name, const char16_t* password = u"") {
    BeginOpenFile(wide(source(name).string()).c_str(), password);
  };
  for (const char* begun : {"compressed", "garbage", "no such file", "everything"}) {
    SCOPED_TRACE(begun);
    begin(begun);
    EXPECT_EQ(GetPageCount2(), 0);
    EXPECT_EQ(open("compressed"), CLEFTOR_OK) << errorText();
    EXPECT_EQ(GetPageCount2(), 30);
  }
  begin("garbage");
  EXPECT_EQ(open("garbage"), CLEFTOR_CANNOT_OPEN);
  EXPECT_THAT(errorText(), HasSubstr(source("garbage").string()));
  begin("protected-aes", u"wrong");
  EXPECT_EQ(open("protected-aes", "grüße"), CLEFTOR_OK) << errorText();
  begin("protected-aes", u"grüße");
  EXPECT_EQ(open("protected-aes", "wrong"), CLEFTOR_CANNOT_OPEN);
  begin("everything");
  PdfTextDumpCloseFile();
  EXPECT_EQ(split(1, 1), CLEFTOR_NOT_OPEN);
}

TEST_F(SourcesTest, ADamagedOneIsRepairedWithoutAWordOnStandardError) {
  testing::internal::CaptureStderr();
  ASSERT_EQ(open("noxref"), CLEFTOR_OK) << errorText();
  EXPECT_EQ(GetFileFacts(), CLEFTOR_FILE_REPAIRED);
  EXPECT_EQ(split(1, GetPageCount2()), CLEFTOR_OK) << errorText();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(facts("text 6"), ElementsAre("text 6 Page number 6"));
}

TEST_F(SourcesTest, PagesCountWhenTheyAreThere) {
  ASSERT_EQ(open("lying"), CLEFTOR_OK);
  EXPECT_EQ(GetPageCount2(), 3);
  EXPECT_EQ(split(1, 4), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(split(1, 3), CLEFTOR_OK);
  // The tree leads back into itself and lists one page three times.
  ASSERT_EQ(open("looping"), CLEFTOR_OK);
  EXPECT_EQ(GetPageCount2(), 4);
  EXPECT_EQ(split(1, 4), CLEFTOR_OK) << errorText();
  EXPECT_THAT(facts("text 4"), ElementsAre("text 4 Page number 3"));
  ASSERT_EQ(open("deep"), CLEFTOR_OK);
  EXPECT_EQ(split(1, 2), CLEFTOR_OK) << errorText();
}

/// Pages are looked for in the bytes of the file where these are plain, and they seldom say so.
TEST_F(SourcesTest, PagesAreFoundHoweverTheirTreeIsWritten) {
  const std::string page = "<</Type/Page/Parent @pages/MediaBox[0 0 9 9]/Contents ";
  const auto tree = [](const std::string& kids) {
    return "pages = <</Type/Pages/Count 3/Kids[" + kids + "]>>\n";
  };
  const std::string node = "<</Type/Pages/Parent @pages/Count 1/";
  const std::pair<std::string, int> rows[] = {
      {tree("@a @b") + "b = " + page + "@t/X(>> endobj /Kids[@a])/Y<</Kids[@a]/Z[[<<>>]]>>>>", 2},
      {tree("@a @b") + "b = " + page + "@t/R 0/S -1/T .5/U true/V null/W @a/Kids null>>", 2},
      {tree("@a @n") + "n = " + node + "K#69ds[@b]>>\nb = " + page + "@t>>", 2},
      {tree("@a @n") + "n = " + node + "Kids @k>>\nk = [@b]\nb = " + page + "@t>>", 2},
      {tree("@a @n") + "n = " + node + "Kids[]/Kids[@b]>>\nb = " + page + "@t>>", 2},
      {tree("@a " + page + "@t>> " + node + "Kids[@b]>>") + "b = " + page + "@t>>", 3},
      {tree("null 7 @a 99 0 R @k") + "k = [@a]", 1},
      {tree("@a @n") + "n = " + node + "Kids[99999999999 0 R @b]>>\nb = " + page + "@t>>", 2},
      {tree("@a @s @b") + "s = /Kids[@b] | no node\nb = " + page + "@t>>", 2},
      {"catalog /Pages <</Type/Pages/Count 1/Kids[@a]>>", 1},
  };
  for (const auto& [text, pages] : rows) {
    SCOPED_TRACE(text);
    PdfBuilder pdf;
    pdf.addText(text + "\nt =  | 0 0 m\na = " + page + "@t>>");
    pdf.write(output("tree.pdf"));
    ASSERT_EQ(PdfTextDumpOpenFile(wide(output("tree.pdf").string()).c_str(), u""), CLEFTOR_OK);
    EXPECT_EQ(GetPageCount2(), pages);
    EXPECT_EQ(split(1, pages), CLEFTOR_OK) << errorText();
    EXPECT_EQ(run("qpdf --show-npages " + output().string()), std::to_string(pages) + "\n");
  }
}

TEST_F(SourcesTest, RangesThatAreNoneAreRefused) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  for (const auto& [first, last] : {std::pair(0, 1), {1, 0}, {3, 2}, {5, 7}, {-1, 2}, {7, 7}}) {
    EXPECT_EQ(split(first, last), CLEFTOR_BAD_RANGE) << first << ".." << last;
    EXPECT_EQ(GetProcessingStatus(), CLEFTOR_BAD_RANGE);
  }
  EXPECT_EQ(SplitPdfPages(wide(output().string()).c_str(), 1, 2, 7), CLEFTOR_BAD_RANGE);
  EXPECT_THAT(errorText(), HasSubstr("6 pages and not 7"));
  EXPECT_THAT(files(), ElementsAre());
  EXPECT_EQ(split(2, 2), CLEFTOR_OK);
  EXPECT_EQ(GetProcessingStatus(), CLEFTOR_OK);
}

TEST_F(SourcesTest, OneCallDoesItAllAndLeavesTheOpenSourceAlone) {
  ASSERT_EQ(open("plain"), CLEFTOR_OK);
  ASSERT_EQ(SplitPdf(wide(source("protected-aes").string()).c_str(), wide("grüße").c_str(),
                     wide(output().string()).c_str(), 5, 5),
            CLEFTOR_OK);
  EXPECT_THAT(facts("text 1"), ElementsAre("text 1 the last page"));
  EXPECT_EQ(GetPageCount2(), 6);
  EXPECT_EQ(SplitPdf(u"/nowhere.pdf", u"", u"/tmp/none.pdf", 1, 1), CLEFTOR_CANNOT_OPEN);
}

} // namespace

} // namespace tests::cleftor
