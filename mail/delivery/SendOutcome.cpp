#include "mail/delivery/SendOutcome.h"

#include "mail/MailHeader.h"

#include <QLocale>

namespace folivex {

namespace {

using Rows = std::vector<std::size_t>;

void addRows(QStringList& lines, const EmailList& list, const SendSummary& summary,
             const Rows& rows, const QString& heading) {
  if (rows.empty()) {
    return;
  }
  if (!lines.isEmpty()) {
    lines += QString();
  }
  lines += heading.arg(mailCount(rows.size()));
  for (const std::size_t row : rows) {
    const EmailEntry& entry = list.rows().at(row).entry;
    lines += withoutControlCharacters(
        QStringLiteral("    %1, %2: %3")
            .arg(entry.address, entry.file, summary.entries[row].errorText));
  }
}

} // namespace

QString countWithCommas(std::size_t count) {
  static const QLocale locale(QLocale::English, QLocale::UnitedStates);
  return locale.toString(static_cast<qulonglong>(count));
}

QString withoutAddressSentence(std::size_t without, std::size_t outputs) {
  return without == 0
             ? QString()
             : QStringLiteral("%1 of %2 outputs have no e-mail address on their pages: nothing is "
                              "sent for them.")
                   .arg(countWithCommas(without), countWithCommas(outputs));
}

QString mailCount(std::size_t count) {
  return count == 1 ? QStringLiteral("1 e-mail")
                    : QStringLiteral("%1 e-mails").arg(countWithCommas(count));
}

QStringList outcomeLines(const EmailList& list, const SendSummary& summary) {
  QStringList lines;
  for (const auto& [state, heading] :
       {std::pair(EntryState::Failed, "%1 failed:"),
        std::pair(EntryState::Temporary, "%1 failed for a reason that may pass:"),
        std::pair(EntryState::Held, "%1 not sent, because a person has to look at their files:"),
        std::pair(EntryState::Unknown, "%1 may have arrived; they are not sent again:")}) {
    addRows(lines, list, summary, summary.rowsIn({state}), QLatin1String(heading));
  }
  const std::size_t notReached = summary.rowsIn({EntryState::NotReached}).size();
  if (notReached > 0) {
    if (!lines.isEmpty()) {
      lines += QString();
    }
    lines +=
        QStringLiteral("%1 not tried: %2.").arg(mailCount(notReached), summary.whyNotReached());
  }
  return lines;
}

} // namespace folivex
