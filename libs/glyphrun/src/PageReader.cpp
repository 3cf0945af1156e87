#include "PageReader.h"

#include "Annotations.h"

#include <algorithm>

namespace glyphrun {

namespace {

constexpr std::size_t pageMemory = std::size_t{512} << 20;
// The counted limits end a page long before; this is for what they cannot see.
constexpr std::chrono::milliseconds pageTime{60'000};
constexpr std::int32_t fewestPagesToForget = 1024;

} // namespace

PageReader::PageReader(std::unique_ptr<PdfFile> file)
    : file_(std::move(file)), streams_(file_->mu()),
      fonts_(file_->mu(), file_->document(), streams_), layers_(file_->mu(), file_->document()),
      content_(file_->mu(), streams_, fonts_, layers_, words_) {}

void PageReader::read(std::int32_t index, PageWords& out) {
  out.clear();
  MuContext& mu = file_->mu();
  mu.allow(pageMemory, pageTime);
  const PageFrame frame = file_->frameOf(index);
  words_.beginPage({0, 0, frame.width, frame.height}, tolerance_);
  content_.beginPage(PageLimits());
  try {
    readContents(index, frame);
    readAnnotations(index, frame);
  } catch (const std::bad_alloc&) {
    content_.setDamaged();
    out.outOfMemory = true;
  }
  words_.finish(out);
  if (content_.damaged() || mu.overdue())
    out.state = PageState::Damaged;
  out.page = index + 1;
  mu.relax();
  fonts_.endPage();
  forgetNowAndThen();
}

void PageReader::readContents(std::int32_t index, const PageFrame& frame) {
  const PdfObject contents = file_->page(index).get("Contents");
  data_.bytes.clear();
  data_.damaged = data_.cut = false;
  const auto take = [this](const PdfObject& stream) {
    const std::size_t before = data_.bytes.size();
    if (!streams_.append(stream, content_.bytesLeft(), data_)) {
      if (stream)
        content_.setDamaged();
      return;
    }
    content_.spend(data_.bytes.size() - before);
    data_.bytes.push_back('\n');
  };
  if (contents.isArray()) {
    const int count = contents.size();
    for (int i = 0; i < count && content_.bytesLeft() > 0; ++i)
      take(contents.at(i));
  } else {
    take(contents);
  }
  if (data_.damaged || data_.cut)
    content_.setDamaged();
  content_.runContent(data_.view(), frame.resources, frame.toShown);
}

void PageReader::readAnnotations(std::int32_t index, const PageFrame& frame) {
  const PdfObject list = file_->page(index).get("Annots");
  if (!list.isArray())
    return;
  for (const Appearance& appearance : visibleAppearances(*file_, index, layers_))
    content_.runForm(appearance.form, frame.resources, appearance.matrix * frame.toShown);
}

// Objects that were read stay in memory until they are forgotten. Forgetting walks over all of the
// file's objects, so it happens only a few times in a document.
void PageReader::forgetNowAndThen() {
  if (++sinceForgotten_ < std::max(fewestPagesToForget, file_->pageCount() / 16))
    return;
  sinceForgotten_ = 0;
  file_->forgetObjects();
}

} // namespace glyphrun
