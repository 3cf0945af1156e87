// The program's icon as files, for desktops:
//   icons FOLDER     writes 16.png, 24.png and so on
#include "widgets/ProgramIcon.h"

#include <QDir>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("icons FOLDER\n", stderr);
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  const QDir folder(QString::fromLocal8Bit(argv[1]));
  const QIcon icon = folivex::programIcon();
  for (const QSize& size : icon.availableSizes()) {
    const QString path = folder.filePath(QStringLiteral("%1.png").arg(size.width()));
    if (!icon.pixmap(size).save(path)) {
      std::fprintf(stderr, "%s cannot be written\n", qPrintable(path));
      return 1;
    }
  }
  return 0;
}
