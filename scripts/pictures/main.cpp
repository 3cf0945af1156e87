// Pictures of every window, at the scale that QT_SCALE_FACTOR asks for:
//   pictures FOLDER            all windows in both themes, to look at
//   pictures --documents TREE  the pictures of the help and the documents, into a source tree
#include "scripts/pictures/Scenes.h"
#include "widgets/WindowMemory.h"

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::pictures;

namespace {

/// A screen of a common size in place of the small one that the platform without a display has.
void choosePlatform(const QTemporaryDir& own) {
  if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    return;
  }
  QFile screens(own.filePath(QStringLiteral("screens.json")));
  if (screens.open(QIODevice::WriteOnly)) {
    screens.write(R"({"screens": [{"name": "one", "x": 0, "y": 0, "width": 1920, "height": 1080,
                      "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
  }
  qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
}

bool takeAll(const QDir& folder, const Studio& studio) {
  QDir().mkpath(folder.path());
  Camera camera(folder);
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    camera.setLook(theme);
    takeMainWindow(camera, studio);
    takeWorkspace(camera, studio);
    takeSettings(camera, studio);
    takeMessages(camera);
    takePages(camera, studio);
    takeBatch(camera, studio);
    takeMail(camera, studio);
    takeHelp(camera, studio);
  }
  return camera.isComplete();
}

} // namespace

int main(int argc, char** argv) {
  const bool forDocuments = argc == 3 && qstrcmp(argv[1], "--documents") == 0;
  if (argc != 2 && !forDocuments) {
    std::fputs("pictures FOLDER, or pictures --documents TREE\n", stderr);
    return 2;
  }
  const QTemporaryDir own;
  qputenv("TMPDIR", own.path().toLocal8Bit());
  choosePlatform(own);
  const QApplication application(argc, argv);
  const QString sample = own.filePath(QStringLiteral("statements.pdf"));
  QFile::copy(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), sample);
  QuietDialogs dialogs;
  WindowMemory memory(own.filePath(QStringLiteral("window.ini")));
  const Studio studio{dialogs, memory, sample};
  const QDir target(QString::fromLocal8Bit(argv[argc - 1]));
  return (forDocuments ? takeDocuments(target, studio) : takeAll(target, studio)) ? 0 : 1;
}
