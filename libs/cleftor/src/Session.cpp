#include "Session.h"

#include "Failure.h"
#include "Paths.h"
#include "Utf16.h"
#include "cleftor/cleftor.h"

#include <qpdf/QPDFExc.hh>

#include <filesystem>
#include <new>

namespace cleftor {

namespace {

/** A reader of the source who replaced it would lose both. */
void refuseSourceAsTarget(const Source& source, const std::string& target) {
  std::error_code ignored;
  if (std::filesystem::equivalent(pathOf(source.path()), pathOf(target), ignored)) {
    throw Failure(CLEFTOR_CANNOT_WRITE,
                  "Unable to write \"" + target + "\": it is the file that is being split");
  }
}

std::string pagesText(int32_t first, int32_t last) {
  return std::to_string(first) + " to " + std::to_string(last);
}

} // namespace

void writeRange(Source& source, const std::string& target, int32_t first, int32_t last,
                const RangeSettings& settings) {
  if (first < 1 || last < first || last > source.pageCount()) {
    throw Failure(CLEFTOR_BAD_RANGE, "\"" + source.path() + "\" has no pages " +
                                         pagesText(first, last) + ", it has " +
                                         std::to_string(source.pageCount()));
  }
  refuseSourceAsTarget(source, target);
  AtomicFile file(target);
  try {
    RangeBuilder(source, {first - 1, last - 1}, settings, file).write();
  } catch (const Failure&) {
    throw;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    throw Failure(CLEFTOR_DAMAGED, "Unable to copy pages " + pagesText(first, last) + " of \"" +
                                       source.path() + "\": " + error.what());
  }
  file.keep();
  source.forgetWarnings();
}

Session& Session::instance() {
  static Session session;
  return session;
}

void Session::open(const std::string& path, const std::string& password) {
  close();
  source_ = std::make_unique<Source>(path, password);
}

void Session::split(const std::string& target, int32_t first, int32_t last, int32_t totalPages) {
  if (!source_) {
    throw Failure(CLEFTOR_NOT_OPEN, "No file is open to be split");
  }
  if (totalPages != source_->pageCount()) {
    throw Failure(CLEFTOR_BAD_RANGE, "\"" + source_->path() + "\" has " +
                                         std::to_string(source_->pageCount()) + " pages and not " +
                                         std::to_string(totalPages));
  }
  writeRange(*source_, target, first, last, settings_);
  lastWrittenPage_ = last;
}

void Session::splitAlone(const std::string& path, const std::string& password,
                         const std::string& target, int32_t first, int32_t last) {
  Source source(path, password);
  writeRange(source, target, first, last, settings_);
  lastWrittenPage_ = last;
}

void Session::setRotation(int32_t degrees) {
  // Pages turn by quarters only; anything else goes to the quarter below.
  settings_.rotation = degrees % 360 - degrees % 90;
}

void Session::noteError(int32_t code, const std::string& text) {
  errorCode_ = code;
  errorText_ = toUtf16(text);
}

void Session::clearError() {
  errorCode_ = CLEFTOR_OK;
  errorText_.clear();
}

} // namespace cleftor
