// BatchBench: a folder to work in, with a temporary folder of its own, and rows as text.
#pragma once

#include "batch/BatchEntries.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace folivex::testing {

inline BatchEntry entry(const QString& flag, const QString& path) {
  return {flag, path, QStringLiteral("Ready.")};
}

/// "Yes a.pdf", or with a status "Yes a.pdf: Done".
inline QStringList texts(const std::vector<BatchEntry>& entries) {
  QStringList all;
  for (const BatchEntry& one : entries) {
    const bool ready = one.status == QStringLiteral("Ready.");
    all += one.useFlag + ' ' + one.path + (ready ? QString() : ": " + one.status);
  }
  return all;
}

/// Their paths on end, where each is a letter.
inline QString lettersOf(const BatchEntries& rows) {
  QString letters;
  for (const BatchEntry& one : rows.all()) {
    letters += one.path;
  }
  return letters;
}

class BatchBench : public ::testing::Test {
protected:
  BatchBench() {
    QDir(m_folder.path()).mkdir(QStringLiteral("tmp"));
    qputenv("TMPDIR", QFile::encodeName(at("tmp")));
  }
  ~BatchBench() override { qunsetenv("TMPDIR"); }

  QString at(const QString& name) const { return m_folder.filePath(name); }

  QString write(const QString& name, const QByteArray& bytes = "x") const {
    QDir(m_folder.path()).mkpath(QFileInfo(name).path());
    QFile file(at(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
    file.write(bytes);
    return file.fileName();
  }

  QByteArray read(const QString& name) const {
    QFile file(at(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
  }

  QTemporaryDir m_folder;
};

} // namespace folivex::testing
