#ifndef CLEFTOR_SESSION_H
#define CLEFTOR_SESSION_H

#include "RangeWriter.h"
#include "Source.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace cleftor {

/** The one state of the process: the open source, the settings and how the last range went. */
class Session {
public:
  static Session& instance();

  void open(const std::string& path, const std::string& password);
  void close();

  int32_t pageCount() const { return source_ ? source_->pageCount() : 0; }
  int32_t facts() const { return source_ ? source_->facts() : 0; }

  void split(RangeOrder order, int32_t totalPages);
  void splitAlone(const std::string& path, const std::string& password, RangeOrder order);

  /** Whether ranges are written on a thread of their own; switching it off waits for them. */
  void setWriteBehind(bool on);
  void drain();
  void drop();

  /** Takes a failed range off the list; its texts stay until the next one is taken. */
  const FailedRange* takeFailure();
  const std::u16string& failedTarget() const { return failedTarget_; }
  const std::u16string& failedReason() const { return failedReason_; }

  void keepBookmarks(bool keep) { settings_.keepBookmarks = keep; }
  void setRotation(int32_t degrees);

  int32_t lastWrittenPage() const;

  /** Result of the last range, 0 before the first. */
  int32_t status() const { return status_; }
  void setStatus(int32_t status) { status_ = status; }

  void noteError(int32_t code, const std::string& text);
  void clearError();
  int32_t errorCode() const { return errorCode_; }
  const std::u16string& errorText() const { return errorText_; }

private:
  std::shared_ptr<Source> source_;
  RangeSettings settings_;
  std::unique_ptr<RangeWriter> writer_;
  std::deque<FailedRange> leftFailures_; /**< of a writer that is gone */
  std::optional<FailedRange> failure_;
  std::u16string failedTarget_;
  std::u16string failedReason_;
  int32_t status_ = 0;
  int32_t lastWrittenPage_ = 0;
  int32_t errorCode_ = 0;
  std::u16string errorText_;
};

} // namespace cleftor

#endif
