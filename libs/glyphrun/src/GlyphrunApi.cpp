// The exported operations. Each one keeps every exception on this side of the door.

#include "PageExtractor.h"
#include "Repair.h"
#include "View.h"
#include "common/Failure.h"
#include "common/Utf16.h"

#include <glyphrun/glyphrun.h>

#include <cstdlib>
#include <string>

using common::Failure;
using glyphrun::PageExtractor;

struct GlyphrunView {
  glyphrun::View view;
};

namespace {

std::u16string textOf(const char16_t* text) {
  return std::u16string(common::textOf(text));
}

/// One for each thread, since views may be used by several.
common::LastError& lastError() {
  thread_local common::LastError error;
  return error;
}

/// Runs an operation; what it throws becomes the last error, and its code the result.
template <typename Body> std::int32_t guarded(Body&& body) noexcept {
  try {
    body(PageExtractor::instance());
    return GLYPHRUN_OK;
  } catch (...) {
    return lastError().keepCaught(GLYPHRUN_DAMAGED);
  }
}

/// The same for an operation whose result GetProcessingStatus tells.
template <typename Body> void guardedWithStatus(Body&& body) noexcept {
  PageExtractor::instance().setStatus(guarded(body));
}

glyphrun::View& existing(GlyphrunView* view) {
  if (view == nullptr) {
    throw Failure(GLYPHRUN_NOT_OPEN, "no file is open");
  }
  return view->view;
}

void storeEntry(const std::vector<glyphrun::OutlineEntry>& outline, int32_t index,
                GlyphrunOutlineEntry* entry) {
  if (entry == nullptr || index < 0 || static_cast<std::size_t>(index) >= outline.size()) {
    throw Failure(GLYPHRUN_BAD_PAGE, "there is no such outline entry");
  }
  const glyphrun::OutlineEntry& found = outline[static_cast<std::size_t>(index)];
  *entry = {found.title.c_str(), found.level, found.page};
}

template <typename Value> void store(Value* place, Value value) {
  if (place != nullptr) {
    *place = value;
  }
}

} // namespace

extern "C" {

int32_t GlyphrunInterfaceVersion(void) {
  return GLYPHRUN_INTERFACE_VERSION;
}

int32_t GetPageCount(const char16_t* path, const char16_t* password) {
  std::int32_t count = 0;
  guardedWithStatus(
      [&](PageExtractor& file) { count = file.countPages(textOf(path), textOf(password)); });
  return count;
}

void PdfTextDumpOpenFile(const char16_t* path, const char16_t* password) {
  guardedWithStatus([=](PageExtractor& file) { file.openFile(textOf(path), textOf(password)); });
}

void PdfTextDumpFilePages(int32_t first, int32_t last) {
  guardedWithStatus([=](PageExtractor& file) { file.extract(first, last); });
}

void PdfTextDumpFile(const char16_t* path, const char16_t* password, int32_t first, int32_t last) {
  guardedWithStatus([=](PageExtractor& file) {
    file.openFile(textOf(path), textOf(password));
    file.extract(first, last);
  });
}

void PdfTextDumpCloseFile(void) {
  guarded([](PageExtractor& file) { file.closeFile(); });
}

int32_t GetPageCount2(void) {
  return PageExtractor::instance().pageCount();
}
int32_t GetProcessingStatus(void) {
  return PageExtractor::instance().status();
}
int32_t GetProcessingPage(void) {
  return PageExtractor::instance().lastPage();
}

int32_t getNumWords(void) {
  return PageExtractor::instance().wordCount();
}

void DoSort(void) {
  guarded([](PageExtractor& file) { file.sortAsDrawn(); });
}

void DoReverseSort(void) {
  guarded([](PageExtractor& file) { file.sortForReading(); });
}

void RemoveDupes(void) {
  guarded([](PageExtractor& file) { file.removeRepeats(); });
}

void wordToGet(int32_t index) {
  PageExtractor::instance().select(index);
}
int32_t getWordX(void) {
  return PageExtractor::instance().selected().h;
}
int32_t getWordY(void) {
  return PageExtractor::instance().selected().v;
}
const char16_t* getWordStr(void) {
  return PageExtractor::instance().selectedText();
}
const char16_t* getFont(void) {
  return PageExtractor::instance().selectedFont();
}
int32_t getFontSize(void) {
  return PageExtractor::instance().selected().fontSize;
}

void SetWordSpacing(double factor) {
  guarded([=](PageExtractor& file) { file.setWordSpacing(factor); });
}

void SetReadAhead(int32_t threads) {
  guarded([=](PageExtractor& file) { file.setReadAhead(threads); });
}

int32_t GetPageState(void) {
  return PageExtractor::instance().pageState();
}

int32_t GetFileFacts(void) {
  return PageExtractor::instance().facts();
}

int32_t GlyphrunLastError(void) {
  return lastError().code();
}
const char16_t* GlyphrunLastErrorText(void) {
  return lastError().text();
}

int32_t GetOutlineCount(void) {
  std::size_t count = 0;
  guarded([&](PageExtractor& file) { count = file.outline().size(); });
  return static_cast<std::int32_t>(count);
}

int32_t GetOutlineEntry(int32_t index, GlyphrunOutlineEntry* entry) {
  return guarded([=](PageExtractor& file) {
    if (file.pageCount() == 0) {
      throw Failure(GLYPHRUN_NOT_OPEN, "no file is open");
    }
    storeEntry(file.outline(), index, entry);
  });
}

GlyphrunView* OpenView(const char16_t* path, const char16_t* password, int32_t* result) {
  GlyphrunView* view = nullptr;
  store(result, guarded([&](PageExtractor&) {
          view = new GlyphrunView{{textOf(path), textOf(password)}};
        }));
  return view;
}

void CloseView(GlyphrunView* view) {
  delete view;
}

void AbortView(GlyphrunView* view) {
  if (view != nullptr) {
    view->view.abort();
  }
}

int32_t GetViewPageCount(const GlyphrunView* view) {
  return view == nullptr ? 0 : view->view.pageCount();
}

int32_t GetViewPageSize(GlyphrunView* view, int32_t page, double* width, double* height) {
  return guarded([=](PageExtractor&) {
    const glyphrun::PageFrame frame = existing(view).frameOf(page);
    store(width, frame.width);
    store(height, frame.height);
  });
}

int32_t RenderViewPage(GlyphrunView* view, int32_t page, double scale, GlyphrunImage* image) {
  store(image, GlyphrunImage{0, 0, nullptr});
  return guarded([=](PageExtractor&) {
    if (image == nullptr) {
      throw Failure(GLYPHRUN_BAD_PAGE, "no place for the picture");
    }
    *image = existing(view).render(page, scale);
  });
}

void ReleaseImage(GlyphrunImage* image) {
  if (image == nullptr) {
    return;
  }
  std::free(image->pixels);
  *image = {0, 0, nullptr};
}

void SetViewWordSpacing(GlyphrunView* view, double factor) {
  if (view != nullptr) {
    view->view.setWordSpacing(factor);
  }
}

void SetViewReadAhead(GlyphrunView* view, int32_t threads) {
  guarded([=](PageExtractor&) { existing(view).setReadAhead(threads); });
}

int32_t GetViewWords(GlyphrunView* view, int32_t page, const GlyphrunWord** words) {
  std::int32_t count = 0;
  const std::int32_t result = guarded([&](PageExtractor&) {
    if (words == nullptr) {
      throw Failure(GLYPHRUN_NOT_OPEN, "no place for the words");
    }
    const auto& list = existing(view).words(page);
    *words = list.data();
    count = static_cast<std::int32_t>(list.size());
  });
  return result == GLYPHRUN_OK ? count : result;
}

int32_t RepairFile(const char16_t* path, const char16_t* password, const char16_t* target) {
  std::int32_t pages = 0;
  const std::int32_t result = guarded([&](PageExtractor&) {
    pages = glyphrun::repairFile(textOf(path), textOf(password), common::toUtf8(textOf(target)));
  });
  return result == GLYPHRUN_OK ? pages : result;
}

int32_t GetViewPageState(const GlyphrunView* view) {
  return view == nullptr ? GLYPHRUN_PAGE_EMPTY : view->view.pageState();
}

int32_t GetViewOutlineCount(GlyphrunView* view) {
  std::size_t count = 0;
  guarded([&](PageExtractor&) { count = existing(view).outline().size(); });
  return static_cast<std::int32_t>(count);
}

int32_t GetViewOutlineEntry(GlyphrunView* view, int32_t index, GlyphrunOutlineEntry* entry) {
  return guarded([=](PageExtractor&) { storeEntry(existing(view).outline(), index, entry); });
}

} // extern "C"
