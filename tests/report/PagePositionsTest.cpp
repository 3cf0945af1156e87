// The listing of word positions, byte for byte.
#include "engine/report/PagePositions.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingOperator.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

using namespace folivex;
using namespace folivex::test;

namespace {

class PagePositionsTest : public testing::Test {
protected:
  QByteArray head() const {
    return "\xEF\xBB\xBF" + QByteArray("Folivex v4.00  -= Quillmark =-\n"
                                       "View file: " +
                                       m_path.toUtf8() +
                                       "\n"
                                       "Source PDF File: /in/a.pdf, Page no: 7\n\n"
                                       "Below are the coordinate positions of every word on the "
                                       "current page in view,\n"
                                       "to optionally match on this position enter the coordinates "
                                       "in the main screen 'At position' boxes\n"
                                       "i.e. h=horizontal position, v=vertical position\n\n"
                                       "Word                \tHoriz\tVert\n"
                                       "----                \t-----\t----\n\n");
  }
  QByteArray listed() const { return contentOf(m_path).replace("\r\r\n", "\n"); }

  QTemporaryDir m_folder;
  QString m_path = pagePositionsPath(m_folder.path() + QLatin1Char('/'));
  RecordingOperator m_person;
  PagePositions m_listing{m_person};
};

} // namespace

TEST_F(PagePositionsTest, Words) {
  writeFile(m_path, QByteArray(10'000, 'x'));
  ASSERT_EQ(m_listing.open(m_path, QStringLiteral("/in/a.pdf"), 7), QString());
  m_listing.onListedWord(u"Account:", 57, 118);
  m_listing.onListedWord(u"Żółć", -4, 1200);
  m_listing.onListedWord(u"a-word-of-more-than-twenty-characters", 1, 2);
  ASSERT_TRUE(m_listing.close());
  EXPECT_EQ(listed(), head() + "Account:            \t57 \t118\n"
                               "Żółć                \t-4 \t1200\n"
                               "a-word-of-more-than-twenty-characters\t1  \t2  \n");
}

TEST_F(PagePositionsTest, EmptyPageSaysWhatToDo) {
  m_person.answer = Answer::Yes;
  ASSERT_EQ(m_listing.open(m_path, QStringLiteral("/in/a.pdf"), 7), QString());
  m_listing.onEmptyPage(6);
  ASSERT_TRUE(m_listing.close());
  const QByteArray said = listed().mid(head().size());
  EXPECT_EQ(listed().left(head().size()), head());
  EXPECT_TRUE(said.startsWith(
      "No text found!!!, to OCR/make text searchable a pdf try check 'OCR first' checkbox option - "
      "if that doesn't help then see our example video on how to OCR a pdf (make it text "
      "seatchable): http"))
      << said.toStdString();
  EXPECT_TRUE(said.endsWith("\n"));
  EXPECT_EQ(m_person.questions,
            QStringList{QStringLiteral(
                "No words on page!, maybe Blank page/Graphics only or needs OCR'ing first?  Do you "
                "want to learn how to OCR a pdf?")});
  ASSERT_EQ(m_person.opened.size(), 1);
  EXPECT_TRUE(m_person.opened.front().startsWith(QStringLiteral("http")));
}

TEST_F(PagePositionsTest, UnwritablePlaceIsNamed) {
  const QString path = m_folder.filePath(QStringLiteral("no/page_positions.txt"));
  EXPECT_EQ(m_listing.open(path, QStringLiteral("/in/a.pdf"), 7),
            QStringLiteral("file error! can't write to page positions file: %1").arg(path));
}
