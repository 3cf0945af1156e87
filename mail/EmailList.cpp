#include "mail/EmailList.h"

#include "mail/MailAddress.h"

#include <algorithm>
#include <utility>

namespace folivex {

EmailRow EmailRow::of(const EmailEntry& entry) {
  return {fitted(entry), QString::number(entry.extractPageStart),
          QString::number(entry.extractPageEnd)};
}

QString EmailRow::cell(EmailColumn column) const {
  if (QString EmailEntry::*const text = factsOf(column).text) {
    return entry.*text;
  }
  return column == EmailColumn::ExtractPageStart ? shownPageStart : shownPageEnd;
}

std::vector<AddressedOutput> EmailList::fill(std::span<const AddressedOutput> outputs) {
  clear();
  std::vector<AddressedOutput> without;
  for (const AddressedOutput& output : outputs) {
    if (output.address.isEmpty()) {
      without.push_back(output);
      continue;
    }
    EmailEntry entry;
    entry.file = output.file;
    entry.address = output.address;
    entry.furtherAddresses = output.furtherAddresses;
    entry.identity = output.identity;
    entry.isUnchecked = !output.identity.isKnown();
    entry.addressesDiffer = output.addressesDiffer;
    entry.holdsEarlierPages = output.holdsEarlierPages;
    m_rows.push_back(EmailRow::of(entry));
  }
  return without;
}

void EmailList::setEntries(const EmailEntries& entries, const QString& sourcePath) {
  std::vector<EmailRow> rows(entries.size());
  std::transform(entries.begin(), entries.end(), rows.begin(), EmailRow::of);
  setRows(std::move(rows), sourcePath);
}

void EmailList::setRows(std::vector<EmailRow> rows, const QString& sourcePath) {
  m_rows = std::move(rows);
  m_sourcePath = sourcePath;
}

void EmailList::clear() {
  m_rows.clear();
  m_sourcePath.clear();
}

EmailEntries EmailList::entries() const {
  EmailEntries entries(m_rows.size());
  std::transform(m_rows.begin(), m_rows.end(), entries.begin(),
                 [](const EmailRow& row) { return row.entry; });
  return entries;
}

bool EmailList::isFromSpreadsheet() const {
  return m_sourcePath.contains(QLatin1String(".xls"), Qt::CaseInsensitive);
}

bool EmailList::showsOwnTexts() const {
  return std::any_of(m_rows.begin(), m_rows.end(),
                     [](const EmailRow& row) { return !row.entry.body.isEmpty(); });
}

std::size_t EmailList::addressedCount() const {
  return countOf([](const EmailEntry&) { return true; });
}

std::size_t EmailList::countOf(const std::function<bool(const EmailEntry&)>& concerns) const {
  return static_cast<std::size_t>(std::ranges::count_if(m_rows, [&](const EmailRow& row) {
    return !row.entry.address.isEmpty() && concerns(row.entry);
  }));
}

bool EmailList::lookAtFile(std::size_t row) {
  EmailEntry& entry = m_rows.at(row).entry;
  bool isChanged = false;
  if (entry.identity.isKnown()) {
    const platform::FileDigest now = platform::FileDigest::of(entry.file);
    isChanged = now.isKnown() && now != entry.identity;
  }
  return std::exchange(entry.isChanged, isChanged) != isChanged;
}

bool EmailList::acceptFile(std::size_t row) {
  EmailEntry& entry = m_rows.at(row).entry;
  const platform::FileDigest now = platform::FileDigest::of(entry.file);
  if (now.isKnown()) {
    entry.identity = now;
    entry.isChanged = entry.isUnchecked = false;
  }
  return now.isKnown();
}

void EmailList::acceptDoubts(std::size_t row) {
  EmailEntry& entry = m_rows.at(row).entry;
  entry.isUnchecked = entry.addressesDiffer = entry.holdsEarlierPages = false;
}

QString EmailList::setAddress(std::size_t row, const QString& text) {
  const QString address = text.trimmed();
  if (!address.isEmpty()) {
    const QString problem = addressProblem(address);
    if (!problem.isEmpty()) {
      return QStringLiteral("The address %1.").arg(problem);
    }
  }
  m_rows.at(row).entry.address = address;
  return {};
}

void EmailList::reduceTo(std::span<const std::size_t> rows) {
  std::vector<EmailRow> kept;
  kept.reserve(rows.size());
  for (const std::size_t row : rows) {
    kept.push_back(m_rows.at(row));
  }
  m_rows = std::move(kept);
}

} // namespace folivex
