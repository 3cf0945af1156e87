#ifndef CLEFTOR_SESSION_H
#define CLEFTOR_SESSION_H

#include "RangeBuilder.h"
#include "Source.h"

#include <cstdint>
#include <memory>
#include <string>

namespace cleftor {

/** Writes pages first..last (from 1, inclusive) of source to target, whole or not at all. */
void writeRange(Source& source, const std::string& target, int32_t first, int32_t last,
                const RangeSettings& settings);

/** The one state of the process: the open source, the settings and how the last range went. */
class Session {
public:
  static Session& instance();

  void open(const std::string& path, const std::string& password);
  void close() { source_.reset(); }

  int32_t pageCount() const { return source_ ? source_->pageCount() : 0; }
  int32_t facts() const { return source_ ? source_->facts() : 0; }

  void split(const std::string& target, int32_t first, int32_t last, int32_t totalPages);
  void splitAlone(const std::string& path, const std::string& password, const std::string& target,
                  int32_t first, int32_t last);

  void keepBookmarks(bool keep) { settings_.keepBookmarks = keep; }
  void setRotation(int32_t degrees);

  int32_t lastWrittenPage() const { return lastWrittenPage_; }

  /** Result of the last range, 0 before the first. */
  int32_t status() const { return status_; }
  void setStatus(int32_t status) { status_ = status; }

  void noteError(int32_t code, const std::string& text);
  void clearError();
  int32_t errorCode() const { return errorCode_; }
  const std::u16string& errorText() const { return errorText_; }

private:
  std::unique_ptr<Source> source_;
  RangeSettings settings_;
  int32_t status_ = 0;
  int32_t lastWrittenPage_ = 0;
  int32_t errorCode_ = 0;
  std::u16string errorText_;
};

} // namespace cleftor

#endif
