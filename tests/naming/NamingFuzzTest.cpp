// Runs the fuzz target over its stored inputs, whole and cut at every length.
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

TEST(NamingFuzz, storedInputs) {
  const QDir folder(QStringLiteral(FOLIVEX_SOURCE_DIR "/fuzz/naming_template"));
  const QStringList names = folder.entryList(QDir::Files);
  ASSERT_FALSE(names.isEmpty());
  for (const QString& name : names) {
    SCOPED_TRACE(name.toStdString());
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    for (qsizetype size = bytes.size(); size >= 0; --size) {
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                             static_cast<std::size_t>(size));
    }
  }
}
