// Files that are no good: refused with a text, and nothing touched.
#include "workshop.h"

#include "melder/melder.h"

#include <cstdint>

// The fuzz target, run here over the inputs that it has found.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace melder_test {

namespace {

/** A file of numbered objects, the first one the catalog, with a right table. */
std::string document(const std::vector<std::string>& objects) {
  std::string bytes = "%PDF-1.4\n";
  std::string table = "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
  for (size_t i = 0; i < objects.size(); ++i) {
    std::string offset = std::to_string(bytes.size());
    table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
    bytes += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const std::string place = std::to_string(bytes.size());
  return bytes + table + "trailer\n<< /Root 1 0 R /Size " + std::to_string(objects.size() + 1) +
         " >>\nstartxref\n" + place + "\n%%EOF\n";
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.rfind(from);
  EXPECT_NE(at, std::string::npos) << from;
  return text.replace(at, from.size(), to);
}

struct Bad {
  const char* name;
  int32_t code;
  std::string bytes;
};

} // namespace

using Refusal = Workshop;

TEST_F(Refusal, NoGoodAsEitherFile) {
  const std::string plain = bytesOf(sample("plain.pdf"));
  const std::string catalog = "<< /Type /Catalog /Pages 2 0 R >>";
  const std::vector<Bad> table = {
      {"empty", MELDER_DAMAGED, ""},
      {"cut after a third", MELDER_DAMAGED, plain.substr(0, plain.size() / 3)},
      {"page tree in a circle", MELDER_DAMAGED,
       document({catalog, "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
                 "<< /Type /Pages /Count 1 /Parent 2 0 R /Kids [2 0 R] >>"})},
      {"more pages announced than there", MELDER_DAMAGED,
       document({catalog, "<< /Type /Pages /Count 1400000000 /Kids [3 0 R] >>",
                 "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] >>"})},
      {"no page tree", MELDER_DAMAGED, document({"<< /Type /Catalog >>"})},
      {"locked", MELDER_WRONG_PASSWORD, bytesOf(sample("locked.pdf"))},
  };
  const fs::path good = receiver("plain.pdf");
  const fs::path bad = folder() / "bad.pdf";
  for (const Bad& row : table) {
    SCOPED_TRACE(row.name);
    writeBytes(bad, row.bytes);
    EXPECT_FALSE(append(bad, good));
    EXPECT_EQ(GetStatus(), row.code) << lastError();
    EXPECT_NE(lastError().find("bad.pdf"), std::string::npos) << lastError();
    EXPECT_EQ(bytesOf(good), plain);
    EXPECT_FALSE(append(good, bad));
    EXPECT_EQ(GetStatus(), row.code) << lastError();
    EXPECT_NE(lastError().find("bad.pdf"), std::string::npos) << lastError();
    EXPECT_EQ(bytesOf(bad), row.bytes);
    EXPECT_TRUE(litter().empty());
  }
  ASSERT_TRUE(append(sample("one.pdf"), good)) << lastError();
  EXPECT_EQ(GetStatus(), MELDER_OK);
  EXPECT_EQ(lastError(), "");
}

TEST_F(Refusal, WhatIsNoFileIsNoFile) {
  const fs::path good = receiver("plain.pdf");
  const fs::path pipe = folder() / "pipe";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const fs::path& odd : {folder(), pipe, folder() / "missing.pdf", fs::path()}) {
    SCOPED_TRACE(odd);
    EXPECT_FALSE(append(odd, good));
    EXPECT_EQ(GetStatus(), MELDER_CANNOT_OPEN) << lastError();
    EXPECT_FALSE(append(good, odd));
    EXPECT_NE(GetStatus(), MELDER_OK);
  }
  EXPECT_EQ(getAppendPDFToFile(nullptr, nullptr, nullptr), 0);
}

TEST_F(Refusal, AReceiverWithABrokenTableIsRepairedOnlyWithAllItsPages) {
  const std::string plain = bytesOf(sample("plain.pdf"));
  const fs::path file = folder() / "broken.pdf";
  writeBytes(file, replaced(plain, "startxref\n", "startxref\n9"));
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  EXPECT_EQ(pageTexts(file), (std::vector<std::string>{"plain 1", "plain 2", "plain 3", "one"}));
  expectSound(file);
  // One of the pages is not where it should be, nor anywhere else.
  std::string less = replaced(plain, "startxref\n", "startxref\n9");
  less = replaced(less, "/Type /Page\n", "/Type /Gone\n");
  less = replaced(less, "/Count 3", "/Count 4");
  writeBytes(file, less);
  EXPECT_FALSE(append(sample("one.pdf"), file));
  EXPECT_EQ(GetStatus(), MELDER_DAMAGED) << lastError();
  EXPECT_EQ(bytesOf(file), less);
}

TEST_F(Refusal, StoredFuzzInputs) {
  int inputs = 0;
  for (const auto& entry : fs::directory_iterator(FOLIVEX_SOURCE_DIR "/fuzz/melder_append")) {
    SCOPED_TRACE(entry.path());
    const std::string bytes = bytesOf(entry.path());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++inputs;
  }
  EXPECT_GT(inputs, 0);
}

TEST_F(Refusal, PartsThatTurnInCirclesComeToAnEnd) {
  std::string catalog = "<< /Type /Catalog /Pages 2 0 R /Outlines 5 0 R /PageLabels 9 0 R";
  catalog += " /AcroForm << /Fields [7 0 R 7 0 R] >> /Names << /Dests 8 0 R >>";
  catalog += " /OCProperties << /OCGs [4 0 R 4 0 R] >> >>";
  std::string page = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 100 100] /Resources 4 0 R";
  page += " /Annots [7 0 R 7 0 R] /Chain 10 0 R /Deep ";
  page += std::string(400, '[') + std::string(400, ']') + " >>";
  std::vector<std::string> objects = {
      catalog,
      "<< /Type /Pages /Count 1 /Kids [3 0 R] >>",
      page,
      "<< /Font << /F 4 0 R >> /XObject << /X 4 0 R >> /Up 3 0 R /Tree 2 0 R /Top 1 0 R >>",
      "<< /First 6 0 R /Last 6 0 R /Count 99999999999 >>",
      "<< /Title (again) /Parent 5 0 R /Next 6 0 R /First 5 0 R /Dest [3 0 R /Fit] >>",
      "<< /Subtype /Widget /FT /Tx /T (me) /Parent 7 0 R /Kids [7 0 R] /Rect [0 0 1 1] >>",
      "<< /Kids [8 0 R] /Names [(a) [3 0 R /Fit] (a) [99 0 R /Fit]] >>",
      "<< /Kids [9 0 R 9 0 R] /Nums [0 << /S /D >> -5 << >> 0 9 0 R] >>"};
  for (int i = 0; i < 20000; ++i) {
    objects.push_back("<< /Next " + std::to_string(objects.size() + 2) + " 0 R >>");
  }
  const fs::path part = folder() / "circles.pdf";
  writeBytes(part, document(objects));
  const fs::path file = receiver("plain.pdf");
  ASSERT_TRUE(append(part, file)) << lastError();
  ASSERT_TRUE(append(sample("one.pdf"), file)) << lastError();
  EXPECT_EQ(pageTexts(file).size(), 5U);
  ASSERT_TRUE(append(sample("linked.pdf"), part)) << lastError();
  EXPECT_EQ(pageTexts(part).size(), 4U);
}

} // namespace melder_test
