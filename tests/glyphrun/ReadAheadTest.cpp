// Reading ahead on threads changes nothing but the time.

#include "Pages.h"
#include "ScarceMemory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>

namespace glyphruntest {
namespace {

/// Bytes that this process has read so far.
std::uint64_t bytesRead() {
  std::ifstream counters("/proc/self/io");
  std::string name;
  std::uint64_t bytes = 0;
  counters >> name >> bytes;
  EXPECT_EQ(name, "rchar:");
  return bytes;
}

// Enough for the threads to begin with the opening of the file.
constexpr int pageCount = 300;

std::string manyPages() {
  PdfBuilder pdf;
  const std::string fonts = plainFonts(pdf);
  for (int i = 1; i <= pageCount; ++i) {
    std::string content = "BT /F 10 Tf 50 700 Td ";
    for (int line = 0; line < i % 17; ++line) {
      content += "[(Page)-200(" + std::to_string(i) + ")] TJ /T 9 Tf 0 -20 Td ";
    }
    pdf.addPage(content + "ET", fonts);
  }
  std::string path = pathFor("ahead.pdf");
  pdf.write(path);
  return path;
}

std::string extract(int page) {
  PdfTextDumpFilePages(page, page);
  DoReverseSort();
  std::string text = std::to_string(GetPageState());
  for (int i = 0; i < getNumWords(); ++i) {
    wordToGet(i);
    text += " " + narrow(getWordStr()) + "@" + std::to_string(getWordX()) + "," +
            std::to_string(getWordY());
  }
  return text;
}

class Ahead : public testing::TestWithParam<int> {
protected:
  void SetUp() override { PdfTextDumpOpenFile(wide(manyPages()).c_str(), u""); }
  void TearDown() override {
    SetReadAhead(0);
    SetWordSpacing(1.02);
    PdfTextDumpCloseFile();
  }
};

TEST_P(Ahead, PagesComeInOrderWithTheSameWords) {
  std::vector<std::string> alone;
  for (int page = 1; page <= pageCount; ++page) {
    alone.push_back(extract(page));
  }
  SetReadAhead(GetParam());
  for (const bool fromOpening : {false, true}) {
    if (fromOpening) {
      PdfTextDumpOpenFile(wide(pathFor("ahead.pdf")).c_str(), u"");
    }
    for (int page = 1; page <= pageCount; ++page) {
      ASSERT_EQ(extract(page), alone[static_cast<std::size_t>(page) - 1]);
    }
    // Back, forth, twice the same, to the end and beyond.
    for (const int page : {7, 8, 9, 9, 10, 150, 151, 3, 4, 5, 299, 300, 1, 2}) {
      ASSERT_EQ(extract(page), alone[static_cast<std::size_t>(page) - 1]) << page;
    }
  }
  extract(pageCount + 1);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_BAD_PAGE);
}

TEST_P(Ahead, SettingsTakeEffectWithTheNextPage) {
  SetReadAhead(GetParam());
  for (int page = 1; page <= 20; ++page) {
    extract(page);
  }
  EXPECT_EQ(extract(22).find("Page22"), std::string::npos);
  EXPECT_EQ(extract(23).find("Page23"), std::string::npos);
  SetWordSpacing(1.2);
  EXPECT_NE(extract(24).find("Page24"), std::string::npos);
}

TEST_P(Ahead, ClosingEndsTheWork) {
  SetReadAhead(GetParam());
  for (int round = 0; round < 10; ++round) {
    PdfTextDumpOpenFile(wide(pathFor("ahead.pdf")).c_str(), u"");
    for (int page = 1; page <= 3 + round; ++page) {
      extract(page);
    }
    PdfTextDumpCloseFile();
    EXPECT_EQ(getNumWords(), 0);
  }
}

/// Waiting for a page of a thread that cannot even note what it is at would be for ever.
TEST_P(Ahead, ThreadsWithoutMemoryStandAside) {
  const std::string last = extract(pageCount);
  // Sometimes they are still at the file, sometimes pages ahead.
  for (int inPeace = 2; inPeace < 40; inPeace += 4) {
    SetReadAhead(GetParam());
    for (int page = 1; page <= inPeace; ++page) {
      extract(page);
    }
    const NoMemoryForOtherThreads shortage;
    for (int page = inPeace + 1; page < pageCount; ++page) {
      PdfTextDumpFilePages(page, page);
    }
    SetReadAhead(0);
    EXPECT_EQ(extract(pageCount), last);
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, Ahead, testing::Values(1, 3));

/// A damaged file is read whole to be opened; a thread that is at it must not hold up the closing.
TEST(ReadAhead, ClosingEndsAnOpening) {
  manyPages();
  const std::string path = pathFor("damaged.pdf");
  std::ifstream sound(pathFor("ahead.pdf"), std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(sound), {});
  bytes.resize(bytes.rfind("xref\n0"));
  for (int number = 5'000; number < 12'000; ++number) {
    bytes += std::to_string(number) + " 0 obj <</A 1>> endobj\n";
  }
  std::ofstream(path, std::ios::binary) << bytes;

  const auto openAndClose = [&path](int threads) {
    const std::uint64_t before = bytesRead();
    SetReadAhead(threads);
    PdfTextDumpOpenFile(wide(path).c_str(), u"");
    EXPECT_EQ(GetPageCount2(), pageCount);
    PdfTextDumpCloseFile();
    return bytesRead() - before;
  };
  const std::uint64_t once = openAndClose(0);
  constexpr int rounds = 10;
  std::uint64_t all = 0;
  for (int round = 0; round < rounds; ++round) {
    all += openAndClose(1);
  }
  EXPECT_LT(all, (2 * rounds - 1) * once);
  SetReadAhead(0);
}

} // namespace
} // namespace glyphruntest
