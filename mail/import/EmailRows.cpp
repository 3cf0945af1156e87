#include "mail/import/EmailRows.h"

#include "mail/EmailList.h"
#include "mail/MailAddress.h"
#include "mail/MailMessage.h"
#include "mail/import/EmailRowRules.h"

#include <algorithm>
#include <array>
#include <optional>

namespace folivex {

namespace {

std::optional<EmailColumn> columnOf(const QString& cell) {
  const QString header = cell.simplified();
  for (int i = 0; i < emailColumnCount; i++) {
    const auto column = static_cast<EmailColumn>(i);
    if (header.compare(headerOf(column), Qt::CaseInsensitive) == 0) {
      return column;
    }
  }
  return std::nullopt;
}

/// Where each column of the list stands in the sheet.
class ColumnPlaces {
public:
  void read(const QStringList& headers, int row, std::vector<ImportFinding>& findings) {
    for (qsizetype i = 0; i < headers.size(); i++) {
      const std::optional<EmailColumn> column = columnOf(headers[i]);
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

  QString cell(const QStringList& row, EmailColumn column) const {
    return row.value(m_places.at(static_cast<std::size_t>(column)));
  }

private:
  qsizetype& placeOf(EmailColumn column) { return m_places.at(static_cast<std::size_t>(column)); }

  std::array<qsizetype, emailColumnCount> m_places = {-1, -1, -1, -1, -1, -1, -1, -1, -1};
};

/// Reads one row after the other into an import.
class RowReader {
public:
  RowReader(const ColumnPlaces& places, QString folder, EmailImport& import)
      : m_places(places), m_folder(std::move(folder)), m_import(import) {}

  void read(const QStringList& cells, int row) {
    m_row = row;
    EmailEntry entry;
    const QString pagesProblem = readPages(m_places.cell(cells, EmailColumn::ExtractPageStart),
                                           m_places.cell(cells, EmailColumn::ExtractPageEnd),
                                           entry.extractPageStart, entry.extractPageEnd);
    if (!pagesProblem.isEmpty()) {
      tell(pagesProblem + QStringLiteral("; the row is left out"));
      return;
    }
    for (int i = 0; i < emailColumnCount; i++) {
      const auto column = static_cast<EmailColumn>(i);
      if (QString EmailEntry::*const text = factsOf(column).text) {
        entry.*text =
            column == EmailColumn::Body ? m_places.cell(cells, column) : oneLine(cells, column);
      }
    }
    tell(entry.address.isEmpty() ? QStringLiteral("there is no address, nothing will be sent")
                                 : remarkOn(entry.address));
    entry.file = fullPath(entry.file, m_folder);
    tell(fileProblem(entry.file));
    for (const QString& copy : copyAddresses(entry.cc)) {
      const QString remark = remarkOn(copy);
      tell(remark.isEmpty() ? QString() : QStringLiteral("CC: ") + remark);
    }
    m_import.entries.push_back(entry);
  }

private:
  /// Everything but the body ends up in a line of its own somewhere: in a list, in a mail's head.
  QString oneLine(const QStringList& cells, EmailColumn column) const {
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
  return std::ranges::any_of(
      cells, [](const QString& cell) { return columnOf(cell) == EmailColumn::Email; });
}

} // namespace

QString ImportFinding::text() const {
  return row > 0 ? QStringLiteral("Row %1: %2").arg(row).arg(what) : what;
}

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
