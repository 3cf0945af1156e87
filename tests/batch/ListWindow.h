// ListWindow: the batch list's dialog, shown.
#pragma once

#include "batch/BatchTable.h"
#include "batch/CBatchList.h"
#include "tests/batch/BatchBench.h"
#include "tests/support/WindowBench.h"

#include <QAction>
#include <QLabel>

namespace folivex::testing {

class ListWindow : public BatchBench {
protected:
  ListWindow() {
    m_list.show();
    m_list.activateWindow();
    EXPECT_TRUE(waitUntil([this] { return m_list.isActiveWindow(); }));
    table()->setFocus();
  }

  BatchTable* table() { return static_cast<BatchTable*>(control<QTableView>(&m_list, "list")); }
  void choose(const char* action) { control<QAction>(&m_list, action)->trigger(); }
  QString label(const char* name) { return control<QLabel>(&m_list, name)->text(); }

  /// As the view shows them: "Yes|a.pdf|Ready.", and what came of it behind that
  QStringList shown() {
    QStringList rows;
    const QAbstractItemModel* model = table()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < model->columnCount(); ++column) {
        cells += model->index(row, column).data().toString();
      }
      cells.removeAll(QString());
      rows += cells.join('|');
    }
    return rows;
  }
  QString order() { return lettersOf(m_list.rows()); }

  void fill(const QString& letters) {
    std::vector<BatchEntry> entries;
    for (const QChar letter : letters) {
      entries.push_back(entry("Yes", letter));
    }
    m_list.rows().append(std::move(entries));
  }

  QPoint placeOf(int row) { return table()->visualRect(table()->model()->index(row, 1)).center(); }
  void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(table()->viewport(), Qt::LeftButton, modifiers, placeOf(row));
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(table(), key, modifiers);
  }

  bool drop(const QStringList& paths) { return dropFiles(&m_list, paths); }

  ScriptedDialogs m_dialogs;
  CBatchList m_list{m_dialogs};
};

} // namespace folivex::testing
