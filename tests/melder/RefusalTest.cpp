// Files that are no good: refused with a text, and nothing touched.
#include "tests/melder/Workshop.h"

#include <sys/stat.h>

using namespace folivex::test;
using testpdf::PdfBuilder;

namespace {

using Refusal = Workshop;

QByteArray withPageTree(const std::string& tree, const std::string& node) {
  PdfBuilder builder;
  builder.set(2, tree);
  builder.add(node);
  return QByteArray::fromStdString(builder.finish());
}

} // namespace

TEST_F(Refusal, NoGoodAsEitherFile) {
  const QString good = receiver("plain.pdf");
  const QByteArray plain = contentOf(good);
  struct Row {
    const char* fault;
    int32_t code;
    QByteArray bytes;
  };
  const Row rows[] = {
      {"empty", MELDER_DAMAGED, ""},
      {"cut after a third", MELDER_DAMAGED, plain.left(plain.size() / 3)},
      {"page tree in a circle", MELDER_DAMAGED,
       withPageTree("<</Count 1/Kids[3 0 R]>>", "<</Count 1/Parent 2 0 R/Kids[2 0 R]>>")},
      {"more pages announced than there", MELDER_DAMAGED,
       withPageTree("<</Count 1400000000/Kids[3 0 R]>>", "<</Type/Page/Parent 2 0 R>>")},
      {"no page tree", MELDER_DAMAGED, withPageTree("null", "null")},
      {"locked", MELDER_WRONG_PASSWORD, contentOf(sample("locked.pdf"))},
  };
  const QString bad = at("bad.pdf");
  for (const Row& row : rows) {
    SCOPED_TRACE(row.fault);
    writeFile(bad, row.bytes);
    for (const bool isPart : {true, false}) {
      EXPECT_EQ(isPart ? append(bad, good) : append(good, bad), row.code) << lastError();
      EXPECT_NE(lastError().find("bad.pdf"), std::string::npos) << lastError();
    }
    EXPECT_EQ(contentOf(good), plain);
    EXPECT_EQ(contentOf(bad), row.bytes);
    EXPECT_EQ(filesBelow(m_folder.path()), (QStringList{"bad.pdf", "plain.pdf"}));
  }
  ASSERT_EQ(append(sample("one.pdf"), good), MELDER_OK) << lastError();
  EXPECT_EQ(GetStatus(), MELDER_OK);
  EXPECT_EQ(lastError(), "");
}

TEST_F(Refusal, WhatIsNoFileIsNoFile) {
  const QString good = receiver("plain.pdf");
  ASSERT_EQ(mkfifo(pathOf(at("pipe")).c_str(), 0600), 0);
  for (const QString& odd : {m_folder.path(), at("pipe"), at("missing.pdf"), QString()}) {
    EXPECT_EQ(append(odd, good), MELDER_CANNOT_OPEN) << lastError();
    EXPECT_EQ(append(good, odd), MELDER_CANNOT_OPEN) << lastError();
  }
  EXPECT_EQ(getAppendPDFToFile(nullptr, nullptr, nullptr), 0);
}

TEST_F(Refusal, AReceiverWithABrokenTableIsRepairedOnlyWithAllItsPages) {
  const QString file = receiver("plain.pdf");
  const QByteArray broken = contentOf(file).replace("startxref\n", "startxref\n9");
  writeFile(file, broken);
  ASSERT_EQ(append(sample("one.pdf"), file), MELDER_OK) << lastError();
  EXPECT_TRUE(factsOf(file).contains("text 4 one"));
  // One of the pages is nowhere.
  const QByteArray less = QByteArray(broken).replace("/Count 3", "/Count 4");
  writeFile(file, less);
  EXPECT_EQ(append(sample("one.pdf"), file), MELDER_DAMAGED) << lastError();
  EXPECT_EQ(contentOf(file), less);
}

/// Copied one below the other they would exhaust the stack.
TEST_F(Refusal, ObjectsMayHangOnEachOtherInALongChain) {
  PdfBuilder builder;
  builder.addPage("", "", "/Chain 5 0 R");
  for (int next = 6; next < 20'000; ++next) {
    builder.add("<</Next " + PdfBuilder::ref(next) + ">>");
  }
  const QString part = at("chain.pdf");
  builder.write(part.toStdString());
  const QString file = receiver("plain.pdf");
  ASSERT_EQ(append(part, file), MELDER_OK) << lastError();
  ASSERT_EQ(append(file, part), MELDER_OK) << lastError();
  EXPECT_EQ(pageTexts(part).size(), 5);
}
