// CBatchList: the dialog in which the list of a batch is prepared.
#pragma once

#include "batch/BatchCommands.h"
#include "batch/BatchEntries.h"
#include "batch/BatchModel.h"
#include "widgets/ListDialog.h"

#include <functional>

class QPushButton;

namespace folivex {

class BatchTable;
struct FileRequest;

/// Modeless. Closing it in any way saves the rows to the list file of the temporary folder, hides
/// it and keeps the rows.
class CBatchList : public ListDialog {
public:
  /// `dialogs` must outlive this.
  explicit CBatchList(Dialogs& dialogs, QWidget* parent = nullptr);
  ~CBatchList() override;

  /// The list for a batch run; what the run says about its rows is seen at once.
  BatchEntries& rows() { return m_rows; }

  /// While a run works through the list, no row can be added, changed, moved or taken away here.
  void setRunning(bool running);
  bool isRunning() const { return m_state == State::Running; }

  /// The person wants the list to be processed. Without it the button is not to be used.
  std::function<void()> onProcessList;

  void done(int result) override; ///< closing in any way ends up here

protected:
  void showEvent(QShowEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

private:
  enum class State { Editable, Scanning, Running };

  void buildMenus();
  void connectTable();
  void setState(State state);
  void updateControls();
  void showContextMenu(const QPoint& place);

  void addFiles();
  void scanForFiles();
  void loadList();
  void appendList();
  void saveList();
  void saveListAs();
  void closeList();
  void deleteSelected();
  void undo();
  void moveUp();
  void moveDown();
  void toggleSelected();
  void clearAll();
  void processList();

  FileRequest listRequest(const QString& title) const;
  void move(int (BatchEntries::*by)(int row));
  void addDropped(const QStringList& paths);
  ScanResult scan(const QString& folder);

  BatchEntries m_rows;
  BatchCommands m_commands;
  BatchModel m_model;
  State m_state = State::Editable;

  BatchTable* m_table = nullptr;
  QPushButton* m_process = nullptr;
  QPushButton* m_clearAll = nullptr;
  QAction* m_undo = nullptr;
  std::vector<QAction*> m_editing;         ///< only while the rows may be changed
  std::vector<QAction*> m_editingSelected; ///< and only with something selected
};

} // namespace folivex
