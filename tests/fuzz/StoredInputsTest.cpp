// What the fuzzer found once, and what it starts from: every stored input, whole, cut and damaged.
#include "fuzz/Targets.h"
#include "tests/support/BuiltLibraries.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace fuzzing {

namespace {

constexpr qsizetype mostCuts = 6;
constexpr int damagedCopies = 6;

QByteArray damaged(QByteArray bytes, std::minstd_rand& random) {
  for (auto left = bytes.isEmpty() ? 0 : random() % 7; left > 0; --left) {
    const auto place = random() % static_cast<std::size_t>(bytes.size());
    bytes[static_cast<qsizetype>(place)] = static_cast<char>(random());
  }
  return bytes;
}

class StoredInputs : public testing::TestWithParam<Target> {
protected:
  StoredInputs() {
    if (QDir(QStringLiteral("/dev/shm")).exists()) {
      qputenv("TMPDIR", "/dev/shm"); // hundreds of outputs are synced, which takes a disk its time
    }
    if (QCoreApplication::instance() == nullptr) {
      static int argumentCount = 1;
      static char name[] = "test";
      static char* arguments[] = {name, nullptr};
      static const QCoreApplication application(argumentCount, arguments);
    }
    EXPECT_EQ(folivex::test::loadBuiltLibraries(), QString());
  }
};

/// A fault ends this program, and its output names the target.
TEST_P(StoredInputs, EndWell) {
  const QDir folder(QStringLiteral(FOLIVEX_SOURCE_DIR "/fuzz/") + QLatin1String(GetParam().name));
  const QStringList names = folder.entryList(QDir::Files, QDir::Name);
  ASSERT_FALSE(names.isEmpty());
  std::minstd_rand random;
  for (const QString& name : names) {
    QFile file(folder.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const qsizetype step = std::max<qsizetype>(1, bytes.size() / mostCuts);
    for (qsizetype size = bytes.size(); size >= 0; size -= step) {
      GetParam().run(bytes.first(size));
    }
    for (int copy = 0; copy < damagedCopies; ++copy) {
      GetParam().run(damaged(bytes, random));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, StoredInputs,
                         testing::ValuesIn(targets().begin(), targets().end()),
                         [](const auto& target) { return std::string(target.param.name); });

} // namespace

} // namespace fuzzing
