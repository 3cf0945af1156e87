// The program's icon as files, for desktops:
//   icons FOLDER     writes 16.png, 24.png and so on, and folivex.ico with all of them
// desktop/windows has a copy of the last, since what is built for Windows does not run where it is
// built.
#include "widgets/ProgramIcon.h"

#include <QBuffer>
#include <QDataStream>
#include <QDir>
#include <QGuiApplication>

#include <cstdio>

namespace {

/// The pictures as one file of Windows: a header, an entry for each, then the PNGs themselves.
bool writeIco(const QString& path, const QIcon& icon) {
  constexpr quint32 headerBytes = 6;
  constexpr quint32 entryBytes = 16;
  const QList<QSize> sizes = icon.availableSizes();
  QByteArray entries;
  QByteArray pictures;
  QDataStream out(&entries, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out << quint16{0} << quint16{1} << static_cast<quint16>(sizes.size());
  for (const QSize& size : sizes) {
    QBuffer png;
    icon.pixmap(size).save(&png, "PNG");
    const auto side = static_cast<quint8>(size.width()); // 256 is told as 0
    const auto offset = headerBytes + entryBytes * static_cast<quint32>(sizes.size()) +
                        static_cast<quint32>(pictures.size());
    out << side << side << quint8{0} << quint8{0} << quint16{1} << quint16{32}
        << static_cast<quint32>(png.data().size()) << offset;
    pictures += png.data();
  }
  QFile file(path);
  return file.open(QIODevice::WriteOnly) && file.write(entries + pictures) > 0;
}

} // namespace

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
  if (!writeIco(folder.filePath(QStringLiteral("folivex.ico")), icon)) {
    std::fputs("folivex.ico cannot be written\n", stderr);
    return 1;
  }
  return 0;
}
