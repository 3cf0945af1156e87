#include "mail/import/EmailRows.h"

#include "mail/MailAddress.h"
#include "mail/MailMessage.h"
#include "mail/import/EmailRowRules.h"

#include <algorithm>
#include <array>
#include <optional>

namespace folivex {

namespace {

enum class Column {
  Address,
  File,
  PageStart,
  PageEnd,
  Body,
  Cc,
  InvoiceNumber,
  SeparateInvoices,
  Subject
};

constexpr std::array columnHeaders = {
    u"Email",  u"File", u"Extract Page Start",        u"Extract Page End",
    u"Body",   u"CC",   u"Invoice Number in Subject", u"Separate Invoices",
    u"Subject"};

QString headerOf(Column column) {
  return QString::fromUtf16(columnHeaders.at(static_cast<std::size_t>(column)));
}

std::optional<Column> columnOf(const QString& cell) {
  const QString header = cell.simplified();
  for (std::size_t i = 0; i < columnHeaders.size(); i++) {
    if (header.compare(QStringView(columnHeaders.at(i)), Qt::CaseInsensitive) == 0) {
      return static_cast<Column>(i);
    }
  }
  return std::nullopt;
}

/// Where each column of the list stands in the sheet.
class ColumnPlaces {
public:
  void read(const QStringList& headers, int row, std::vector<ImportFinding>& findings) {
    for (qsizetype i = 0; i < headers.size(); i++) {
      const std::optional<Column> column = columnOf(headers[i]);
      if (column && placeOf(*column) < 0) {
        placeOf(*column) = i;
      } else if (column) {
        findings.push_back({row, QStringLiteral("\"%1\" stands twice; only the first such column "
                                                "is read")
                                     .arg(headerOf(*column))});
      } else if (!headers[i].trimmed().isEmpty()) {
        findings.push_back({row, QStringLiteral("the column \"%1\" is not known and is not read")
                                     .arg(headers[i].simplified())});
      }
    }
  }

  QString cell(const QStringList& row, Column column) const {
    return row.value(m_places.at(static_cast<std::size_t>(column)));
  }

private:
  qsizetype& placeOf(Column column) { return m_places.at(static_cast<std::size_t>(column)); }

  std::array<qsizetype, columnHeaders.size()> m_places = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
};

/// Reads one row after the other into an import.
class RowReader {
public:
  RowReader(const ColumnPlaces& places, QString folder, EmailImport& import)
      : m_places(places), m_folder(std::move(folder)), m_import(import) {}

  void read(const QStringList& cells, int row) {
    m_row = row;
    EmailEntry entry;
    const QString pagesProblem =
        readPages(m_places.cell(cells, Column::PageStart), m_places.cell(cells, Column::PageEnd),
                  entry.extractPageStart, entry.extractPageEnd);
    if (!pagesProblem.isEmpty()) {
      tell(pagesProblem + QStringLiteral("; the row is left out"));
      return;
    }
    entry.address = oneLine(cells, Column::Address);
    tell(entry.address.isEmpty() ? QStringLiteral("there is no address, nothing will be sent")
                                 : remarkOn(entry.address));
    entry.file = fullPath(oneLine(cells, Column::File), m_folder);
    tell(fileProblem(entry.file));
    entry.cc = oneLine(cells, Column::Cc);
    for (const QString& copy : copyAddresses(entry.cc)) {
      const QString remark = remarkOn(copy);
      tell(remark.isEmpty() ? QString() : QStringLiteral("CC: ") + remark);
    }
    entry.body = m_places.cell(cells, Column::Body);
    entry.invoiceNumberInSubject = oneLine(cells, Column::InvoiceNumber);
    entry.separateInvoices = oneLine(cells, Column::SeparateInvoices);
    entry.subject = oneLine(cells, Column::Subject);
    m_import.entries.push_back(entry);
  }

private:
  /// Everything but the body ends up in a line of its own somewhere: in a list, in a mail's head.
  QString oneLine(const QStringList& cells, Column column) const {
    QString text = m_places.cell(cells, column);
    std::ranges::replace_if(
        text, [](QChar c) { return c.category() == QChar::Other_Control; }, QChar(u' '));
    return text.trimmed();
  }

  static QString remarkOn(const QString& address) {
    const QString problem = addressProblem(address);
    return problem.isEmpty()
               ? QString()
               : QStringLiteral("\"%1\" is no e-mail address: it %2").arg(address, problem);
  }

  void tell(const QString& what) {
    if (!what.isEmpty()) {
      m_import.findings.push_back({m_row, what});
    }
  }

  const ColumnPlaces& m_places;
  QString m_folder;
  EmailImport& m_import;
  int m_row = 0;
};

bool isBlank(const QStringList& cells) {
  return std::ranges::all_of(cells, [](const QString& cell) { return cell.trimmed().isEmpty(); });
}

bool holdsEmail(const QStringList& cells) {
  return std::ranges::any_of(cells,
                             [](const QString& cell) { return columnOf(cell) == Column::Address; });
}

} // namespace

EmailImport emailsOfRows(const std::vector<QStringList>& rows, const QString& folder) {
  EmailImport import;
  const auto headers = std::ranges::find_if(rows, holdsEmail);
  if (headers == rows.end()) {
    import.problem = QStringLiteral("the first sheet has no column \"Email\"");
    return import;
  }
  const auto rowOf = [&rows](auto at) { return static_cast<int>(at - rows.begin()) + 1; };
  ColumnPlaces places;
  places.read(*headers, rowOf(headers), import.findings);
  RowReader reader(places, folder, import);
  for (auto row = headers + 1; row != rows.end(); ++row) {
    if (!isBlank(*row)) {
      reader.read(*row, rowOf(row));
    }
  }
  if (import.entries.empty()) {
    import.findings.push_back({0, QStringLiteral("the sheet holds no e-mail to send")});
  }
  import.done = true;
  return import;
}

} // namespace folivex
