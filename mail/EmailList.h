// EmailList: the mails that wait to be sent, as the person reviews them.
#pragma once

#include "mail/EmailEntry.h"

#include <QString>

#include <array>
#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace folivex {

/// One output of a split run with what its pages say. Pages are those of the source, from 1.
struct AddressedOutput {
  QString file; ///< full path of the output
  int firstPage = 0;
  int lastPage = 0;
  QString matchedText;
  QString address; ///< empty when its pages have none
  QStringList furtherAddresses;
  platform::FileDigest identity = {}; ///< of the file as it was written
  bool addressesDiffer = false;       ///< it holds pages of several addresses
  bool holdsEarlierPages = false;     ///< it was there before the run, which added to it
};

/// Columns of the list, in their order.
enum class EmailColumn {
  Email,
  File,
  ExtractPageStart,
  ExtractPageEnd,
  Body,
  Cc,
  InvoiceNumberInSubject,
  SeparateInvoices,
  Subject
};

struct EmailColumnFacts {
  const char16_t* header;
  int width;                 ///< at first, in pixels
  QString EmailEntry::*text; ///< null for page numbers
};

/// By EmailColumn.
inline constexpr std::array<EmailColumnFacts, 9> emailColumns = {{
    {u"Email", 230, &EmailEntry::address},
    {u"File", 230, &EmailEntry::file},
    {u"Extract Page Start", 106, nullptr},
    {u"Extract Page End", 99, nullptr},
    {u"Body", 700, &EmailEntry::body},
    {u"CC", 230, &EmailEntry::cc},
    {u"Invoice Number in Subject", 160, &EmailEntry::invoiceNumberInSubject},
    {u"Separate Invoices", 160, &EmailEntry::separateInvoices},
    {u"Subject", 200, &EmailEntry::subject},
}};
inline constexpr int emailColumnCount = emailColumns.size();

inline const EmailColumnFacts& factsOf(EmailColumn column) {
  return emailColumns.at(static_cast<std::size_t>(column));
}
inline QString headerOf(EmailColumn column) {
  return QString::fromUtf16(factsOf(column).header);
}

/// One row: the entry, and its page numbers as they are shown and saved (a list file may hold a
/// text there that is no number and counts as 0).
struct EmailRow {
  EmailEntry entry;
  QString shownPageStart;
  QString shownPageEnd;

  static EmailRow of(const EmailEntry& entry);
  QString cell(EmailColumn column) const;

  bool operator==(const EmailRow&) const = default;
};

class EmailList {
public:
  /// The outputs that have an address, whole files, in their order. Returns those that have none:
  /// nothing is mailed for them, and the person should be told.
  std::vector<AddressedOutput> fill(std::span<const AddressedOutput> outputs);
  /// Entries of a spreadsheet or of any other source.
  void setEntries(const EmailEntries& entries, const QString& sourcePath);
  void setRows(std::vector<EmailRow> rows, const QString& sourcePath);
  void clear();

  std::size_t count() const { return m_rows.size(); }
  bool isEmpty() const { return m_rows.empty(); }
  const std::vector<EmailRow>& rows() const { return m_rows; }
  EmailEntries entries() const;

  /// Path of the file that the list came from; empty after a split run.
  QString sourcePath() const { return m_sourcePath; }
  /// Entries of a spreadsheet carry their own body and copy address.
  bool isFromSpreadsheet() const;

  /// Columns 4 to 7 are shown only when some entry has a body of its own.
  bool showsOwnTexts() const;
  /// Rows whose address is there.
  std::size_t addressedCount() const;

  /// Empty when the text was taken; else why it was not (no address, two of them, a control
  /// character). An empty text is taken: the entry is then not sent.
  QString setAddress(std::size_t row, const QString& text);

  /// The row is again what it was then.
  void putBack(std::size_t row, EmailRow before) { m_rows.at(row) = std::move(before); }

  /// Looks whether the file of the row is still the one that its identity tells; true when that is
  /// another answer than before.
  bool lookAtFile(std::size_t row);
  /// "Accept as it is now": the file is to be sent with the bytes that it holds now. False when it
  /// cannot be read.
  bool acceptFile(std::size_t row);
  /// Somebody has been asked about what doubtAbout() tells of the row, and wants it sent.
  void acceptDoubts(std::size_t row);
  /// Rows with an address for which `concerns` is true.
  std::size_t countOf(const std::function<bool(const EmailEntry&)>& concerns) const;

  /// Keeps the rows given, in their order (those selected; those that failed, to send them again).
  void reduceTo(std::span<const std::size_t> rows);

private:
  std::vector<EmailRow> m_rows;
  QString m_sourcePath;
};

} // namespace folivex
