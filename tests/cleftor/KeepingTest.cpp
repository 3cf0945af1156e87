#include "Splitting.h"

namespace tests::cleftor {

namespace {

class KeepingTest : public SplittingTest {};

/// A row is made of a source, with its bookmarks or not, and ranges of its pages in one file.
TEST_F(KeepingTest, WhatGoesWithItsPages) {
  folivex::test::expectFacts("cleftor/keeping.txt", [this](const QStringList& how) {
    SetKeepBookmarks(how[1] == "bookmarks" ? 1 : 0);
    EXPECT_EQ(open(how[0].toStdString()), CLEFTOR_OK);
    std::vector<int32_t> ends;
    for (const QString& page : how.mid(2).join('-').split('-')) {
      ends.push_back(page.toInt());
    }
    EXPECT_EQ(SplitPdfRanges(wide(output().string()).c_str(), ends.data(),
                             static_cast<int32_t>(ends.size() / 2), GetPageCount2()),
              CLEFTOR_OK)
        << errorText();
    EXPECT_EQ(GetProcessingPage(), ends.back());
    return QString::fromStdString(output().string());
  });
}

/// What is many small objects in the source, packed, would else be several times as large.
TEST_F(KeepingTest, ObjectsThatWerePackedStayPacked) {
  constexpr int notes = 500;
  PdfBuilder pdf;
  for (int page = 1; page <= 3; ++page) {
    std::string list;
    for (int i = 0; i < notes; ++i) {
      list += PdfBuilder::ref(pdf.add("<</Type/Annot/Subtype/Text/Rect[" + std::to_string(i) +
                                      " 0 99 99]/Contents(note " + std::to_string(i * page) +
                                      ")/C[1 0 0]/F 4/Name/Comment>>")) +
              ' ';
    }
    pdf.addPage("", "", "/Annots[" + list + "]");
  }
  pdf.write(output("plain.pdf").string());
  run("qpdf --object-streams=generate " + output("plain.pdf").string() + " " +
      output("packed.pdf").string());
  std::string found[2];
  for (const auto& [name, isPacked] : {std::pair{"plain.pdf", false}, {"packed.pdf", true}}) {
    SCOPED_TRACE(name);
    ASSERT_EQ(PdfTextDumpOpenFile(wide(output(name).string()).c_str(), u""), CLEFTOR_OK);
    ASSERT_EQ(split(2, 3), CLEFTOR_OK) << errorText();
    run("qpdf --check " + output().string());
    EXPECT_EQ(contentsOf(output()).find("/ObjStm") != std::string::npos, isPacked);
    EXPECT_LT(fs::file_size(output()), fs::file_size(output(name)));
    found[isPacked] = run("qpdf --qdf --object-streams=disable " + output().string() +
                          " - | grep -a -o 'note [0-9]*'");
  }
  EXPECT_NE(found[0].find("note 1497"), std::string::npos);
  EXPECT_EQ(found[0], found[1]);
}

TEST_F(KeepingTest, RangesThatAreNoneAreRefused) {
  ASSERT_EQ(open("everything"), CLEFTOR_OK);
  const int32_t ranges[] = {6, 6, 12, 13};
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", ranges, 0, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", nullptr, 2, 12), CLEFTOR_BAD_RANGE);
  EXPECT_EQ(SplitPdfRanges(u"none.pdf", ranges, 2, 12), CLEFTOR_BAD_RANGE);
}

} // namespace

} // namespace tests::cleftor
