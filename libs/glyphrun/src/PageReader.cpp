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
    : m_file(std::move(file)), m_streams(m_file->mu()),
      m_fonts(m_file->mu(), m_file->document(), m_streams),
      m_layers(m_file->mu(), m_file->document()),
      m_content(m_file->mu(), m_streams, m_fonts, m_layers, m_words) {}

void PageReader::read(std::int32_t index, PageWords& out) {
  out.clear();
  MuContext& mu = m_file->mu();
  mu.allow(pageMemory, pageTime);
  const PageFrame frame = m_file->frameOf(index);
  m_words.beginPage({0, 0, frame.width, frame.height}, m_tolerance);
  m_content.beginPage(PageLimits());
  try {
    readContents(index, frame);
    readAnnotations(index, frame);
  } catch (const std::bad_alloc&) {
    m_content.setDamaged();
    out.outOfMemory = true;
  }
  m_words.finish(out);
  if (m_content.damaged() || mu.overdue()) {
    out.state = PageState::Damaged;
  }
  out.page = index + 1;
  mu.relax();
  m_fonts.endPage();
  forgetNowAndThen(index);
}

void PageReader::readContents(std::int32_t index, const PageFrame& frame) {
  const PdfObject contents = m_file->page(index).get("Contents");
  m_data.bytes.clear();
  m_data.damaged = m_data.cut = false;
  const auto take = [this](const PdfObject& stream) {
    const std::size_t before = m_data.bytes.size();
    if (!m_streams.append(stream, m_content.bytesLeft(), m_data)) {
      if (stream) {
        m_content.setDamaged();
      }
      return;
    }
    m_content.spend(m_data.bytes.size() - before);
    m_data.bytes.push_back('\n');
  };
  if (contents.isArray()) {
    const int count = contents.size();
    for (int i = 0; i < count && m_content.bytesLeft() > 0; ++i) {
      take(contents.at(i));
    }
  } else {
    take(contents);
  }
  if (m_data.damaged || m_data.cut) {
    m_content.setDamaged();
  }
  m_content.runContent(m_data.view(), frame.resources, frame.toShown);
}

void PageReader::readAnnotations(std::int32_t index, const PageFrame& frame) {
  const PdfObject list = m_file->page(index).get("Annots");
  if (!list.isArray()) {
    return;
  }
  for (const Appearance& appearance : visibleAppearances(*m_file, index, m_layers)) {
    m_content.runForm(appearance.form, frame.resources, appearance.matrix * frame.toShown);
  }
}

// Objects that were read stay in memory until they are forgotten. A page of a long document goes at
// once. To forget the others walks over all of the file's objects, so it happens only a few times
// in a document.
void PageReader::forgetNowAndThen(std::int32_t index) {
  if (m_file->pageCount() > fewestPagesToForget) {
    m_file->forgetPage(index);
  }
  if (++m_sinceForgotten < std::max(fewestPagesToForget, m_file->pageCount() / 16)) {
    return;
  }
  m_sinceForgotten = 0;
  m_file->forgetObjects();
}

} // namespace glyphrun
