// RepairedCopies: what is read in the place of a file that only one of the two libraries can read.
#pragma once

#include "platform/FileStamp.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>

namespace folivex {

class CPDFTextDumpInit;
class CSplitPdfInit;

/// The library that reads a damaged file writes a sound copy of it, which both read then: words
/// and pages come from the same bytes. The copy holds all the pages that either finds, lies in the
/// user's temporary folder for the owner alone, and goes when nobody uses it any more. For any
/// thread.
class RepairedCopies {
public:
  /// Both must outlive this.
  RepairedCopies(CPDFTextDumpInit& text, CSplitPdfInit& split) : m_text(text), m_split(split) {}

  /// Path of the copy, which stays as long as what is returned. The last one asked for is kept for
  /// the next who asks for the very same file. Null when no copy can be made that the text library
  /// reads.
  std::shared_ptr<const QString> of(const QString& source, const QString& password);

private:
  struct Key {
    QString source;
    QString password;
    std::optional<platform::FileStamp> stamp;
    bool operator==(const Key&) const = default;
  };

  std::shared_ptr<const QString> make(const Key& key) const;
  int pagesOf(const QString& path, const QString& password) const;

  CPDFTextDumpInit& m_text;
  CSplitPdfInit& m_split;
  std::mutex m_mutex; ///< guards what follows, and keeps two from making the same copy
  Key m_last;
  std::shared_ptr<const QString> m_lastCopy;
};

} // namespace folivex
