// FileSystemRules: what the file system of the outputs accepts as a name.
#pragma once

#include <QString>
#include <Qt>

namespace folivex {

struct FileSystemRules {
  enum class Unit { Utf8Bytes, Utf16Units };

  Unit unit = Unit::Utf8Bytes; ///< what the two limits count
  qsizetype nameLimit = 255;   ///< of one file or folder name
  qsizetype pathLimit = 4095;  ///< of a whole path
  /// Insensitive: names that differ only in case are one file.
  Qt::CaseSensitivity caseSensitivity = Qt::CaseSensitive;

  /// Rules of the system this program runs on.
  static FileSystemRules ofThisSystem();

  /// Length of a text as the limits count it.
  qsizetype length(QStringView text) const;

  /// Form of a path under which equal files have equal texts.
  QString comparable(const QString& path) const;

  /// The longest beginning of a text that is within `limit` and ends between two characters, not
  /// between a letter and its accents.
  QString fitted(const QString& text, qsizetype limit) const;
};

} // namespace folivex
