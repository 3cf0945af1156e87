#include "engine/setup/SetupFile.h"

#include "engine/base/Text.h"
#include "engine/setup/SetupFields.h"
#include "platform/TextFile.h"

#include <QBuffer>
#include <QRegularExpression>

#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace folivex {

namespace {

constexpr QLatin1StringView automationKey("AUTOMATION");

struct Escape {
  QLatin1StringView character;
  QLatin1StringView spelling;
};
constexpr std::array<Escape, 2> escapes = {
    {{QLatin1StringView("\r"), QLatin1StringView("(return)")},
     {QLatin1StringView("\n"), QLatin1StringView("(newline)")}}};

QString escaped(QString text) {
  for (const Escape& escape : escapes) {
    text.replace(escape.character, escape.spelling);
  }
  return text;
}

QString unescaped(QString text) {
  for (const Escape& escape : escapes) {
    text.replace(escape.spelling, escape.character);
  }
  return text;
}

/// A decimal number with a point, whatever the system's language writes.
double toReal(QStringView text) {
  static const QRegularExpression number(
      QStringLiteral("^[ \\t]*([+-]?(?:[0-9]+\\.?[0-9]*|\\.[0-9]+)(?:[eE][+-]?[0-9]+)?)"));
  const double value = number.match(text.toString()).captured(1).toDouble();
  return std::isfinite(value) ? value : std::copysign(std::numeric_limits<double>::max(), value);
}

bool isSeparator(QChar c) {
  return c == QLatin1Char(';') || c == QLatin1Char('\r') || c == QLatin1Char('\n');
}

/// Takes the next token off `rest`. A run of separators counts as one.
std::optional<QStringView> nextToken(QStringView& rest) {
  qsizetype start = 0;
  while (start < rest.size() && isSeparator(rest[start])) {
    ++start;
  }
  qsizetype end = start;
  while (end < rest.size() && !isSeparator(rest[end])) {
    ++end;
  }
  const QStringView token = rest.sliced(start, end - start);
  rest = rest.sliced(end);
  return token.isEmpty() ? std::nullopt : std::optional(token);
}

/// The value that follows. The blank that the writer puts behind every value is no part of it.
std::optional<QStringView> nextValue(QStringView& rest) {
  std::optional<QStringView> value = nextToken(rest);
  if (value && value->endsWith(QLatin1Char(' '))) {
    value->chop(1);
  }
  return value;
}

/// Puts one value into the field that it belongs to.
struct ValueTaker {
  const SetupField& field;
  QStringView value;
  SetupTarget& target;

  SplitSetup& record() const {
    return field.rule == FieldRule::WorkingOnly ? target.working : target.edited;
  }

  void operator()(bool SplitSetup::*member) const {
    const bool attended = !target.automation && !target.unattended;
    const bool allowed = field.rule != FieldRule::NotUnattended || attended;
    record().*member = allowed && leadingInteger(value) != 0;
  }
  void operator()(int SplitSetup::*member) const { record().*member = leadingInteger(value); }
  void operator()(double SplitSetup::*member) const { record().*member = toReal(value); }
  void operator()(QString SplitSetup::*member) const {
    QString text = value.toString();
    if (field.rule == FieldRule::Escaped) {
      text = unescaped(text);
    }
    record().*member = field.limit > 0 ? text.left(field.limit) : text;
  }
  void operator()(AutomationKey) const { target.automation = true; }
  void operator()(AddSpaceKey) const {
    if (leadingInteger(value) != 0) {
      target.edited.addBWords = QStringLiteral(" ");
    }
  }
};

/// A value as the file spells it.
struct ValueSpeller {
  const SetupField& field;
  const SplitSetup& setup;

  QString operator()(bool SplitSetup::*member) const { return QString::number(setup.*member); }
  QString operator()(int SplitSetup::*member) const { return QString::number(setup.*member); }
  QString operator()(double SplitSetup::*member) const {
    return QString::number(setup.*member, 'f', 6);
  }
  QString operator()(QString SplitSetup::*member) const {
    return field.rule == FieldRule::Escaped ? escaped(setup.*member) : setup.*member;
  }
  QString operator()(AutomationKey) const { return {}; }
  QString operator()(AddSpaceKey) const { return {}; }
};

} // namespace

QString setupFileText(const SplitSetup& setup) {
  QString text = QStringLiteral("UNICODEV4\r\n");
  for (const SetupField& field : setupFields()) {
    if (field.use != FieldUse::ReadOnly) {
      text += field.key + QLatin1Char(';') + std::visit(ValueSpeller{field, setup}, field.member) +
              QLatin1String(" \r\n");
    }
  }
  return text;
}

bool isAutomationLine(QStringView line) {
  const std::optional<QStringView> key = nextToken(line);
  return key && *key == automationKey;
}

int readSetupLine(QStringView line, SetupTarget& target) {
  QStringView rest = line;
  const std::optional<QStringView> key = nextToken(rest);
  if (!key) {
    return 0;
  }
  int taken = 0;
  QStringView name = *key;
  // Only the line's own key may stand without a token: what is chained to it must be spelled out.
  bool mayBeEmpty = !rest.isEmpty() || name == automationKey;
  for (const SetupField& field : setupFields()) {
    if (field.use == FieldUse::WriteOnly || name != field.key) {
      continue;
    }
    const std::optional<QStringView> value = nextValue(rest);
    if (!value && !mayBeEmpty) {
      break;
    }
    name = value.value_or(QStringView());
    std::visit(ValueTaker{field, name, target}, field.member);
    mayBeEmpty = false;
    target.keys.insert(field.key);
    ++taken;
  }
  return taken;
}

SetupText readSetupLines(platform::TextReader& reader, SetupTarget& target) {
  SetupText text;
  QString line;
  for (bool isFirst = true; reader.readLine(line); isFirst = false) {
    text.hasHeader = text.hasHeader || (isFirst && line.startsWith(QLatin1String("UNICODE")));
    text.isCutOff = text.hasHeader && !reader.isLineEnded();
    readSetupLine(line, target);
  }
  return text;
}

QStringList keysLostInFile(const SplitSetup& setup) {
  auto file = std::make_unique<QBuffer>();
  file->setData(setupFileText(setup).toUtf8());
  platform::TextReader reader;
  if (!file->open(QIODevice::ReadOnly) || !reader.open(std::move(file))) {
    return {};
  }
  SplitSetup back;
  bool automation = false;
  SetupTarget target{back, back, automation};
  readSetupLines(reader, target);

  QStringList keys;
  for (const SetupField& field : setupFields()) {
    const auto* const text = std::get_if<QString SplitSetup::*>(&field.member);
    if (text != nullptr && back.**text != setup.**text) {
      keys += field.key;
    }
  }
  return keys;
}

} // namespace folivex
