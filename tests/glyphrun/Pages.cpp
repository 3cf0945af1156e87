#include "Pages.h"

#include <atomic>
#include <codecvt>
#include <filesystem>
#include <locale>
#include <ostream>

#include <unistd.h>

namespace glyphruntest {

namespace {

/// The folder for all files of this process.
class Folder {
public:
  Folder() {
    std::string name = (std::filesystem::temp_directory_path() / "glyphrun-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& path() const { return path_; }

private:
  std::string path_;
};

} // namespace

std::ostream& operator<<(std::ostream& out, const Word& word) {
  return out << '"' << word.text << "\" at " << word.h << ',' << word.v;
}

std::u16string wide(const std::string& utf8) {
  return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().from_bytes(utf8);
}

std::string repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i)
    all += text;
  return all;
}

std::string narrow(const char16_t* text) {
  return std::wstring_convert<std::codecvt_utf8_utf16<char16_t>, char16_t>().to_bytes(text);
}

std::string pathFor(const std::string& name) {
  static const Folder folder;
  return folder.path() + "/" + name;
}

std::string plainFonts(PdfBuilder& pdf) {
  return "/Font<</F " + PdfBuilder::ref(pdf.addFont("Helvetica")) + "/T " +
         PdfBuilder::ref(pdf.addFont("Times-Roman")) + ">>";
}

std::vector<Word> wordsOf(const std::string& path, int page) {
  PdfTextDumpOpenFile(wide(path).c_str(), u"");
  PdfTextDumpFilePages(page, page);
  DoReverseSort();
  std::vector<Word> words;
  for (int i = 0; i < getNumWords(); ++i) {
    wordToGet(i);
    words.push_back({narrow(getWordStr()), getWordX(), getWordY()});
  }
  return words;
}

std::vector<Word> wordsOf(const PdfBuilder& pdf, int page) {
  static std::atomic<int> number{0};
  const std::string path = pathFor("page" + std::to_string(++number) + ".pdf");
  pdf.write(path);
  return wordsOf(path, page);
}

std::vector<Word> wordsOfContent(const std::string& content, const std::string& pageEntries) {
  PdfBuilder pdf;
  pdf.addPage(content, plainFonts(pdf), pageEntries);
  return wordsOf(pdf);
}

std::string textOf(const std::vector<Word>& words) {
  std::string text;
  for (const Word& word : words) {
    text += (text.empty() ? "" : " ") + word.text;
  }
  return text;
}

} // namespace glyphruntest
