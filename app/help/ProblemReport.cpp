#include "app/help/ProblemReport.h"

#include "engine/setup/FileNameMethod.h"
#include "engine/setup/SetupFields.h"
#include "engine/setup/SplitMethod.h"

#include <QLocale>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

namespace folivex {

namespace {

enum class Kind {
  Open,   ///< always told
  Name,   ///< told when the person agrees
  Secret, ///< never told
};

bool isAmong(const SetupField& field, const QString& keys) {
  return keys.split(u' ').contains(field.key);
}

/// Kinds of the text settings; numbers and boxes are open. What is not here is secret.
Kind kindOf(const SetupField& field) {
  if (!std::holds_alternative<QString SplitSetup::*>(field.member) ||
      isAmong(field, QStringLiteral("EXTRACT PAGEEXTRACT MATCHPOSH MATCHPOSV"))) {
    return Kind::Open;
  }
  return isAmong(field,
                 QStringLiteral("ADDBWORDS FILENAME FIRSTCHAROFWORD ANYCHAROFWORD FINDSTRING "
                                "PREFIXFILENAME POSTFIXFILENAME OUTPUTDIR EXTRACTUNTIL "
                                "EXTRACTFILENAME REPORTOPTIONSOUTPUTFOLDER REPORTUSEFILELIST "
                                "REPORTREMOVECHARS CONFIGEXTERNALCOMMAND EMAILLOGFILE "
                                "EMAILHORIZAFTERTEXT EMAILHORIZBEFORETEXT OTHERSETTINGSREMOVETEXT"))
             ? Kind::Name
             : Kind::Secret;
}

bool hasField(const SetupField& field) {
  return !std::holds_alternative<AutomationKey>(field.member) &&
         !std::holds_alternative<AddSpaceKey>(field.member);
}

/// A setup file may hold any text where the program knows a few.
bool isHarmless(const QString& value) {
  static const QRegularExpression position(QStringLiteral("\\A[-|0-9]{0,40}\\z"));
  return fileNameMethodTexts().contains(value) || splitMethodTexts().contains(value) ||
         value == bookmarkFileNameMethodText() || position.match(value).hasMatch();
}

QString told(const SetupField& field, const SplitSetup& setup, PrivateNames names) {
  QString value = valueOf(field, setup);
  if (value.isEmpty()) {
    return QStringLiteral("(empty)");
  }
  const Kind kind = kindOf(field);
  const bool isText = std::holds_alternative<QString SplitSetup::*>(field.member);
  if (kind == Kind::Open && (!isText || isHarmless(value))) {
    return value;
  }
  return kind == Kind::Name && names == PrivateNames::Included ? u'"' + value + u'"'
                                                               : QStringLiteral("(given)");
}

/// Shorter ones tell nothing, and would tear every message to pieces.
constexpr qsizetype shortestHidden = 3;

/// Values that a message may quote, the longest first: one may be part of another.
QStringList hiddenValues(const SplitSetup& setup, PrivateNames names) {
  QStringList values;
  for (const SetupField& field : setupFields()) {
    const bool isHidden = kindOf(field) == Kind::Secret ||
                          (kindOf(field) == Kind::Name && names == PrivateNames::LeftOut);
    if (isHidden) {
      values += valueOf(field, setup).split(QRegularExpression(QStringLiteral("[\\r\\n]+")));
    }
  }
  // "tls:host:587" is told by its host.
  values += setup.emailSmtp.split(u':');
  values += setup.emailInvoiceCc.split(QRegularExpression(QStringLiteral("[,;\\s]+")));
  values.removeIf([](const QString& value) { return value.size() < shortestHidden; });
  std::sort(values.begin(), values.end(),
            [](const QString& a, const QString& b) { return a.size() > b.size(); });
  return values;
}

QString withoutValues(QString message, const QStringList& values) {
  for (const QString& value : values) {
    message.replace(value, QStringLiteral("(hidden)"), Qt::CaseInsensitive);
  }
  return message;
}

QString withoutAddresses(QString message) {
  static const QRegularExpression address(QStringLiteral("[^\\s<>\"',;:()]+@[^\\s<>\"',;:()]+"));
  return message.replace(address, QStringLiteral("(address)"));
}

/// Better too much is taken away than a name told: everything that may be a path, up to the colon
/// that messages put behind one, and everything between quotes, which is text of a page.
QString withoutNames(QString message) {
  static const QRegularExpression quoted(QStringLiteral("\"[^\"]*\""));
  static const QRegularExpression file(
      QStringLiteral("(?:[A-Za-z]:[\\\\/]|\\\\\\\\|/|~/)[^\\n]*?(?=: |$)"),
      QRegularExpression::MultilineOption);
  static const QRegularExpression nameOnly(
      QStringLiteral("[^:\\n]*\\.(?:pdf|fxs|lst|txt|csv|xlsx?|ods|ini|tmp)\\b"),
      QRegularExpression::CaseInsensitiveOption);
  message.replace(quoted, QStringLiteral("\"...\""));
  message.replace(file, QStringLiteral("(file)"));
  return message.replace(nameOnly, QStringLiteral(" (file)")).trimmed();
}

QString memoryText(qint64 bytes) {
  return bytes > 0 ? QLocale::c().formattedDataSize(bytes, 1) : QStringLiteral("not known");
}

} // namespace

ProblemReport::ProblemReport(SystemFacts facts, SplitSetup setup, QStringList messages)
    : m_facts(std::move(facts)), m_setup(std::move(setup)), m_messages(std::move(messages)) {}

QString ProblemReport::subject() const {
  return QStringLiteral("Folivex %1: problem report").arg(m_facts.programVersion);
}

QString ProblemReport::text(PrivateNames names) const {
  return systemText() + u'\n' + messagesText(names) + u'\n' + setupText(names);
}

QString ProblemReport::systemText() const {
  QString text = QStringLiteral("Program:       Folivex %1\n").arg(m_facts.programVersion);
  for (const LibraryVersion& library : m_facts.libraries) {
    text += QStringLiteral("Library:       %1 %2\n").arg(library.name, library.version);
  }
  text += QStringLiteral("System:        %1\n").arg(m_facts.system);
  text += QStringLiteral("Processors:    %1\n").arg(m_facts.processors);
  text += QStringLiteral("Memory:        %1\n").arg(memoryText(m_facts.memoryBytes));
  return text + QStringLiteral("Screen scale:  %1 %\n").arg(qRound(m_facts.screenScale * 100));
}

QString ProblemReport::messagesText(PrivateNames names) const {
  const QStringList hidden = hiddenValues(m_setup, names);
  QString lines;
  for (const QString& message : m_messages) {
    QString line = withoutAddresses(message);
    if (names == PrivateNames::LeftOut) {
      line = withoutNames(line);
    }
    line = withoutValues(line, hidden).simplified();
    lines += line.isEmpty() ? QString() : QStringLiteral("  ") + line + u'\n';
  }
  return QStringLiteral("Last messages:\n") +
         (lines.isEmpty() ? QStringLiteral("  (none)\n") : lines);
}

QString ProblemReport::setupText(PrivateNames names) const {
  const QString text = QStringLiteral("Settings:\n");
  QStringList lines; // a key that the format holds twice is told once
  for (const SetupField& field : setupFields()) {
    const QString line = QStringLiteral("  %1: %2\n").arg(field.key, told(field, m_setup, names));
    if (hasField(field) && !lines.contains(line)) {
      lines += line;
    }
  }
  // With names included, an address may stand in one of them.
  return withoutAddresses(text + lines.join(QString()));
}

QString mailAddress(const QString& to, const QString& subject, const QString& body) {
  const auto encoded = [](const QString& text, const char* kept) {
    return QString::fromLatin1(QUrl::toPercentEncoding(text, kept));
  };
  QString lines = body;
  lines.replace(u'\n', QStringLiteral("\r\n"));
  return QStringLiteral("mailto:") + encoded(to.trimmed(), "@") + QStringLiteral("?subject=") +
         encoded(subject, "") + QStringLiteral("&body=") + encoded(lines, "");
}

} // namespace folivex
