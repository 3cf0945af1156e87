// The process that draws pages and hands them to the readers. It writes down what it is about to do
// before it does it, so that the process that waits for it knows what it died of.
#include "platform/LoadedLibrary.h"
#include "scanlite/BarcodeFinder.h"
#include "scanlite/Barcodes.h"

#include <glyphrun/glyphrun.h>

#include <QFile>

#include <algorithm>
#include <cmath>

#if defined(Q_OS_UNIX)
#include <sys/time.h>
#endif

namespace scanlite {

namespace {

constexpr double millimetresAPoint = 25.4 / 72;
// What scanners give is enlarged to this, so that a narrow bar of 150 dpi is a few pixels wide.
constexpr double pixelsAPoint = 300.0 / 72;
constexpr double mostPixels = 36e6; // a little more than A2
constexpr int secondsAStep = 20;

class TextLibrary : public folivex::platform::LoadedLibrary {
public:
  TextLibrary()
      : LoadedLibrary(QStringLiteral("GlyphrunU"), "GlyphrunInterfaceVersion",
                      GLYPHRUN_INTERFACE_VERSION) {}

  const Operation<decltype(::OpenView)> OpenView{m_library, "OpenView"};
  const Operation<decltype(::GetViewPageCount)> GetViewPageCount{m_library, "GetViewPageCount"};
  const Operation<decltype(::GetViewPageSize)> GetViewPageSize{m_library, "GetViewPageSize"};
  const Operation<decltype(::RenderViewPage)> RenderViewPage{m_library, "RenderViewPage"};
  const Operation<decltype(::ReleaseImage)> releaseImage{m_library, "ReleaseImage"};
};

/// From now on so much time, as the processor counts it, until the process is ended.
void startClock() {
#if defined(Q_OS_UNIX)
  const itimerval limit{{0, 0}, {secondsAStep, 0}};
  setitimer(ITIMER_PROF, &limit, nullptr);
#endif
}

GreyPicture greyOf(const GlyphrunImage& image) {
  GreyPicture grey;
  grey.width = image.width;
  grey.height = image.height;
  grey.pixels.resize(static_cast<size_t>(image.width) * static_cast<size_t>(image.height));
  const unsigned char* pixel = image.pixels;
  for (std::uint8_t& value : grey.pixels) {
    value = static_cast<std::uint8_t>((29 * pixel[0] + 150 * pixel[1] + 77 * pixel[2]) >> 8);
    pixel += 4;
  }
  return grey;
}

class BarcodeWorker {
public:
  BarcodeWorker(const QString& pdf, const QString& result) : m_result(result) {
    int32_t opened = GLYPHRUN_OK;
    if (m_result.open(QIODevice::WriteOnly | QIODevice::Append) && m_library.loaded) {
      m_view = m_library.OpenView(reinterpret_cast<const char16_t*>(pdf.utf16()), u"", &opened);
      // Behind half a line of the one before.
      tell("\npages " + QByteArray::number(m_view != nullptr ? pageCount() : 0));
    }
  }

  bool isReady() const { return m_view != nullptr; }
  int pageCount() const { return m_library.GetViewPageCount(m_view); }

  /// `leftOut`: the steps of this page that processes died of.
  void read(int page, const QStringList& leftOut) {
    tell("page " + QByteArray::number(page));
    startClock();
    double width = 0;
    double height = 0;
    GlyphrunImage image{};
    if (m_library.GetViewPageSize(m_view, page, &width, &height) != GLYPHRUN_OK || !(width > 0) ||
        !(height > 0)) {
      tell("undrawn");
      return;
    }
    const double scale = std::min(pixelsAPoint, std::sqrt(mostPixels / (width * height)));
    if (m_library.RenderViewPage(m_view, page, scale, &image) != GLYPHRUN_OK) {
      tell("undrawn");
      return;
    }
    const GreyPicture picture = greyOf(image);
    m_library.releaseImage(&image);
    const auto step = [&](int number) {
      const QByteArray name = QByteArray::number(number);
      if (leftOut.contains(QString::fromLatin1(name))) {
        return false;
      }
      tell("step " + name);
      startClock();
      return true;
    };
    const double across = picture.width / width;
    const double down = picture.height / height;
    const FoundBarcodes found = findBarcodes(picture, scale / millimetresAPoint, step);
    for (const Barcode& code : found.sure) {
      QByteArray line = "code";
      for (const double value : {code.box.left / across, code.box.top / down,
                                 code.box.right / across, code.box.bottom / down}) {
        line += ' ' + QByteArray::number(value, 'f', 2);
      }
      tell(line + ' ' + code.kind + ' ' + QByteArray::fromStdString(code.text).toHex());
    }
    tell(found.hasDoubtful ? "doubtful" : "done");
  }

private:
  void tell(const QByteArray& line) {
    m_result.write(line + '\n');
    m_result.flush();
  }

  TextLibrary m_library;
  QFile m_result;
  GlyphrunView* m_view = nullptr;
};

} // namespace

int runBarcodeWorker(const QStringList& arguments) {
  constexpr qsizetype wanted = 4;
  if (arguments.size() != wanted) {
    return 1;
  }
  BarcodeWorker worker(arguments[0], arguments[1]);
  if (!worker.isReady()) {
    return 1;
  }
  QStringList leftOut = arguments[3].split(u',', Qt::SkipEmptyParts);
  const int pages = worker.pageCount();
  for (int page = arguments[2].toInt(); page <= pages; ++page) {
    worker.read(page, leftOut);
    leftOut.clear();
  }
  return 0;
}

} // namespace scanlite
