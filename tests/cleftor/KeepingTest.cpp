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

/// Each row: what the metadata says, and what an output still says; whatever becomes of the tags,
/// there are none here.
TEST_F(KeepingTest, ClaimsOfStandardsAreThoseThatOutputsKeep) {
  const std::string archive = "xmlns:a='http://www.aiim.org/pdfa/ns/id/' ";
  const std::string access = "xmlns:u = \"http://www.aiim.org/pdfua/ns/id/\" ";
  const std::string invoice =
      "xmlns:i='urn:factur-x:pdfa:CrossIndustryDocument:invoice:1p0#' i:DocumentType='INVOICE'";
  const std::vector<std::array<std::string, 3>> rows = {
      {archive + "a:part='2' a:conformance = \"B\"", "",
       "claims archive-conformance=B archive-part=2"},
      {archive + access, "<a:part>3</a:part><a:conformance>A</a:conformance><u:part>1</u:part>",
       "claims archive-conformance=U archive-part=3"},
      {archive + access + "u:part='1'\n a:conformance='a' a:part='1'", "",
       "claims archive-conformance=B archive-part=1"},
      {archive + invoice + " a:part='3' a:conformance='B'",
       "<i:Version rdf:about='x'>1.0</i:Version>", "claims archive-conformance=B archive-part=3"},
      {archive + "a:part='4' a:rev='2020' a:conformance='F'", "<a:corr/>", "claims"},
      {archive + "a:part='4' a:rev='2020'", "", "claims archive-part=4 archive-rev=2020"},
  };
  for (const auto& [attributes, elements, claims] : rows) {
    SCOPED_TRACE(attributes + elements);
    PdfBuilder pdf;
    pdf.addText(
        "page | 0 0 9 9 re f\npage | 0 0 9 9 re f\ncatalog /Metadata @xmp\n"
        "xmp = /Type/Metadata/Subtype/XML | <?xpacket begin='' id='W5M0MpCehiHzreSzNTczkc9d'?>"
        "<x:xmpmeta xmlns:x='adobe:ns:meta/'>"
        "<rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#'><rdf:Description " +
        attributes + ">" + elements +
        "</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end='w'?>");
    pdf.write(output("plain.pdf").string());
    // Packed, too: where the claim forbids it, outputs are not.
    run("qpdf --compress-streams=y --object-streams=generate " + output("plain.pdf").string() +
        " " + output("packed.pdf").string());
    for (const char* name : {"plain.pdf", "packed.pdf"}) {
      ASSERT_EQ(PdfTextDumpOpenFile(wide(output(name).string()).c_str(), u""), CLEFTOR_OK);
      ASSERT_EQ(split(1, 1), CLEFTOR_OK) << errorText();
      EXPECT_THAT(facts("claims"), testing::ElementsAre(claims));
      const bool mayPack = claims.find("part=1") == std::string::npos;
      EXPECT_EQ(contentsOf(output()).find("/ObjStm") != std::string::npos,
                mayPack && name == std::string("packed.pdf"));
    }
  }
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
