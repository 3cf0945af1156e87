// FileDigest: what a file's bytes are, so that the same name with other bytes is noticed.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace folivex::platform {

/// Number and SHA-256 (FIPS 180-4) of a file's bytes.
struct FileDigest {
  qint64 size = -1;
  QByteArray sha256; ///< 32 bytes; empty when nothing is known

  bool isKnown() const { return size >= 0 && !sha256.isEmpty(); }
  bool operator==(const FileDigest&) const = default;

  /// The bytes of the ordinary file at `path` as they are now; not known when it cannot be read
  /// whole. `tick`, which may be empty, is called now and then: a large file takes a while.
  static FileDigest of(const QString& path, const std::function<void()>& tick = {});
  /// Of bytes that were read already.
  static FileDigest ofBytes(const QByteArray& bytes);

  /// "SIZE:HEX", for text files; not known from anything else.
  QString text() const;
  static FileDigest fromText(const QString& text);
};

} // namespace folivex::platform
