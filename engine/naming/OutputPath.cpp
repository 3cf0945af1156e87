#include "engine/naming/OutputPath.h"

#include "platform/Paths.h"

#include <algorithm>

namespace folivex {

namespace {

/// "_part" and five digits, or the ".tmp" of a file that is going to be appended.
constexpr qsizetype roomForPart = 10;
/// What making a name harmless may add.
constexpr qsizetype roomForMark = 1;
/// A folder so deep that less is left fails when the file is written.
constexpr qsizetype shortestName = 8;

const QString& ending() {
  static const QString text = QStringLiteral(".pdf");
  return text;
}

bool isBlank(const QString& name) {
  return std::all_of(name.begin(), name.end(), [](QChar c) { return c.isSpace(); });
}

std::vector<QString> split(const QString& text) {
  std::vector<QString> parts(1);
  for (const QChar character : text) {
    if (platform::isSeparator(character)) {
      parts.emplace_back();
    } else {
      parts.back() += character;
    }
  }
  return parts;
}

/// Many file managers do not show a name that begins with a dot, and nobody would find the
/// document.
QString seen(const QString& name) {
  return name.startsWith(QLatin1Char('.')) ? QLatin1Char('_') + name : name;
}

} // namespace

OutputPath::Pieces OutputPath::piecesOf(const QString& typed, const QString& expanded) {
  const std::vector<QString> before = split(typed);
  const std::vector<QString> after = split(expanded);
  Pieces pieces;
  for (std::size_t i = 0; i < after.size(); ++i) {
    // Equal text at the same place means that no token put anything in.
    pieces.push_back({after[i], before.size() == after.size() && before[i] == after[i]});
  }
  return pieces;
}

void OutputPath::setPrefix(const QString& typed, const QString& expanded) {
  m_prefix = piecesOf(typed, expanded);
}

void OutputPath::setPostfix(const QString& typed, const QString& expanded) {
  m_postfix = piecesOf(typed, expanded);
}

QString OutputPath::harmless(const QString& name) const {
  return seen(platform::safePathComponent(m_rules.fitted(name, m_rules.nameLimit - roomForMark)));
}

QString OutputPath::folder(const QString& name) const {
  return name.isEmpty() ? QString() : platform::joinPath(m_folder, harmless(name));
}

QString OutputPath::text(const Body& body) const {
  QString path = m_folder;
  const auto enter = [&](const Piece& piece) {
    if (!piece.text.isEmpty()) {
      path = platform::joinPath(path, piece.isTyped ? m_rules.fitted(piece.text, m_rules.nameLimit)
                                                    : harmless(piece.text));
    }
  };
  std::for_each(m_prefix.begin(), m_prefix.end() - 1, enter);

  Piece before = m_prefix.back();
  Body middle = body;
  // A postfix with separators: the body names a folder, and the file's name is all postfix.
  for (auto piece = m_postfix.begin(); piece + 1 < m_postfix.end(); ++piece) {
    enter({before.text + middle.text + piece->text, false});
    before = {};
    middle = {};
  }
  const qsizetype left = m_rules.pathLimit - m_rules.length(path) - 1;
  return platform::joinPath(
      path, fileName(before, middle, m_postfix.back(), std::min(m_rules.nameLimit, left)));
}

QString OutputPath::fileName(const Piece& prefix, const Body& body, const Piece& postfix,
                             qsizetype limit) const {
  QString before = prefix.text;
  QString after = postfix.text;
  QString middle = body.text;
  qsizetype excess = m_rules.length(before) + m_rules.length(middle) + m_rules.length(after) -
                     std::max(limit - ending().size() - roomForPart - roomForMark, shortestName);
  const auto shorten = [&](QString& part) {
    if (excess > 0) {
      const qsizetype length = m_rules.length(part);
      part = m_rules.fitted(part, std::max<qsizetype>(length - excess, 0));
      excess -= length - m_rules.length(part);
    }
  };
  if (body.cut == Cut::BodyFirst) {
    shorten(middle);
  }
  shorten(before);
  shorten(after);
  shorten(middle);

  QString name = before + middle + after;
  if (isBlank(name)) {
    name = QStringLiteral("unnamed");
  }
  const bool startIsTyped =
      !before.isEmpty() ? prefix.isTyped : middle.isEmpty() && postfix.isTyped;
  if (!startIsTyped) {
    name = seen(name);
  }
  return platform::safePathComponent(name + ending());
}

} // namespace folivex
