// The exported operations. Each one keeps every exception on this side of the door.

#include <glyphrun/glyphrun.h>

#include "LastError.h"
#include "Session.h"
#include "View.h"

#include <cstdlib>
#include <exception>
#include <string>

using glyphrun::Result;
using glyphrun::Session;
using glyphrun::setLastError;

struct GlyphrunView {
  std::unique_ptr<glyphrun::View> view;
};

namespace {

std::u16string textOrEmpty(const char16_t* text) {
  return text == nullptr ? u"" : text;
}

constexpr std::int32_t codeOf(Result result) {
  return static_cast<std::int32_t>(result);
}

/** Runs an operation; what it throws becomes the last error and `otherwise`. */
template <typename Value, typename Body> Value guarded(Value otherwise, Body&& body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    setLastError(Result::OutOfMemory, "out of memory");
  } catch (const std::exception&) {
    setLastError(Result::Damaged, "an unexpected failure");
  }
  return otherwise;
}

template <typename Body> void guarded(Body&& body) noexcept {
  guarded(0, [&body] {
    body();
    return 0;
  });
}

std::int32_t failed(Result result, const std::string& reason) {
  setLastError(result, reason);
  return codeOf(result);
}

} // namespace

extern "C" {

int32_t GlyphrunInterfaceVersion(void) {
  return GLYPHRUN_INTERFACE_VERSION;
}

int32_t GetPageCount(const char16_t* path, const char16_t* password) {
  return guarded(
      0, [=] { return Session::instance().countPages(textOrEmpty(path), textOrEmpty(password)); });
}

void PdfTextDumpOpenFile(const char16_t* path, const char16_t* password) {
  guarded([=] { Session::instance().openFile(textOrEmpty(path), textOrEmpty(password)); });
}

void PdfTextDumpFilePages(int32_t first, int32_t last) {
  guarded([=] { Session::instance().extract(first, last); });
}

void PdfTextDumpFile(const char16_t* path, const char16_t* password, int32_t first, int32_t last) {
  guarded([=] {
    Session& session = Session::instance();
    session.openFile(textOrEmpty(path), textOrEmpty(password));
    if (session.pageCount() > 0)
      session.extract(first, last);
  });
}

void PdfTextDumpCloseFile(void) {
  guarded([] { Session::instance().closeFile(); });
}

int32_t GetPageCount2(void) {
  return Session::instance().pageCount();
}
int32_t GetProcessingStatus(void) {
  return Session::instance().status();
}
int32_t GetProcessingPage(void) {
  return Session::instance().lastPage();
}

int32_t getNumWords(void) {
  return Session::instance().wordCount();
}

void DoSort(void) {
  guarded([] { Session::instance().sortAsDrawn(); });
}

void DoReverseSort(void) {
  guarded([] { Session::instance().sortForReading(); });
}

void RemoveDupes(void) {
  guarded([] { Session::instance().removeRepeats(); });
}

void wordToGet(int32_t index) {
  Session::instance().select(index);
}
int32_t getWordX(void) {
  return Session::instance().selected().h;
}
int32_t getWordY(void) {
  return Session::instance().selected().v;
}
const char16_t* getWordStr(void) {
  return Session::instance().selectedText();
}
const char16_t* getFont(void) {
  return Session::instance().selectedFont();
}
int32_t getFontSize(void) {
  return Session::instance().selected().fontSize;
}

void SetWordSpacing(double factor) {
  guarded([=] { Session::instance().setWordSpacing(factor); });
}

void SetReadAhead(int32_t threads) {
  guarded([=] { Session::instance().setReadAhead(threads); });
}

int32_t GetPageState(void) {
  return Session::instance().pageState();
}

int32_t GetFileFacts(void) {
  return guarded(0, [] { return Session::instance().facts(); });
}

int32_t GlyphrunLastError(void) {
  return codeOf(glyphrun::lastErrorCode());
}
const char16_t* GlyphrunLastErrorText(void) {
  return glyphrun::lastErrorText();
}

int32_t GetOutlineCount(void) {
  return guarded(0, [] { return static_cast<std::int32_t>(Session::instance().outline().size()); });
}

int32_t GetOutlineEntry(int32_t index, GlyphrunOutlineEntry* entry) {
  return guarded(codeOf(Result::OutOfMemory), [=] {
    Session& session = Session::instance();
    if (session.pageCount() == 0)
      return failed(Result::NotOpen, "no file is open");
    const auto& outline = session.outline();
    if (entry == nullptr || index < 0 || static_cast<std::size_t>(index) >= outline.size())
      return failed(Result::BadPage, "there is no such outline entry");
    const glyphrun::OutlineEntry& found = outline[static_cast<std::size_t>(index)];
    *entry = {found.title.c_str(), found.level, found.page};
    return codeOf(Result::Ok);
  });
}

GlyphrunView* OpenView(const char16_t* path, const char16_t* password, int32_t* result) {
  Result outcome = Result::OutOfMemory;
  GlyphrunView* view = guarded(static_cast<GlyphrunView*>(nullptr), [&]() -> GlyphrunView* {
    std::string reason;
    auto opened = glyphrun::View::open(textOrEmpty(path), textOrEmpty(password), outcome, reason);
    if (!opened) {
      setLastError(outcome, reason);
      return nullptr;
    }
    return new GlyphrunView{std::move(opened)};
  });
  if (result != nullptr)
    *result = view != nullptr ? GLYPHRUN_OK : codeOf(outcome);
  return view;
}

void CloseView(GlyphrunView* view) {
  delete view;
}

int32_t GetViewPageCount(const GlyphrunView* view) {
  return view == nullptr ? 0 : view->view->pageCount();
}

int32_t GetViewPageSize(GlyphrunView* view, int32_t page, double* width, double* height) {
  return guarded(codeOf(Result::OutOfMemory), [=] {
    if (view == nullptr)
      return failed(Result::NotOpen, "no file is open");
    double w = 0;
    double h = 0;
    const Result result = view->view->pageSize(page, w, h);
    if (result != Result::Ok)
      return failed(result, "there is no such page");
    if (width != nullptr)
      *width = w;
    if (height != nullptr)
      *height = h;
    return codeOf(Result::Ok);
  });
}

int32_t RenderViewPage(GlyphrunView* view, int32_t page, double scale, GlyphrunImage* image) {
  if (image == nullptr)
    return failed(Result::BadPage, "no place for the picture");
  *image = {0, 0, nullptr};
  return guarded(codeOf(Result::OutOfMemory), [=] {
    if (view == nullptr)
      return failed(Result::NotOpen, "no file is open");
    std::string reason = "there is no such page";
    const Result result = view->view->render(page, scale, *image, reason);
    return result == Result::Ok ? codeOf(result) : failed(result, reason);
  });
}

void ReleaseImage(GlyphrunImage* image) {
  if (image == nullptr)
    return;
  std::free(image->pixels);
  *image = {0, 0, nullptr};
}

void SetViewWordSpacing(GlyphrunView* view, double factor) {
  if (view != nullptr)
    view->view->setWordSpacing(factor);
}

int32_t GetViewWords(GlyphrunView* view, int32_t page, const GlyphrunWord** words) {
  return guarded(codeOf(Result::OutOfMemory), [=] {
    if (view == nullptr || words == nullptr)
      return failed(Result::NotOpen, "no file is open");
    std::int32_t count = 0;
    const Result result = view->view->words(page, *words, count);
    return result == Result::Ok ? count : failed(result, "there is no such page");
  });
}

} // extern "C"
