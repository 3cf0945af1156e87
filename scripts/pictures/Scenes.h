// The windows that pictures are taken of. Each function opens one or some and puts them away again.
#pragma once

#include "scripts/pictures/Camera.h"

#include <QImage>

namespace folivex {

class MainWindow;
class WindowMemory;

} // namespace folivex

namespace folivex::pictures {

/// What the scenes share. `sample` is the path of a real PDF.
struct Studio {
  Dialogs& dialogs;
  WindowMemory& memory;
  QString sample;
};

/// The main window with every command available and the libraries loaded.
class ReadyMainWindow {
public:
  explicit ReadyMainWindow(const Studio& studio);
  ~ReadyMainWindow();
  ReadyMainWindow(const ReadyMainWindow&) = delete;
  ReadyMainWindow& operator=(const ReadyMainWindow&) = delete;

  MainWindow& window() { return *m_window; }
  void show(const SplitSetup& setup);
  /// Until the file of the setup is open and its page drawn.
  void waitForPage();
  void waitForPlan(); ///< of the sample: twelve outputs
  void trigger(const char* action);

private:
  std::unique_ptr<MainWindow> m_window;
};

void takeMainWindow(Camera& camera, const Studio& studio);
void takeWorkspace(Camera& camera, const Studio& studio);
void takeSettings(Camera& camera, const Studio& studio);
void takeMessages(Camera& camera);
void takePages(Camera& camera, const Studio& studio);
void takeBatch(Camera& camera, const Studio& studio);
void takeMail(Camera& camera, const Studio& studio);
void takeHelp(Camera& camera, const Studio& studio);

/// The page with the menu at "Account:", and the plan of the first split.
QImage viewerPicture(const Studio& studio);
QImage planPicture(const Studio& studio);

/// Takes the pictures of the help and of the documents anew, into a source tree.
bool takeDocuments(const QDir& tree, const Studio& studio);

} // namespace folivex::pictures
