// StoredInputs: the inputs that lie beside a fuzz target, in every ordinary test run.
#pragma once

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace folivex::test {

/// Runs the target that is linked in over the inputs in fuzz/`folder`, whole and cut at so many
/// lengths at most.
inline void runStoredInputs(const char* folder, qsizetype cuts = 200) {
  const QDir inputs(QStringLiteral(FOLIVEX_SOURCE_DIR "/fuzz/") + QLatin1String(folder));
  const QStringList names = inputs.entryList(QDir::Files);
  ASSERT_FALSE(names.isEmpty());
  for (const QString& name : names) {
    SCOPED_TRACE(name.toStdString());
    QFile file(inputs.filePath(name));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const qsizetype step = std::max<qsizetype>(1, bytes.size() / cuts);
    for (qsizetype size = bytes.size(); size >= 0; size -= step) {
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                             static_cast<std::size_t>(size));
    }
  }
}

} // namespace folivex::test
