#include "app/MainWindow.h"

#include "engine/naming/FileNameMethod.h"
#include "engine/plan/SplitMethod.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace folivex {

namespace {

QHBoxLayout* row(QWidget* wide, QWidget* narrow) {
  auto* layout = new QHBoxLayout;
  layout->addWidget(wide, 1);
  layout->addWidget(narrow);
  return layout;
}

/// A row of more than one control: the label belongs to the first.
void addRow(QFormLayout* form, const QString& label, QWidget* wide, QWidget* narrow) {
  auto* text = new QLabel(label);
  text->setBuddy(wide);
  form->addRow(text, row(wide, narrow));
}

template <typename Texts> void addTexts(QComboBox* box, const Texts& texts) {
  for (const QString& text : texts) {
    box->addItem(text);
  }
}

} // namespace

MainWindow::MainWindow() : m_session(*this) {
  setWindowTitle(QStringLiteral("Folivex"));
  buildControls();
  connectControls();
  setRunning(false);
}

MainWindow::~MainWindow() = default;

void MainWindow::buildControls() {
  m_fileName = new QLineEdit(this);
  m_browseSource = new QPushButton(QStringLiteral("&Browse..."), this);
  m_findString = new QLineEdit(this);
  m_ignoreCase = new QCheckBox(QStringLiteral("&Ignore case sensitive text"), this);
  m_pageExtract = new QComboBox(this);
  addTexts(m_pageExtract, splitMethodTexts());
  m_extract = new QComboBox(this);
  addTexts(m_extract, fileNameMethodTexts());
  m_prefix = new QLineEdit(this);
  m_postfix = new QLineEdit(this);
  m_splitToSource = new QCheckBox(
      QStringLiteral("&Always split to source file directory (override below)"), this);
  m_outputDir = new QLineEdit(this);
  m_browseOutput = new QPushButton(QStringLiteral("B&rowse..."), this);
  m_overwrite = new QCheckBox(QStringLiteral("Always &overwrite output file (if exists)"), this);

  auto* form = new QFormLayout;
  addRow(form, QStringLiteral("&Filename:"), m_fileName, m_browseSource);
  form->addRow(QStringLiteral("Find &word(s):"), m_findString);
  form->addRow(QString(), m_ignoreCase);
  form->addRow(QStringLiteral("* Page &extract:"), m_pageExtract);
  form->addRow(QStringLiteral("File&name extract:"), m_extract);
  form->addRow(QStringLiteral("Pre&fix output filename:"), m_prefix);
  form->addRow(QStringLiteral("Pos&tfix output filename:"), m_postfix);
  form->addRow(QString(), m_splitToSource);
  addRow(form, QStringLiteral("Output &Directory:"), m_outputDir, m_browseOutput);
  form->addRow(QString(), m_overwrite);

  m_process = new QPushButton(QStringLiteral("&Process"), this);
  m_process->setDefault(true);
  m_stop = new QPushButton(QStringLiteral("&Stop"), this);
  m_load = new QPushButton(QStringLiteral("&Load Setup"), this);
  m_save = new QPushButton(QStringLiteral("Sa&ve Setup"), this);
  m_close = new QPushButton(QStringLiteral("&Close"), this);
  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {m_process, m_stop}) {
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  for (QPushButton* button : {m_load, m_save, m_close}) {
    button->setAutoDefault(false);
    buttons->addWidget(button);
  }
  m_progress = new QProgressBar(this);
  m_status = new QLabel(this);
  m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
  m_status->setWordWrap(true);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(form);
  layout->addLayout(buttons);
  layout->addWidget(m_progress);
  layout->addWidget(m_status);
  constexpr int startWidth = 640;
  resize(startWidth, sizeHint().height());
}

void MainWindow::connectControls() {
  connect(m_browseSource, &QPushButton::clicked, this, &MainWindow::chooseSource);
  connect(m_browseOutput, &QPushButton::clicked, this, &MainWindow::chooseOutputFolder);
  connect(m_splitToSource, &QCheckBox::toggled, this, [this] { setRunning(m_running); });
  connect(m_process, &QPushButton::clicked, this, &MainWindow::process);
  connect(m_stop, &QPushButton::clicked, this, [this] { m_session.driver().Stop(); });
  connect(m_load, &QPushButton::clicked, this, &MainWindow::loadSetup);
  connect(m_save, &QPushButton::clicked, this, &MainWindow::saveSetup);
  connect(m_close, &QPushButton::clicked, this, &MainWindow::reject);
}

void MainWindow::start(const CommandLine& line) {
  if (const QString missing = m_session.loadLibraries(); !missing.isEmpty()) {
    m_process->setEnabled(false);
    m_load->setEnabled(false);
    m_save->setEnabled(false);
    message(missing);
    return;
  }
  m_session.loadDefaultSetup();
  showSetup();
  if (line.argumentCount == 0) {
    return;
  }
  setRunning(true);
  const Session::Ended ended = m_session.handleCommandLine(line);
  setRunning(false);
  showSetup();
  if (ended.mustEnd) {
    QApplication::exit(ended.exitCode);
  }
}

void MainWindow::showSetup() {
  const SplitSetup& setup = m_session.store().edited();
  m_fileName->setText(setup.fileName);
  m_findString->setText(setup.findString);
  m_ignoreCase->setChecked(setup.ignoreCase);
  m_pageExtract->setCurrentIndex(static_cast<int>(splitMethodOf(setup.pageExtract)));
  const int nameMethod = m_extract->findText(setup.extract);
  m_extract->setCurrentIndex(std::max(nameMethod, 0));
  m_prefix->setText(setup.prefixFileName);
  m_postfix->setText(setup.postfixFileName);
  m_splitToSource->setChecked(setup.splitToSource);
  m_outputDir->setText(setup.outputDir);
  m_overwrite->setChecked(setup.alwaysOverwrite);
}

void MainWindow::takeSetup() {
  SplitSetup& setup = m_session.store().edited();
  setup.fileName = m_fileName->text();
  setup.findString = m_findString->text();
  setup.ignoreCase = m_ignoreCase->isChecked();
  setup.pageExtract = m_pageExtract->currentText();
  setup.extract = m_extract->currentText();
  setup.prefixFileName = m_prefix->text();
  setup.postfixFileName = m_postfix->text();
  setup.splitToSource = m_splitToSource->isChecked();
  setup.outputDir = m_outputDir->text();
  setup.alwaysOverwrite = m_overwrite->isChecked();
}

void MainWindow::chooseSource() {
  const QString path =
      QFileDialog::getOpenFileName(this, QStringLiteral("Choose the PDF to split"),
                                   m_fileName->text(), QStringLiteral("PDF files (*.pdf *.PDF)"));
  if (!path.isEmpty()) {
    m_fileName->setText(QDir::toNativeSeparators(path));
  }
}

void MainWindow::chooseOutputFolder() {
  const QString path = QFileDialog::getExistingDirectory(
      this, QStringLiteral("Choose the output folder"), m_outputDir->text());
  if (!path.isEmpty()) {
    m_outputDir->setText(QDir::toNativeSeparators(path));
  }
}

void MainWindow::loadSetup() {
  const QString path = QFileDialog::getOpenFileName(
      this, QStringLiteral("Load fxs parameters file"), m_session.store().currentPath(),
      QStringLiteral("Setup files (*.fxs);;All Files (*)"));
  if (path.isEmpty()) {
    return;
  }
  const SetupResult loaded = m_session.store().LoadSetup(path);
  if (!loaded.message.isEmpty()) {
    message(loaded.message);
  }
  showSetup();
}

void MainWindow::saveSetup() {
  const QString path = QFileDialog::getSaveFileName(
      this, QStringLiteral("Save fxs parameters file"), m_session.store().currentPath(),
      QStringLiteral("Setup files (*.fxs);;All Files (*)"));
  if (path.isEmpty()) {
    return;
  }
  takeSetup();
  const SetupResult saved = m_session.store().SaveSetup(path);
  if (!saved.message.isEmpty()) {
    message(saved.message);
  }
}

void MainWindow::process() {
  takeSetup();
  m_notes.clear();
  m_progress->setRange(0, 0);
  setRunning(true);
  m_session.driver().StartProcessing();
  setRunning(false);
}

void MainWindow::setRunning(bool running) {
  m_running = running;
  for (QWidget* control : std::initializer_list<QWidget*>{
           m_fileName, m_findString, m_ignoreCase, m_pageExtract, m_extract, m_prefix, m_postfix,
           m_splitToSource, m_overwrite, m_process, m_load, m_save, m_browseSource}) {
    control->setEnabled(!running);
  }
  for (QWidget* control : std::initializer_list<QWidget*>{m_outputDir, m_browseOutput}) {
    control->setEnabled(!running && !m_splitToSource->isChecked());
  }
  m_stop->setEnabled(running);
  m_progress->setVisible(running);
}

void MainWindow::message(const QString& text) {
  QMessageBox::information(this, windowTitle(), text);
}

Answer MainWindow::question(const QString& text, const QString& caption) {
  const auto button = QMessageBox::question(this, caption, text);
  return button == QMessageBox::Yes ? Answer::Yes : Answer::No;
}

void MainWindow::note(const QString& text) {
  m_notes += text;
  m_status->setText(m_notes.join(QLatin1Char('\n')));
}

void MainWindow::print(const QString& text) {
  note(text);
}

void MainWindow::progress(const Progress& progress) {
  m_progress->setRange(0, progress.pageCount);
  m_progress->setValue(progress.page);
  m_status->setText(progress.text);
}

void MainWindow::handlePendingEvents() {
  QApplication::processEvents();
}

void MainWindow::openDocument(const QString& path) {
  QDesktopServices::openUrl(QUrl::fromUserInput(path, QString(), QUrl::AssumeLocalFile));
}

void MainWindow::reject() {
  if (m_running) {
    m_session.driver().Stop();
    return;
  }
  if (m_session.isReady()) {
    takeSetup();
    m_session.close();
  }
  QDialog::reject();
}

} // namespace folivex
