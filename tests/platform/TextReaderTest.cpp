// What TextReader makes of files of every origin.
#include "platform/TextFile.h"
#include "tests/support/Rows.h"

#include <QBuffer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace folivex;
using namespace folivex::platform;

namespace {

QStringList linesOf(TextReader& reader, int limit = TextReader::maxLine) {
  QStringList lines;
  QString line;
  while (reader.readLine(line, limit)) {
    lines += line;
  }
  return lines;
}

QStringList linesOf(const QByteArray& bytes, int limit = TextReader::maxLine) {
  auto device = std::make_unique<QBuffer>();
  device->setData(bytes);
  device->open(QIODevice::ReadOnly);
  TextReader reader;
  EXPECT_TRUE(reader.open(std::move(device)));
  return linesOf(reader, limit);
}

/// A disk that fails behind its first `m_good` bytes.
class FailingDevice : public QIODevice {
public:
  FailingDevice(const QByteArray& header, qint64 good) : m_header(header), m_good(good) {
    open(QIODevice::ReadOnly | Unbuffered);
  }
  qint64 size() const override { return 1'000'000; }

protected:
  qint64 readData(char* data, qint64 count) override {
    if (pos() >= m_good) {
      setErrorString(QStringLiteral("bad sector"));
      return -1;
    }
    const qint64 length = std::min(count, m_good - pos());
    for (qint64 i = 0; i < length; ++i) {
      data[i] = pos() + i < m_header.size() ? m_header[pos() + i] : '\n';
    }
    return length;
  }
  qint64 writeData(const char*, qint64) override { return -1; }

private:
  QByteArray m_header;
  qint64 m_good;
};

} // namespace

TEST(TextReader, LinesAndEncodings) {
  test::forEachRow("platform/texts.json", [](const SplitSetup&, const QStringList& row) {
    EXPECT_EQ(linesOf(row[0].toLatin1()), row.mid(1));
  });
  EXPECT_EQ(linesOf(QByteArray(40'000, '\n') + "\xE9\n").last(), QStringLiteral("é"))
      << "one old byte far behind UTF-8";
}

TEST(TextReader, CharactersAcrossBlocks) {
  // Whatever the block size, one of four shifts puts a character across a border.
  for (int shift = 0; shift < 4; ++shift) {
    const QString text = QString(shift, QLatin1Char('x')) + QString::fromUtf8("😀").repeated(20'000);
    const QStringList pieces = linesOf("UNICODE" + text.toUtf8(), 1000);
    EXPECT_EQ(pieces.join(QString()), QStringLiteral("UNICODE") + text);
    for (const QString& piece : pieces) {
      ASSERT_FALSE(piece.back().isHighSurrogate()) << "half a character in a piece";
    }
  }
  // The same for line ends.
  for (int length = 16'380; length < 16'388; ++length) {
    const QByteArray line(length, 'x');
    EXPECT_EQ(linesOf(line + "\r\r\n" + line + "\r\r\n", 20'000).size(), 2) << length;
  }
}

TEST(TextReader, LongLinesComeInPieces) {
  const QString full(4096, QLatin1Char('x'));
  EXPECT_EQ(linesOf((full + "\r\r\ny").toUtf8()), QStringList({full, "y"}))
      << "an empty piece behind a line that just fits";
  EXPECT_EQ(linesOf((full + "yz\nb").toUtf8()), QStringList({full, "yz", "b"}));
  EXPECT_EQ(linesOf(full.toUtf8()), QStringList({full}));
}

TEST(TextReader, FailuresAreTold) {
  const QTemporaryDir folder;
  const QString pipe = folder.filePath(QStringLiteral("pipe"));
  ASSERT_EQ(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  QFile huge(folder.filePath(QStringLiteral("huge")));
  ASSERT_TRUE(huge.open(QIODevice::WriteOnly));
  ASSERT_TRUE(huge.resize(TextReader::maxFileSize + 1));
  const QString none = folder.filePath(QStringLiteral("none"));
  for (const QString& path : {none, folder.path(), pipe, QString("/dev/zero"), huge.fileName()}) {
    SCOPED_TRACE(path.toStdString());
    TextReader reader;
    EXPECT_FALSE(reader.open(path));
    EXPECT_EQ(reader.error(), path == none ? FileError::NotFound : FileError::Refused);
    EXPECT_FALSE(reader.errorText().isEmpty());
    QString line;
    EXPECT_FALSE(reader.readLine(line));
  }
}

TEST(TextReader, DiskThatFailsHalfWay) {
  TextReader atOnce;
  EXPECT_FALSE(atOnce.open(std::make_unique<FailingDevice>("a", 30'000)))
      << "the code page was settled on half a file";

  TextReader later;
  ASSERT_TRUE(later.open(std::make_unique<FailingDevice>("UNICODE", 30'000)));
  EXPECT_EQ(linesOf(later).first().toStdString(), "UNICODE");
  EXPECT_EQ(later.error(), FileError::Failed) << "half a file taken for a whole one";
  EXPECT_EQ(later.errorText().toStdString(), "bad sector");
}
