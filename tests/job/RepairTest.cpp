// Files that one of the two libraries cannot read as they are.
#include "engine/job/LivePlan.h"
#include "engine/job/RepairedCopies.h"
#include "tests/support/PdfBuilder.h"
#include "tests/support/RunBench.h"

#include <QFileInfo>

#include <future>

using namespace folivex;
using namespace folivex::test;
using testpdf::PdfBuilder;

namespace {

constexpr const char* account = " | BT /F 12 Tf 72 700 Td (Account: 1001 of the first) Tj ET\n";
constexpr const char* more = " | BT /F 12 Tf 72 700 Td (more) Tj ET\n";
constexpr const char* font = "/Font<</F<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>";

std::string bytesOf(const std::string& text) {
  PdfBuilder pdf;
  pdf.addText(text, font);
  return pdf.finish();
}

/// The catalog leads to a page where a tree of pages should be: the text library finds none.
std::string pageInPlaceOfTree() {
  return bytesOf(std::string("content = ") + account +
                 "pages = <</Type/Page/MediaBox[0 0 600 800]" + "/Contents @content/Resources<<" +
                 font + ">>>>\n");
}

/// Neither table nor trailer: the split library finds no catalog.
std::string withoutTrailer() {
  const std::string whole = bytesOf(std::string("page") + account + "page" + more);
  return whole.substr(0, whole.rfind("xref\n0 "));
}

/// The same, with objects that lead on and on, and a stream that is as long as it is.
std::string withEndlessObjects() {
  PdfBuilder pdf;
  pdf.addText(std::string("page /First @first/Own @own") + account + "page" + more, font);
  const int own = pdf.named("own");
  pdf.set(own, "<</Length " + PdfBuilder::ref(own) + ">>\nstream\n7\nendstream");
  int next = pdf.named("first");
  for (int left = 100'000; left > 0; --left) {
    const int number = next;
    next = pdf.reserve();
    pdf.set(number, "[" + PdfBuilder::ref(next) + "]");
  }
  const std::string whole = pdf.finish();
  return whole.substr(0, whole.rfind("xref\n0 "));
}

/// Encrypted as its author meant it: only who knows the password reads the attachment.
std::string attachmentLocked() {
  const std::string key(64, 'a');
  return bytesOf("attached = /Type/EmbeddedFile | never to be read\n"
                 "named = /Subtype/LockedToo/Filter[/Crypt]/DecodeParms[<</Name/StdCF>>] | "
                 "nor is this ever to be\n"
                 "page /Annots[<</Type/Annot/Subtype/FileAttachment/Rect[0 0 9 9]"
                 "/FS<</Type/Filespec/F(secret.txt)/EF<</F @attached/UF @named>>>>>>]" +
                 std::string(account) + "page" + more +
                 "locked = <</Filter/Standard/V 4/R 4/Length 128/P -4/O<" + key + ">/U<" + key +
                 ">/CF<</StdCF<</CFM/AESV2/AuthEvent/EFOpen/Length 16>>>>"
                 "/StmF/Identity/StrF/Identity/EFF/StdCF>>\n"
                 "trailer /Encrypt @locked/ID[<0011><0011>]\n");
}

class Repair : public RunBench {
protected:
  void write(const std::string& bytes) { PdfBuilder::writeFile(source().toStdString(), bytes); }
  QStringList parts() const { return filesBelow(at("tmp")).filter(".part"); }
};

} // namespace

TEST_F(Repair, WhatOneLibraryReadsIsSplitFromACopy) {
  const std::tuple<const char*, std::string, const char*> rows[] = {
      {"no tree", pageInPlaceOfTree(), "1001.pdf: Account: 1001 of the first"},
      {"no trailer", withoutTrailer(), "1001.pdf: Account: 1001 of the first | more"},
      {"no end", withEndlessObjects(), "1001.pdf: Account: 1001 of the first | more"}};
  for (const auto& [name, bytes, output] : rows) {
    SCOPED_TRACE(name);
    write(bytes);
    EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
    EXPECT_EQ(outputs(), QStringList{output});
    EXPECT_EQ(m_person.notes.filter("read from a repaired copy").size(), 1);
    EXPECT_EQ(contentOf(source()).toStdString(), bytes);
    QFile::remove(at("out/1001.pdf"));
    m_person.notes.clear();
  }
  m_driver.reset();
  RealLibraries::get().text->setStandIn({});
  EXPECT_EQ(parts(), QStringList());
}

TEST_F(Repair, AttachmentsAloneThatAreEncryptedNeedNoPassword) {
  write(attachmentLocked());
  EXPECT_EQ(run(), RunError::None) << m_person.allNotes().toStdString();
  EXPECT_EQ(outputs(), QStringList{"1001.pdf: Account: 1001 of the first | more"});
  EXPECT_EQ(m_person.notes.filter("the file is protected").size(), 1);
  EXPECT_FALSE(contentOf(at("out/1001.pdf")).contains("EmbeddedFile"));
  EXPECT_FALSE(contentOf(at("out/1001.pdf")).contains("LockedToo"));
}

TEST_F(Repair, WhatStaysRefusedSaysWhyInWords) {
  const std::string handler = "trailer /Encrypt<</Filter/Some.PublicKey/V 4>>/ID[<00><00>]\n";
  const std::tuple<std::string, const char*> rows[] = {
      {"no PDF at all", "it is no PDF, or damaged beyond repair"},
      {bytesOf("catalog /Lang(de)\n"), "it is no PDF, or damaged beyond repair (no page"},
      {bytesOf(std::string("page") + account + handler), "encrypted for certain persons"}};
  for (const auto& [bytes, reason] : rows) {
    SCOPED_TRACE(reason);
    write(bytes);
    EXPECT_EQ(run(), RunError::Unreadable);
    EXPECT_TRUE(driver().state().problem.contains(reason))
        << driver().state().problem.toStdString();
  }
}

/// The same file for the page, its words, its plan and the run.
TEST_F(Repair, TheLivePlanIsThatOfTheRun) {
  write(pageInPlaceOfTree());
  m_store.commit();
  std::promise<LivePlanState> done;
  LivePlan live(
      *RealLibraries::get().text, {}, [&done, isDone = false](LivePlanState state) mutable {
        if (state.stage != LivePlanState::Stage::Opening &&
            state.stage != LivePlanState::Stage::Reading && !std::exchange(isDone, true)) {
          done.set_value(std::move(state));
        }
      });
  live.plan(m_store.working());
  const LivePlanState state = done.get_future().get();
  ASSERT_EQ(state.stage, LivePlanState::Stage::Done) << state.problem.toStdString();
  EXPECT_EQ(state.plan->outputs, driver().Plan().outputs);
  EXPECT_EQ(state.plan->outputs.size(), 1U);
}

TEST_F(Repair, ACopyIsPrivateIsSharedAndGoesWithItsLastUser) {
  write(withoutTrailer());
  RepairedCopies copies(*RealLibraries::get().text, *RealLibraries::get().split);
  auto copy = copies.of(source(), {});
  ASSERT_TRUE(copy);
  const QString path = *copy;
  EXPECT_EQ(QFileInfo(path).permissions() &
                (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther),
            QFile::Permissions());
  EXPECT_TRUE(path.startsWith(at("tmp")));
  EXPECT_EQ(copies.of(source(), {}), copy);
  // Another file in its place is another copy.
  write(pageInPlaceOfTree());
  const auto other = copies.of(source(), {});
  ASSERT_TRUE(other);
  EXPECT_NE(*other, path);
  EXPECT_TRUE(QFile::exists(path));
  copy.reset();
  EXPECT_FALSE(QFile::exists(path));
}
