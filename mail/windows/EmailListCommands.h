// EmailListCommands: what the e-mail list does with files, and what it then says.
#pragma once

#include "mail/EmailList.h"
#include "widgets/CommandWords.h"

#include <QString>
#include <QStringList>

#include <cstddef>

namespace folivex {

struct EmailImport;
struct EmailListResult;

/// Knows the list file in use, and whether the list holds work that no file has. Shows and asks
/// nothing.
class EmailListCommands {
public:
  /// `list` must outlive this.
  explicit EmailListCommands(EmailList& list) : m_list(list) {}

  struct State {
    QString listPath;
    bool hasUnsavedWork = false;
  };
  const State& state() const { return m_state; }
  /// The list is again what it was then.
  void takeBack(const State& before) { m_state = before; }

  /// The file that save() writes: the one loaded or saved last; empty when there is none yet.
  const QString& listPath() const { return m_state.listPath; }
  /// Where choosers of list files begin.
  QString startPath() const;

  CommandWords load(const QString& path);
  CommandWords save();
  CommandWords saveAs(const QString& path);

  /// Takes the entries of a spreadsheet in place of the list. There is no list file then.
  CommandWords take(const EmailImport& import, const QString& spreadsheet);
  /// What a person should read before take(), a line each: the sheet's findings, and texts that are
  /// longer than the list holds.
  static QStringList findingsOf(const EmailImport& import);

  /// Empty, or why the text is no address; see EmailList::setAddress().
  QString changeAddress(std::size_t row, const QString& text);

  /// The list was changed by hand or imported, and not saved since.
  bool hasUnsavedWork() const { return m_state.hasUnsavedWork; }

  /// What a list file does not keep of this list; empty when it keeps all.
  QString lostInFile() const;

  /// "1,234 rows, 1,200 with an address, 3 selected"; `shown` are those that a filter leaves.
  static QString countText(const EmailList& list, std::size_t shown, std::size_t selected);

private:
  EmailList& m_list;
  State m_state;
};

} // namespace folivex
