// Takes the pictures of the help from the real windows:
//   help_pictures FOLDER
// With QT_SCALE_FACTOR=2 they are those for screens at 200 %, named NAME@2x.png.
#include "app/MainWindow.h"
#include "app/viewer/PageCanvas.h"
#include "app/viewer/PageViewer.h"
#include "app/viewer/PlanWindow.h"
#include "engine/naming/FileNameMethod.h"
#include "engine/plan/SplitMethod.h"
#include "platform/Paths.h"
#include "widgets/Dialogs.h"
#include "widgets/Theme.h"
#include "widgets/WindowMemory.h"

#include <QApplication>
#include <QDir>
#include <QLibrary>
#include <QMouseEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace folivex;

namespace {

/// Nobody is asked anything.
class NoDialogs : public Dialogs {
public:
  void message(QWidget*, const QString& text) override { std::puts(text.toLocal8Bit()); }
  bool question(QWidget*, const QString&, const QString&) override { return false; }
  QString openFile(QWidget*, const FileRequest&) override { return {}; }
  QStringList openFiles(QWidget*, const FileRequest&) override { return {}; }
  QString saveFile(QWidget*, const FileRequest&) override { return {}; }
  QString chooseFolder(QWidget*, const QString&, const QString&) override { return {}; }
  bool openOutside(const QString&) override { return true; }
};

/// A folder that tells nothing of the computer that the pictures were taken on.
QString shownFolder() {
  return QStringLiteral("/home/anna/");
}

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

class Album {
public:
  explicit Album(QDir folder) : m_folder(std::move(folder)) {}

  bool isComplete() const { return m_isComplete; }

  void add(const QString& name, const QImage& picture) {
    constexpr int strongest = 0; // compression; nothing is lost by it
    const double scale = picture.devicePixelRatio();
    const QString path = m_folder.filePath(scale > 1 ? name + QStringLiteral("@2x.png")
                                                     : name + QStringLiteral(".png"));
    constexpr qint64 largest = 120 * 1024;
    if (!framed(picture).save(path, "PNG", strongest)) {
      std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
      m_isComplete = false;
    } else if (QFileInfo(path).size() > largest && scale > 1) {
      QFile::remove(path); // the picture for 100 % is shown larger instead
    }
  }

private:
  QDir m_folder;
  bool m_isComplete = true;
};

QImage picture(QWidget* widget) {
  return widget->grab().toImage();
}

/// One below the other.
QImage stacked(QImage above, QImage below) {
  const double scale = above.devicePixelRatio();
  above.setDevicePixelRatio(1);
  below.setDevicePixelRatio(1);
  const int gap = qRound(6 * scale);
  QImage all(qMax(above.width(), below.width()), above.height() + gap + below.height(),
             QImage::Format_RGB32);
  all.fill(QApplication::palette().color(QPalette::Window));
  QPainter painter(&all);
  painter.drawImage(0, 0, above);
  painter.drawImage(0, above.height() + gap, below);
  painter.end();
  all.setDevicePixelRatio(scale);
  return all;
}

SplitSetup statements(const QString& path) {
  SplitSetup setup = defaultSetup();
  setup.fileName = path;
  setup.findString = QStringLiteral("Account:");
  setup.pageExtract = splitMethodTexts()[0];
  setup.extract = fileNameMethodTexts()[1];
  setup.prefixFileName = QStringLiteral("statement_");
  setup.outputDir = shownFolder() + QStringLiteral("out");
  return setup;
}

void takeMainWindow(Album& album, MainWindow& window) {
  window.session().store().edited() = statements(shownFolder() + QStringLiteral("statements.pdf"));
  window.refresh();
  window.show();
  window.resize(window.size().expandedTo(QSize(1240, 700)));
  QApplication::processEvents();
  const auto group = [&window](const char* name) {
    return picture(window.findChild<QWidget*>(QString::fromLatin1(name)));
  };
  album.add(QStringLiteral("first-split-1"), group("sourceGroup"));
  album.add(QStringLiteral("first-split-3"), group("searchGroup"));
  album.add(QStringLiteral("first-split-4"), stacked(group("rangesGroup"), group("namesGroup")));
  window.hide();
}

void takeViewer(Album& album, const QString& file) {
  CPDFTextDumpInit library;
  PageViewer viewer(library);
  viewer.setTargets(pickTargetTexts());
  viewer.setTarget(1);
  viewer.show();
  constexpr QSize size(640, 390);
  viewer.resize(size);
  viewer.openFile({file, {}});
  auto* canvas = viewer.findChild<PageCanvas*>(QStringLiteral("pageCanvas"));
  constexpr int patienceMs = 60'000;
  const bool isThere = QTest::qWaitFor(
      [&] { return viewer.pageCount() > 0 && !canvas->page().image.isNull(); }, patienceMs);
  if (isThere) {
    for (const ViewedWord& word : canvas->page().words) {
      if (word.text == QLatin1String("Account:")) {
        const QPointF at = canvas->onCanvas(word.box).center();
        QMouseEvent move(QEvent::MouseMove, at, canvas->mapToGlobal(at), Qt::NoButton, Qt::NoButton,
                         Qt::NoModifier);
        QApplication::sendEvent(canvas, &move);
        break;
      }
    }
  }
  album.add(QStringLiteral("first-split-2"), picture(&viewer));
}

void takePlan(Album& album, Dialogs& dialogs, MainWindow& window, const QString& file) {
  window.session().store().edited() = statements(file);
  SplitPlan plan = window.session().driver().Plan();
  for (PlannedOutput& output : plan.outputs) {
    output.path = shownFolder() + QStringLiteral("out/") + platform::fileTitle(output.path);
  }
  PlanWindow table(dialogs);
  table.setPlan(shownFolder() + QStringLiteral("statements.pdf"), plan);
  table.show();
  constexpr QSize size(660, 300);
  table.resize(size);
  QApplication::processEvents();
  album.add(QStringLiteral("first-split-5"), picture(&table));
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("help_pictures FOLDER\n", stderr);
    return 2;
  }
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QTemporaryDir own;
  qputenv("TMPDIR", own.path().toLocal8Bit());
  const QApplication application(argc, argv);
  for (const char* library : {"GlyphrunU", "CleftorU", "MelderU"}) {
    QLibrary(QStringLiteral(FOLIVEX_BIN_DIR "/lib%1.so").arg(QLatin1String(library))).load();
  }
  applyTheme(Theme::Light);
  const QString file = own.filePath(QStringLiteral("statements.pdf"));
  QFile::copy(QStringLiteral(FOLIVEX_SOURCE_DIR "/samples/statements.pdf"), file);
  NoDialogs dialogs;
  WindowMemory memory(own.filePath(QStringLiteral("window.ini")));
  Album album{QDir(QString::fromLocal8Bit(argv[1]))};
  MainWindow window(dialogs, memory);
  WindowParts parts;
  parts.walkMatches = [](JobDriver&, const SplitSetup&) {};
  parts.showPlan = [](const QString&, const SplitPlan&) {};
  parts.viewPage = [](const SplitSetup&, int) {};
  window.setParts(parts);
  window.start({});
  takeMainWindow(album, window);
  takeViewer(album, file);
  takePlan(album, dialogs, window, file);
  return album.isComplete() ? 0 : 1;
}
