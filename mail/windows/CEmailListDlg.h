// CEmailListDlg: the mails that wait to be sent, for a person to look at first.
#pragma once

#include "mail/EmailList.h"
#include "mail/windows/EmailListCommands.h"
#include "mail/windows/EmailModel.h"
#include "widgets/ListDialog.h"

#include <QTimer>

#include <vector>

class QLineEdit;
class QPushButton;

namespace folivex {

class EmailTable;
struct EmailImport;

/// Run with exec(). After Accepted, toSend() tells what the person wants to be sent; after Rejected
/// nothing is to be sent.
class CEmailListDlg : public ListDialog {
public:
  /// `dialogs` must outlive this.
  CEmailListDlg(Dialogs& dialogs, QWidget* parent);
  ~CEmailListDlg() override;

  /// The outputs of a run; `withoutAddress` are those that had none and are not in the list.
  void showRun(EmailList list, std::vector<AddressedOutput> withoutAddress);
  /// That of the settings: shown where a row has none of its own.
  void setSubject(const QString& subject) { m_model.setSubject(subject); }
  /// As soon as the dialog is seen a list file is chosen, or the one given is loaded.
  void loadWhenShown(const QString& path = {}) {
    m_loadsWhenShown = true;
    m_pathToLoad = path;
  }
  /// Keeps these rows of the list (to send again what failed).
  void keepOnly(const std::vector<std::size_t>& rows, const QString& notice);

  const EmailList& list() const { return m_list; }
  /// The rows that are to be sent, in their order, and where they stand in list().
  const EmailList& toSend() const { return m_toSend; }
  const std::vector<std::size_t>& rowsToSend() const { return m_rowsToSend; }
  /// The list file or the sheet that the list is in; empty when it is in none.
  QString listFile() const;
  /// All of it is to be sent, and nobody is asked.
  void takeAll();

  void accept() override; ///< "OK - Send"
  void reject() override;

protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;

private:
  void buildMenu();
  QWidget* buildFilter();
  void replaceList(const std::function<void()>& change);
  void replaceRows(const std::function<CommandWords()>& change);
  void undo();
  void updateControls();
  void updateCounts();

  void loadList();
  void load(const QString& path);
  void saveList();
  void saveListAs();
  void importSheet();
  bool wantsSheet(const EmailImport& sheet, const QString& path);
  void editRow(std::size_t row);
  void showWithoutAddress();
  void showContextMenu(const QPoint& place);
  void viewFile(std::size_t row);
  void acceptFiles(std::vector<std::size_t> rows);
  std::vector<std::size_t> changedAmongSelected() const;
  void lookAtFiles();
  void lookAtNextFile();
  bool chooseWhatToSend();
  bool chooseRows();
  bool wantsDoubtful();
  void takeRows(std::vector<std::size_t> rows);

  EmailList m_list;
  EmailList m_toSend;
  std::vector<std::size_t> m_rowsToSend;
  EmailListCommands m_commands;
  EmailModel m_model;
  std::vector<AddressedOutput> m_withoutAddress;
  std::vector<std::function<void()>> m_undoSteps; ///< the newest at the end
  bool m_loadsWhenShown = false;
  QString m_pathToLoad;
  QTimer m_looking; ///< goes through the files while nothing else is to be done
  std::size_t m_nextToLookAt = 0;

  QAction* m_undo = nullptr;
  QLineEdit* m_filter = nullptr;
  EmailTable* m_table = nullptr;
  QPushButton* m_without = nullptr;
  QPushButton* m_view = nullptr;
  QPushButton* m_accept = nullptr;
  QPushButton* m_send = nullptr;
};

} // namespace folivex
