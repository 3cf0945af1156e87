#include "mail/delivery/MailRecords.h"

#include "engine/base/Operator.h"
#include "engine/report/RecordFields.h"

#include <utility>

namespace folivex {

namespace {

constexpr std::pair<EntryState, const char*> stateWords[] = {
    {EntryState::NotReached, "notTried"},
    {EntryState::NoAddress, "noAddress"},
    {EntryState::SentBefore, "sentBefore"},
    {EntryState::Sent, "sent"},
    {EntryState::Failed, "failed"},
    {EntryState::Temporary, "temporary"},
    {EntryState::Unknown, "mayHaveArrived"},
    {EntryState::Held, "held"},
    {EntryState::Shown, "shown"}};

} // namespace

void recordMails(const EmailList& list, const SendSummary& summary, Operator& person) {
  for (std::size_t row = 0; row < summary.entries.size() && person.wantsRecords(); ++row) {
    const EmailEntry& entry = list.rows().at(row).entry;
    const EntryResult& result = summary.entries[row];
    QJsonObject record = recordOf("mail");
    setPath(record, entry.file);
    record[QLatin1StringView("address")] = recordText(entry.address);
    record[QLatin1StringView("state")] =
        QLatin1StringView(stateWords[static_cast<std::size_t>(result.state)].second);
    if (!result.errorText.isEmpty()) {
      record[QLatin1StringView("text")] = recordText(result.errorText);
    }
    person.record(record);
  }
}

QJsonObject mailListRecord(const EmailList& list, const QString& path) {
  QJsonObject record = recordOf("mailList");
  setPath(record, path);
  record[QLatin1StringView("mails")] = static_cast<qint64>(list.count());
  return record;
}

QJsonObject mailsRecord(const SendSummary& summary, const QString& savedList) {
  QJsonObject mails;
  for (const auto& [state, word] : stateWords) {
    mails[QLatin1StringView(word)] = static_cast<qint64>(summary.rowsIn({state}).size());
  }
  if (!savedList.isEmpty()) {
    QJsonObject list;
    setPath(list, savedList);
    mails[QLatin1StringView("list")] = list;
  }
  return mails;
}

} // namespace folivex
