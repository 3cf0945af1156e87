// MainWindow: the setup of one split, and the command that runs it.
#pragma once

#include "app/Session.h"
#include "engine/job/Operator.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace folivex {

/// Shows the settings that a plain split needs and edits the store's copy of them. While a run is
/// on, the window lives on at every step of it and its Stop button ends it.
class MainWindow : public QDialog, public Operator {
public:
  MainWindow();
  ~MainWindow() override;

  /// Loads libraries and default setup, then does what the arguments ask for.
  void start(const CommandLine& line);

  void message(const QString& text) override;
  Answer question(const QString& text, const QString& caption) override;
  void note(const QString& text) override;
  void print(const QString& text) override;
  void progress(const Progress& progress) override;
  void handlePendingEvents() override;
  void openDocument(const QString& path) override;

  void reject() override; ///< Escape and the close box: the close command

private:
  void buildControls();
  void connectControls();
  void showSetup();
  void takeSetup();
  void chooseSource();
  void chooseOutputFolder();
  void loadSetup();
  void saveSetup();
  void process();
  void setRunning(bool running);

  Session m_session;
  bool m_running = false;
  QStringList m_notes;

  QLineEdit* m_fileName = nullptr;
  QLineEdit* m_findString = nullptr;
  QCheckBox* m_ignoreCase = nullptr;
  QComboBox* m_pageExtract = nullptr;
  QComboBox* m_extract = nullptr;
  QLineEdit* m_prefix = nullptr;
  QLineEdit* m_postfix = nullptr;
  QCheckBox* m_splitToSource = nullptr;
  QLineEdit* m_outputDir = nullptr;
  QCheckBox* m_overwrite = nullptr;
  QPushButton* m_process = nullptr;
  QPushButton* m_stop = nullptr;
  QPushButton* m_load = nullptr;
  QPushButton* m_save = nullptr;
  QPushButton* m_close = nullptr;
  QPushButton* m_browseSource = nullptr;
  QPushButton* m_browseOutput = nullptr;
  QProgressBar* m_progress = nullptr;
  QLabel* m_status = nullptr;
};

} // namespace folivex
