// HelpWindow: the pages that explain the program, beside its other windows.
#pragma once

#include "app/help/HelpSearch.h"

#include <QDialog>

#include <memory>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QSplitter;
class QStackedWidget;
class QTextBrowser;
class QTreeWidget;
class QTreeWidgetItem;
class QUrl;

namespace folivex {

class Dialogs;

/// Modeless. Escape in a search goes back to the contents, elsewhere it closes the window.
class HelpWindow : public QDialog {
public:
  /// `dialogs` must outlive the window: links that lead out of the help are opened through it.
  explicit HelpWindow(Dialogs& dialogs, QWidget* parent = nullptr);
  ~HelpWindow() override;

  /// Shows a topic (see helpTopics()) and brings the window to the front.
  void openTopic(const QString& topic);

  void reject() override;

protected:
  void changeEvent(QEvent* event) override;

private:
  void buildControls();
  QWidget* buildTools();
  QWidget* buildSide();
  void fillContents();
  void connectControls();
  void applyLook();
  void standOverModalWindow();
  void goTo(const QString& place);
  void follow(const QUrl& link);
  void arrived(const QUrl& address);
  void find();
  void highlight();
  void tellHits(qsizetype count);
  bool isSearching() const;

  Dialogs& m_dialogs;
  std::unique_ptr<HelpSearch>
      m_search; ///< made with the first search: reading all pages takes time

  QPushButton* m_back = nullptr;
  QPushButton* m_forward = nullptr;
  QPushButton* m_home = nullptr;
  QLineEdit* m_sought = nullptr;
  QSplitter* m_split = nullptr;
  QStackedWidget* m_side = nullptr;
  QTreeWidget* m_contents = nullptr;
  QListWidget* m_hits = nullptr;
  QLabel* m_hitCount = nullptr;
  QTextBrowser* m_page = nullptr;
};

} // namespace folivex
