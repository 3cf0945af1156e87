#include "engine/report/PagePositions.h"

#include "engine/report/Reports.h"
#include "platform/Paths.h"

#include <QFile>

namespace folivex {

namespace {

constexpr int wordWidth = 20;
constexpr int positionWidth = 3;

QString ocrHelpAddress() {
  return QStringLiteral("https://ocrmypdf.readthedocs.io/");
}

QString columns(QStringView word, const QString& h, const QString& v) {
  return word.toString().leftJustified(wordWidth) + QLatin1Char('\t') +
         h.leftJustified(positionWidth) + QLatin1Char('\t') + v.leftJustified(positionWidth) +
         QStringLiteral("\r\n");
}

} // namespace

QString pagePositionsPath(const QString& temporaryFolder) {
  return temporaryFolder + QStringLiteral("page_positions.txt");
}

QString PagePositions::open(const QString& path, const QString& source, int page) {
  m_wordCount = 0;
  QFile::remove(path);
  if (!m_file.open(path, platform::FileAccess::Private)) {
    return QStringLiteral("file error! can't write to page positions file: %1").arg(path);
  }
  m_file.write(QStringLiteral("Folivex %1  -= Quillmark =-\r\n").arg(reportVersion()));
  m_file.write(QStringLiteral("View file: ") + path + QStringLiteral("\r\n"));
  m_file.write(QStringLiteral("Source PDF File: ") + source +
               QStringLiteral(", Page no: %1\r\n\r\n").arg(page));
  m_file.write(QStringLiteral(
      "Below are the coordinate positions of every word on the current page in view,\r\n"
      "to optionally match on this position enter the coordinates in the main screen "
      "'At position' boxes\r\n"
      "i.e. h=horizontal position, v=vertical position\r\n\r\n"));
  m_file.write(columns(u"Word", QStringLiteral("Horiz"), QStringLiteral("Vert")));
  m_file.write(columns(u"----", QStringLiteral("-----"), QStringLiteral("----")) +
               QStringLiteral("\r\n"));
  return {};
}

bool PagePositions::close() {
  if (m_wordCount == 0) {
    m_file.write(QStringLiteral("No text found!!!, to OCR/make text searchable a pdf try check "
                                "'OCR first' checkbox option - if that doesn't help then see our "
                                "example video on how to OCR a pdf (make it text seatchable): ") +
                 ocrHelpAddress() + QStringLiteral("\r\n"));
  }
  return m_file.close();
}

void PagePositions::onListedWord(QStringView text, int h, int v) {
  m_file.write(columns(text, QString::number(h), QString::number(v)));
  m_file.flush();
  ++m_wordCount;
}

void PagePositions::onEmptyPage(int /*pageIndex*/) {
  const Answer answer = m_person.question(
      QStringLiteral("No words on page!, maybe Blank page/Graphics only or needs OCR'ing first?  "
                     "Do you want to learn how to OCR a pdf?"),
      QStringLiteral("No text found on this page!"));
  if (answer == Answer::Yes) {
    m_person.openDocument(ocrHelpAddress());
  }
}

} // namespace folivex
