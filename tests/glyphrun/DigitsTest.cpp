// No digit of a number is lost, doubled or moved without a sign.

#include "DigitPages.h"
#include "Pages.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace glyphruntest {
namespace {

/// The words of the open file's page, sorted.
std::vector<std::string> sortedWords(int page) {
  PdfTextDumpFilePages(page, page);
  std::vector<std::string> words;
  for (int i = 0; i < getNumWords(); ++i) {
    wordToGet(i);
    words.push_back(narrow(getWordStr()));
  }
  std::sort(words.begin(), words.end());
  return words;
}

std::string joined(const std::vector<std::string>& words) {
  std::string all;
  for (const std::string& word : words) {
    all += word + " ";
  }
  return all;
}

/// FOLIVEX_DIGIT_PAGES=10000 asks for more pages, FOLIVEX_DIGIT_SEED for others.
int setting(const char* name, int otherwise) {
  const char* const value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

TEST(Digits, EveryNumberIsExactOrItsPageIsCalledUnreadable) {
  constexpr int pagesPerFile = 100;
  const int wanted = setting("FOLIVEX_DIGIT_PAGES", 500);
  auto seed = static_cast<std::uint32_t>(setting("FOLIVEX_DIGIT_SEED", 1));
  int wrong = 0;
  int unreadable = 0;
  const std::string path = pathFor("digits.pdf");
  for (int done = 0; done < wanted; done += pagesPerFile, ++seed) {
    PdfBuilder pdf;
    DigitPages maker(pdf, seed);
    std::vector<DigitPage> pages;
    for (int i = 0; i < pagesPerFile; ++i) {
      pages.push_back(maker.addPage());
    }
    pdf.write(path);
    PdfTextDumpOpenFile(wide(path).c_str(), u"");
    for (int i = 0; i < pagesPerFile; ++i) {
      DigitPage& page = pages[static_cast<std::size_t>(i)];
      std::sort(page.numbers.begin(), page.numbers.end());
      const std::vector<std::string> words = sortedWords(i + 1);
      const bool told =
          GetPageState() == GLYPHRUN_PAGE_UNREADABLE || GetPageState() == GLYPHRUN_PAGE_DAMAGED;
      unreadable += told;
      if (words == page.numbers ? told && !page.mayBeUnreadable : !(told && page.mayBeUnreadable)) {
        ++wrong;
        ADD_FAILURE() << "seed " << seed << " page " << i + 1 << ": " << page.style << "\nshown "
                      << joined(page.numbers) << "\nread  " << joined(words) << "\nstate "
                      << GetPageState();
      }
    }
    PdfTextDumpCloseFile();
  }
  std::printf("%d pages, %d wrong, %d called unreadable\n", wanted, wrong, unreadable);
}

} // namespace
} // namespace glyphruntest
