#include "Session.h"

#include "Failure.h"
#include "Utf16.h"
#include "cleftor/cleftor.h"

#include <utility>

namespace cleftor {

Session& Session::instance() {
  static Session session;
  return session;
}

void Session::open(const std::string& path, const std::string& password) {
  close();
  source_ = std::make_shared<Source>(path, password);
}

void Session::close() {
  drain();
  if (!source_) {
    return;
  }
  source_->letGoOfFile();
  if (writer_) {
    writer_->release(std::move(source_));
  }
  source_.reset();
}

void Session::split(RangeOrder order, int32_t totalPages) {
  if (!source_) {
    throw Failure(CLEFTOR_NOT_OPEN, "No file is open to be split");
  }
  if (totalPages != source_->pageCount()) {
    throw Failure(CLEFTOR_BAD_RANGE, "\"" + source_->path() + "\" has " +
                                         std::to_string(source_->pageCount()) + " pages and not " +
                                         std::to_string(totalPages));
  }
  order.settings = settings_;
  checkOrder(*source_, order);
  if (writer_) {
    writer_->hand(source_, std::move(order));
    return;
  }
  writeRange(*source_, order);
  lastWrittenPage_ = order.last;
}

void Session::splitAlone(const std::string& path, const std::string& password, RangeOrder order) {
  // A range on its way to the same target must not come later than this one.
  drain();
  Source source(path, password);
  order.settings = settings_;
  checkOrder(source, order);
  writeRange(source, order);
  lastWrittenPage_ = order.last;
}

void Session::setWriteBehind(bool on) {
  if (on && !writer_) {
    writer_ = std::make_unique<RangeWriter>();
  } else if (!on && writer_) {
    writer_->drain();
    lastWrittenPage_ = lastWrittenPage();
    for (auto failure = writer_->takeFailure(); failure; failure = writer_->takeFailure()) {
      leftFailures_.push_back(std::move(*failure));
    }
    writer_.reset();
  }
}

void Session::drain() {
  if (writer_) {
    writer_->drain();
  }
}

void Session::drop() {
  if (writer_) {
    writer_->drop();
  }
}

const FailedRange* Session::takeFailure() {
  if (!leftFailures_.empty()) {
    failure_ = std::move(leftFailures_.front());
    leftFailures_.pop_front();
  } else {
    failure_ = writer_ ? writer_->takeFailure() : std::nullopt;
  }
  failedTarget_ = failure_ ? toUtf16(failure_->order.target) : std::u16string();
  failedReason_ = failure_ ? toUtf16(failure_->reason) : std::u16string();
  return failure_ ? &*failure_ : nullptr;
}

int32_t Session::lastWrittenPage() const {
  const int32_t behind = writer_ ? writer_->lastWrittenPage() : 0;
  return behind != 0 ? behind : lastWrittenPage_;
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
