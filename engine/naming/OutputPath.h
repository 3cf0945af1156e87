// OutputPath: a full path put together from what the operator typed and what was found.
#pragma once

#include "engine/naming/FileSystemRules.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace folivex {

/// Folder, prefix, body, postfix and ".pdf" as one path that this file system and a shared Windows
/// folder take. A prefix or postfix may hold separators and so name folders below the output
/// folder.
///
/// A folder named in so many words by the operator is taken at its word, ".." included. Any other
/// name is a single harmless one: no "." or "..", no device, nothing that Windows would cut off.
/// Names and the path keep within the file system's limits, with room left for "_partNNN".
class OutputPath {
public:
  /// Which part of too long a name goes first.
  enum class Cut {
    BodyFirst,
    BodyLast ///< a number tells outputs apart only when it is whole
  };

  struct Body {
    QString text; ///< without separators
    Cut cut = Cut::BodyFirst;
  };

  OutputPath(const QString& folder, const FileSystemRules& rules)
      : m_folder(folder), m_rules(rules) {}

  /// `typed` as the operator wrote it, `expanded` with its tokens replaced.
  void setPrefix(const QString& typed, const QString& expanded);
  void setPostfix(const QString& typed, const QString& expanded);

  /// The folder of this name in the output folder; empty when the name is.
  QString folder(const QString& name) const;

  /// The path. A name of which nothing is left is "unnamed.pdf".
  QString text(const Body& body) const;

private:
  /// A folder's name, or the part of an affix that touches the body.
  struct Piece {
    QString text;
    bool isTyped = false;
  };
  using Pieces = std::vector<Piece>;

  static Pieces piecesOf(const QString& typed, const QString& expanded);
  QString harmless(const QString& name) const;
  QString fileName(const Piece& prefix, const Body& body, const Piece& postfix,
                   qsizetype limit) const;

  QString m_folder;
  FileSystemRules m_rules;
  Pieces m_prefix = Pieces(1);
  Pieces m_postfix = Pieces(1);
};

} // namespace folivex
