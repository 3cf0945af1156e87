// OcrCopy: the OCR'd copy of one source, and whose it is.
#pragma once

#include "platform/FileDigest.h"
#include "platform/FileLocks.h"

#include <QFile>

#include <functional>

namespace folivex {

/// A copy has a file ".source" beside it that tells the source and, once it is made, the copy by
/// their bytes. The lock of that file is held while a copy is made or read, so that no other run
/// puts the copy of another source into its place meanwhile.
class OcrCopy {
public:
  /// `tick` is called now and then while files are read.
  OcrCopy(const QString& source, const QString& copyPath, std::function<void()> tick);
  /// Removes a copy that was not kept.
  ~OcrCopy();
  OcrCopy(const OcrCopy&) = delete;
  OcrCopy& operator=(const OcrCopy&) = delete;

  /// Whether the copy that is there is this source's; then it is path(). While another run makes
  /// it, `wait` is called, which comes back after a moment: true to go on waiting.
  bool isThere(const std::function<bool()>& wait);

  /// The path that a new copy is to be made at; nothing is there.
  QString placeToMake();
  /// Takes what was made there: in the place of copies, if no other run is using it. False when
  /// nothing is there.
  bool takeMade();

  /// Of the copy; it stays as it is as long as this object lives.
  const QString& path() const { return m_path; }

private:
  platform::LockResult lock();
  QByteArray written();
  bool isWhole(const QByteArray& told, const QString& copy) const;
  bool takeBytesOf(const QByteArray& told);
  bool keep();

  QString m_source;
  QString m_copyPath;
  std::function<void()> m_tick;
  QByteArray m_origin; ///< what the file ".source" must begin with; empty for an unreadable source
  QFile m_record;      ///< open and locked, or closed
  QFile m_own;         ///< a copy that is not kept
  QString m_made;      ///< its path, or the one that it is to be made at
  QString m_path;
};

} // namespace folivex
