#include "Session.h"

#include "LastError.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>

namespace glyphrun {

namespace {

const Word noWord;
constexpr char16_t noText[] = u"";

} // namespace

Session& Session::instance() {
  static Session session;
  return session;
}

std::unique_ptr<PageReader> Session::openReader(const std::u16string& path,
                                                const std::u16string& password,
                                                FileIdentity& identity) {
  Result result = Result::Ok;
  std::string reason;
  FileIdentity::of(path, identity);
  std::unique_ptr<PdfFile> file = PdfFile::open(path, password, result, reason);
  status_ = result;
  if (!file) {
    setLastError(result, reason);
    return nullptr;
  }
  return std::make_unique<PageReader>(std::move(file));
}

std::int32_t Session::countPages(const std::u16string& path, const std::u16string& password) {
  ready_.reset();
  ready_ = openReader(path, password, readyIdentity_);
  if (!ready_)
    return 0;
  readyPath_ = path;
  readyPassword_ = password;
  return ready_->file().pageCount();
}

void Session::openFile(const std::u16string& path, const std::u16string& password) {
  closeFile();
  FileIdentity identity;
  const bool unchanged = ready_ && path == readyPath_ && password == readyPassword_ &&
                         FileIdentity::of(path, identity) && identity == readyIdentity_;
  if (unchanged) {
    status_ = Result::Ok;
    reader_ = std::move(ready_);
  } else {
    ready_.reset();
    reader_ = openReader(path, password, identity);
  }
  if (!reader_)
    return;
  reader_->setWordSpacing(wordSpacing_);
  path_ = path;
  password_ = password;
}

void Session::closeFile() {
  dropWords();
  outline_.clear();
  outlineRead_ = false;
  ahead_.reset();
  reader_.reset();
  path_.clear();
  password_.clear();
  lastPage_ = 0;
  pageState_ = PageState::Empty;
}

void Session::dropWords() {
  order_.clear();
  pagesUsed_ = 0;
  hasSelection_ = false;
}

void Session::extract(std::int32_t first, std::int32_t last) {
  dropWords();
  pageState_ = PageState::Empty;
  if (!reader_) {
    status_ = Result::NotOpen;
    setLastError(status_, "no file is open");
    return;
  }
  if (first < 1 || last < first || last > reader_->file().pageCount()) {
    status_ = Result::BadPage;
    setLastError(status_, "there is no such page");
    return;
  }
  status_ = Result::Ok;
  bool anyWords = false;
  for (std::int32_t page = first; page <= last; ++page) {
    if (pagesUsed_ == pages_.size())
      pages_.emplace_back();
    PageWords& words = pages_[pagesUsed_++];
    readPage(page - 1, words);
    lastPage_ = page;
    anyWords = anyWords || !words.words.empty();
    pageState_ = std::max(pageState_, words.state);
    if (words.outOfMemory)
      status_ = Result::OutOfMemory;
    else if (words.state == PageState::Damaged && status_ == Result::Ok)
      status_ = Result::Damaged;
  }
  // Of several pages an empty one is no grave matter.
  if (pageState_ == PageState::Empty && anyWords)
    pageState_ = PageState::Good;
  if (status_ != Result::Ok)
    setLastError(status_, "a page is damaged or goes beyond what one page may cost");
  fillOrder(false);
}

void Session::readPage(std::int32_t index, PageWords& words) {
  // A look at one page or another is no reason to start threads.
  if (!ahead_ && aheadThreads_ > 0 && index > 0 && index == lastPage_)
    ahead_ =
        std::make_unique<ReadAhead>(path_, password_, pageCount(), aheadThreads_, wordSpacing_);
  if (!ahead_ || !ahead_->take(index, words))
    reader_->read(index, words);
}

void Session::fillOrder(bool reading) {
  order_.clear();
  for (std::uint32_t slot = 0; slot < pagesUsed_; ++slot) {
    const PageWords& page = pages_[slot];
    for (std::uint32_t i = 0; i < page.words.size(); ++i)
      order_.push_back({slot, reading ? page.reading[i] : i});
  }
}

void Session::sortAsDrawn() {
  fillOrder(false);
}

void Session::sortForReading() {
  fillOrder(true);
}

// A page that repeats the words of another page is no repetition: only words of one page are
// compared.
void Session::removeRepeats() {
  struct Key {
    std::uint32_t slot;
    std::int32_t h;
    std::int32_t v;
    std::u16string_view text;
    bool operator==(const Key&) const = default;
  };
  struct Hash {
    std::size_t operator()(const Key& key) const {
      constexpr std::size_t mix = 1'000'003;
      const std::size_t place = (key.slot * mix + static_cast<std::uint32_t>(key.h)) * mix +
                                static_cast<std::uint32_t>(key.v);
      return std::hash<std::u16string_view>()(key.text) ^ place * mix;
    }
  };
  std::unordered_set<Key, Hash> seen;
  std::erase_if(order_, [&](const WordIndex& index) {
    const PageWords& page = pages_[index.slot];
    const Word& word = page.words[index.word];
    return !seen.insert({index.slot, word.h, word.v, page.textOf(word)}).second;
  });
  hasSelection_ = false;
}

void Session::setWordSpacing(double factor) {
  wordSpacing_ = factor;
  if (reader_)
    reader_->setWordSpacing(factor);
  if (ahead_)
    ahead_->setWordSpacing(factor);
}

void Session::setReadAhead(std::int32_t threads) {
  constexpr std::int32_t mostThreads = 64;
  aheadThreads_ = std::clamp(threads, 0, mostThreads);
  ahead_.reset();
}

void Session::select(std::int32_t index) {
  hasSelection_ = index >= 0 && index < wordCount();
  if (hasSelection_)
    selected_ = order_[static_cast<std::size_t>(index)];
}

const Word& Session::selected() const {
  return hasSelection_ ? pages_[selected_.slot].words[selected_.word] : noWord;
}

const char16_t* Session::selectedText() const {
  return hasSelection_ ? pages_[selected_.slot].textOf(selected()) : noText;
}

const char16_t* Session::selectedFont() const {
  return hasSelection_ ? pages_[selected_.slot].pool.data() + selected().font : noText;
}

const std::vector<OutlineEntry>& Session::outline() {
  if (reader_ && !outlineRead_) {
    outline_ = readOutline(reader_->file());
    outlineRead_ = true;
  }
  return outline_;
}

} // namespace glyphrun
