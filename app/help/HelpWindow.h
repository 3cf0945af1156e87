// HelpWindow: the pages that explain the program, beside its other windows.
#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;
class QTextBrowser;
class QTreeWidget;
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
  void applyLook();
  void standOverModalWindow();
  void goTo(const QString& place);
  void follow(const QUrl& link);
  void arrived(const QUrl& address);
  void find();
  void highlight();
  bool isSearching() const;

  Dialogs& m_dialogs;
  QLineEdit* m_sought = nullptr;
  QStackedWidget* m_side = nullptr;
  QTreeWidget* m_contents = nullptr;
  QListWidget* m_hits = nullptr;
  QLabel* m_hitCount = nullptr;
  QTextBrowser* m_page = nullptr;
};

} // namespace folivex
