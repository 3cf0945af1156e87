// Reading ahead on threads changes nothing but the time.

#include "Pages.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <thread>

/// The thread that gets memory from operator new; none while all do.
static std::atomic<std::thread::id> provided;

// The library's own calls end here as well: a program's operators go before those of its libraries.
void* operator new(std::size_t bytes, const std::nothrow_t& /*unused*/) noexcept {
  const std::thread::id only = provided;
  const bool isRefused = only != std::thread::id() && only != std::this_thread::get_id();
  return isRefused ? nullptr : std::malloc(bytes);
}

void* operator new(std::size_t bytes) {
  void* block = operator new(bytes, std::nothrow);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

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

class Ahead : public testing::TestWithParam<int> {
protected:
  void SetUp() override {
    PdfBuilder pdf = newPdf();
    for (int i = 1; i <= pageCount; ++i) {
      const std::string line = "[(Page)-200(" + std::to_string(i) + ")] TJ /T 9 Tf 0 -20 Td ";
      pdf.addPage("BT /F 10 Tf 50 700 Td " + repeat(line, i % 17) + "ET", plainFonts);
    }
    bytes_ = pdf.finish();
    reopen();
  }
  void TearDown() override {
    SetReadAhead(0);
    SetWordSpacing(1.02);
    PdfTextDumpCloseFile();
  }

  void reopen() const {
    PdfBuilder::writeFile(path_, bytes_);
    PdfTextDumpOpenFile(wide(path_).c_str(), u"");
  }
  static std::string pageText(int page) {
    const std::string words = extract(page, true);
    return words + " " + std::to_string(GetPageState());
  }
  static void extractTo(int last) {
    for (int page = 1; page <= last; ++page) {
      extract(page);
    }
  }

  std::string bytes_;
  const std::string path_ = pathFor("ahead.pdf");
};

TEST_P(Ahead, PagesComeInOrderWithTheSameWords) {
  // In order, back, forth, twice the same, to the end.
  std::vector<int> pages = {7, 8, 9, 9, 10, 150, 151, 3, 4, 5, 299, 300, 1, 2};
  std::vector<std::string> alone = {""};
  for (int page = pageCount; page > 0; --page) {
    pages.insert(pages.begin(), page);
  }
  for (int page = 1; page <= pageCount; ++page) {
    alone.push_back(pageText(page));
  }
  SetReadAhead(GetParam());
  for (int round = 0; round < 2; ++round) {
    for (const int page : pages) {
      ASSERT_EQ(pageText(page), alone[static_cast<std::size_t>(page)]) << page;
    }
    reopen();
  }
  extract(pageCount + 1);
  EXPECT_EQ(GetProcessingStatus(), GLYPHRUN_BAD_PAGE);
}

TEST_P(Ahead, SettingsTakeEffectWithTheNextPage) {
  SetReadAhead(GetParam());
  extractTo(20);
  EXPECT_EQ(extract(22).find("Page22"), std::string::npos);
  EXPECT_EQ(extract(23).find("Page23"), std::string::npos);
  SetWordSpacing(1.2);
  EXPECT_NE(extract(24).find("Page24"), std::string::npos);
}

TEST_P(Ahead, ViewsReadAheadToo) {
  GlyphrunView* const view = OpenView(wide(path_).c_str(), u"", nullptr);
  ASSERT_NE(view, nullptr);
  SetViewWordSpacing(view, 1.02);
  const auto words = [view](int page) {
    const GlyphrunWord* found = nullptr;
    std::u16string text;
    for (int i = 0, count = GetViewWords(view, page, &found); i < count; ++i) {
      text.append(found[i].text).push_back(u' ');
      EXPECT_EQ(found[i].page, page);
    }
    return text;
  };
  std::vector<std::u16string> alone = {u""};
  for (int page = 1; page <= pageCount; ++page) {
    alone.push_back(words(page));
  }
  SetViewReadAhead(view, GetParam());
  for (const int page : {1, 2, 3, 200, 201, 7, 8, 8, 300, 1}) {
    EXPECT_EQ(words(page), alone[static_cast<std::size_t>(page)]) << page;
  }
  SetViewWordSpacing(view, 1.2);
  EXPECT_NE(words(24), alone[24]);
  // One that is given up waits for no thread.
  AbortView(view);
  for (int page = 1; page <= pageCount; ++page) {
    words(page);
  }
  CloseView(view);
}

TEST_P(Ahead, ClosingEndsTheWork) {
  SetReadAhead(GetParam());
  for (int round = 0; round < 10; ++round) {
    PdfTextDumpOpenFile(wide(path_).c_str(), u"");
    extractTo(3 + round);
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
    extractTo(inPeace);
    provided = std::this_thread::get_id();
    for (int page = inPeace + 1; page < pageCount; ++page) {
      PdfTextDumpFilePages(page, page);
    }
    provided = std::thread::id();
    SetReadAhead(0);
    EXPECT_EQ(extract(pageCount), last);
  }
}

/// A damaged file is read whole to be opened; a thread that is at it must not hold up the closing.
TEST_P(Ahead, ClosingEndsAnOpening) {
  bytes_.resize(bytes_.rfind("xref\n0"));
  for (int number = 5'000; number < 12'000; ++number) {
    bytes_ += std::to_string(number) + " 0 obj <</A 1>> endobj\n";
  }
  const auto openAndClose = [this](int threads) {
    const std::uint64_t before = bytesRead();
    SetReadAhead(threads);
    reopen();
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
}

INSTANTIATE_TEST_SUITE_P(Threads, Ahead, testing::Values(1, 3));

} // namespace
} // namespace glyphruntest
