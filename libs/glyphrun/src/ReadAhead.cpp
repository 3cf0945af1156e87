#include "ReadAhead.h"

#include <algorithm>
#include <utility>

namespace glyphrun {

namespace {

constexpr std::int32_t pagesAheadPerThread = 16;
constexpr std::size_t mostBytesAhead = std::size_t{64} << 20;

} // namespace

ReadAhead::ReadAhead(std::u16string path, std::u16string password, std::int32_t pageCount,
                     int threads, double wordSpacing)
    : path_(std::move(path)), password_(std::move(password)), pageCount_(pageCount),
      window_(threads * pagesAheadPerThread), wordSpacing_(wordSpacing) {
  // Too few threads are no failure: the caller reads what nobody else does.
  try {
    for (int i = 0; i < threads; ++i)
      threads_.emplace_back([this] { work(); });
  } catch (const std::exception&) {
    changed_.notify_all();
  }
}

ReadAhead::~ReadAhead() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (MuContext* context : contexts_)
      context->stop();
  }
  changed_.notify_all();
  for (std::thread& thread : threads_)
    thread.join();
}

std::size_t ReadAhead::bytesOf(const PageWords& words) {
  return words.pool.capacity() * sizeof(char16_t) + words.words.capacity() * sizeof(Word) +
         words.reading.capacity() * sizeof(std::uint32_t);
}

bool ReadAhead::mayClaim() const {
  return wanted_ >= 0 && next_ < pageCount_ && next_ < wanted_ + window_ &&
         (bytes_ < mostBytesAhead || slots_.empty());
}

void ReadAhead::restartAt(std::int32_t index) {
  ++generation_;
  slots_.clear();
  bytes_ = 0;
  next_ = index;
}

bool ReadAhead::take(std::int32_t index, PageWords& out) {
  std::unique_lock lock(mutex_);
  if (index != wanted_)
    restartAt(index + 1);
  wanted_ = index + 1;
  auto claimed = slots_.end();
  changed_.wait(lock, [&] {
    claimed = slots_.find(index);
    return claimed == slots_.end() || claimed->second.ready;
  });
  if (claimed == slots_.end()) {
    // Nobody is at it; the threads go on behind it.
    next_ = std::max(next_, index + 1);
    lock.unlock();
    changed_.notify_all();
    return false;
  }
  bytes_ -= bytesOf(claimed->second.words);
  std::swap(out, claimed->second.words);
  // The caller's old storage serves the next page.
  spare_.push_back(std::move(claimed->second.words));
  slots_.erase(claimed);
  lock.unlock();
  changed_.notify_all();
  return true;
}

void ReadAhead::setWordSpacing(double factor) {
  const std::lock_guard lock(mutex_);
  wordSpacing_ = factor;
  restartAt(std::max(wanted_, 0));
}

std::unique_ptr<PageReader> ReadAhead::openFile() {
  Result result = Result::Ok;
  std::string reason;
  std::unique_ptr<PdfFile> file = PdfFile::open(path_, password_, result, reason);
  if (!file || file->pageCount() != pageCount_)
    return nullptr;
  return std::make_unique<PageReader>(std::move(file));
}

void ReadAhead::work() {
  try {
    const std::unique_ptr<PageReader> reader = openFile();
    if (!reader)
      return;
    MuContext* const context = &reader->file().mu();
    {
      const std::lock_guard lock(mutex_);
      contexts_.push_back(context);
    }
    readClaimedPages(*reader);
    const std::lock_guard lock(mutex_);
    std::erase(contexts_, context);
  } catch (const std::bad_alloc&) {
    // Without memory this thread stands aside; it had nothing claimed.
  }
}

void ReadAhead::readClaimedPages(PageReader& reader) noexcept {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return stopping_ || mayClaim(); });
    if (stopping_)
      return;
    const std::uint32_t generation = generation_;
    const std::int32_t index = next_;
    PageWords words;
    try {
      slots_[index];
      ++next_;
      if (!spare_.empty()) {
        words = std::move(spare_.back());
        spare_.pop_back();
      }
      const double spacing = wordSpacing_;
      lock.unlock();
      reader.setWordSpacing(spacing);
      reader.read(index, words);
    } catch (const std::bad_alloc&) {
      words.clear();
      words.page = index + 1;
      words.state = PageState::Damaged;
      words.outOfMemory = true;
    }
    if (!lock.owns_lock())
      lock.lock();
    const auto slot = slots_.find(index);
    if (generation != generation_ || slot == slots_.end())
      continue;
    bytes_ += bytesOf(words);
    slot->second.words = std::move(words);
    slot->second.ready = true;
    changed_.notify_all();
  }
}

} // namespace glyphrun
