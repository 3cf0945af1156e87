// BatchBench: a folder to work in, and rows as text.
#pragma once

#include "batch/BatchEntries.h"
#include "tests/support/OwnFolder.h"
#include "tests/support/Programs.h"

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

class BatchBench : public test::OwnFolder {
protected:
  QString write(const QString& name, const QByteArray& bytes = "x") const {
    QDir(m_folder.path()).mkpath(QFileInfo(name).path());
    test::writeFile(at(name), bytes);
    return at(name);
  }
  QByteArray read(const QString& name) const { return test::contentOf(at(name)); }
};

} // namespace folivex::testing
