// The help, the problem report, the update check; and the pictures that the help itself shows.
#include "app/MainWindow.h"
#include "app/help/CProblemReportDlg.h"
#include "app/help/HelpWindow.h"
#include "scripts/pictures/Scenes.h"
#include "updates/CUpdateIntervalDlg.h"

#include "widgets/WindowMemory.h"

#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QTest>

namespace folivex::pictures {

void takeHelp(Camera& camera, const Studio& studio) {
  HelpWindow help(studio.dialogs);
  help.openTopic(QStringLiteral("main-window"));
  camera.take(help, QStringLiteral("help"));
  help.openTopic(QStringLiteral("names"));
  help.findChild<QLineEdit*>(QStringLiteral("helpSought"))->setText(QStringLiteral("bookmark"));
  camera.take(help, QStringLiteral("help-search"));
  help.findChild<QLineEdit*>(QStringLiteral("helpSought"))->clear();
  help.openTopic(QStringLiteral("first-split"));
  camera.take(help, QStringLiteral("help-pictures"));
  CProblemReportDlg report(
      ProblemReport(systemFacts(QStringLiteral("1.0.0"),
                                {{QStringLiteral("GlyphrunU"), QStringLiteral("interface 1")}}),
                    byPosition(), {QStringLiteral("Ready.")}),
      studio.dialogs, studio.memory);
  camera.take(report, QStringLiteral("problem-report"));
  UpdateCheck check(studio.memory.settings(), UpdateSurroundings{QStringLiteral("1.0.0")});
  {
    CUpdateIntervalDlg off(check, studio.dialogs);
    camera.take(off, QStringLiteral("updates-off"));
  }
  UpdateSettings settings;
  settings.isOn = true;
  settings.address = QStringLiteral("https://updates.example.com/folivex.json");
  check.keepSettings(settings);
  CUpdateIntervalDlg updates(check, studio.dialogs);
  camera.take(updates, QStringLiteral("updates"));
  check.keepSettings({}); // the next look begins without them
}

namespace {

/// With a rim of the window's own colour, so that nothing stands at the edge.
QImage framed(const QImage& picture) {
  const double scale = picture.devicePixelRatio();
  const int rim = qRound(8 * scale);
  QImage all(picture.width() + 2 * rim, picture.height() + 2 * rim, QImage::Format_RGB888);
  all.fill(QApplication::palette().color(QPalette::Window));
  QPainter painter(&all);
  QImage flat = picture;
  flat.setDevicePixelRatio(1);
  painter.drawImage(rim, rim, flat);
  painter.end();
  return all;
}

/// In the 256 colours that it has most of: half as large, and no eye sees it.
QImage inFewColours(const QImage& picture) {
  QHash<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      ++counts[picture.pixel(x, y)];
    }
  }
  QList<QRgb> colours = counts.keys();
  std::sort(colours.begin(), colours.end(),
            [&counts](QRgb one, QRgb other) { return counts[one] > counts[other]; });
  constexpr qsizetype most = 256;
  return picture.convertToFormat(QImage::Format_Indexed8, colours.mid(0, most),
                                 Qt::ThresholdDither);
}

class Album {
public:
  explicit Album(const QDir& tree) : m_tree(tree) {}

  bool isComplete() const { return m_isComplete; }

  /// For the help, at 100 % as NAME.png and at 200 % as NAME@2x.png.
  void addToHelp(const QString& name, const QImage& picture) {
    const bool isLarge = picture.devicePixelRatio() > 1;
    const QString path =
        m_tree.filePath(QStringLiteral("app/help/pictures/%1%2.png")
                            .arg(name, isLarge ? QStringLiteral("@2x") : QString()));
    constexpr qint64 largest = qint64{120} * 1024;
    save(inFewColours(framed(picture)), path);
    if (isLarge && QFileInfo(path).size() > largest) {
      QFile::remove(path); // the picture for 100 % is shown larger instead
    }
  }
  void addToDocuments(const QString& name, const QImage& picture) {
    if (picture.devicePixelRatio() <= 1) {
      save(picture.convertToFormat(QImage::Format_RGB888),
           m_tree.filePath(QStringLiteral("docs/images/%1.png").arg(name)));
    }
  }

private:
  void save(const QImage& picture, const QString& path) {
    constexpr int strongest = 0; // compression; nothing is lost by it
    if (!picture.save(path, "PNG", strongest)) {
      std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
      m_isComplete = false;
    }
  }

  QDir m_tree;
  bool m_isComplete = true;
};

} // namespace

bool takeDocuments(const QDir& tree, const Studio& studio) {
  Album album(tree);
  applyTheme(Theme::Light);
  {
    ReadyMainWindow main(studio);
    MainWindow& window = main.window();
    main.show(firstSplit(studio.sample));
    window.show();
    main.waitForPage();
    main.waitForPlan();
    const auto taken = [&window](QSize size) {
      window.resize(size);
      constexpr int drawn = 500; // small pages are drawn beside the window
      QTest::qWait(drawn);
      return window.grab().toImage();
    };
    album.addToDocuments(QStringLiteral("window"), taken(QSize(1280, 860)));
    const QImage whole = taken(QSize(980, 620)); // small enough for all panes side by side
    constexpr int pageWidth = 690;               // of the help, in its window's first size
    QImage fitting =
        whole.scaledToWidth(qRound(pageWidth * whole.devicePixelRatio()), Qt::SmoothTransformation);
    fitting.setDevicePixelRatio(whole.devicePixelRatio());
    album.addToHelp(QStringLiteral("first-split-1"), fitting);
  }
  const QImage viewer = viewerPicture(studio);
  album.addToHelp(QStringLiteral("first-split-2"), viewer);
  album.addToDocuments(QStringLiteral("viewer"), viewer);
  const QImage plan = planPicture(studio);
  album.addToHelp(QStringLiteral("first-split-3"), plan);
  album.addToDocuments(QStringLiteral("plan"), plan);
  return album.isComplete();
}

} // namespace folivex::pictures
