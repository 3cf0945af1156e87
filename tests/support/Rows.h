// Rows: tables of tests that are data, in JSON files beside the tests.
#pragma once

#include "engine/setup/SetupFile.h"
#include "tests/support/Printing.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

namespace folivex::test {

/// Takes settings by the keys of a setup file.
inline void applySettings(SplitSetup& setup, const QJsonObject& settings) {
  bool automation = false;
  SetupTarget target{setup, setup, automation};
  for (auto it = settings.begin(); it != settings.end(); ++it) {
    EXPECT_EQ(readSetupLine(it.key() + u';' + it.value().toString() + u' ', target), 1)
        << it.key().toStdString();
  }
}

/// The lines of a setup's file that a new one has not, without the blank at their ends, `copy` in
/// front of each.
inline QStringList changedLines(const SplitSetup& setup, const QString& copy = {}) {
  const QStringList before = setupFileText(SplitSetup()).split("\r\n");
  const QStringList after = setupFileText(setup).split("\r\n");
  EXPECT_EQ(before.size(), after.size());
  QStringList lines;
  for (qsizetype i = 0; i < after.size(); ++i) {
    if (after[i] != before.value(i)) {
      lines += copy + after[i].chopped(1);
    }
  }
  return lines;
}

/// Calls `check(setup, texts)` for each row of tests/`file`: groups of {"settings", "rows"}, a row
/// being the fault that it would catch, settings of its own (which may be left out), and texts.
template <typename Check> void forEachRow(const char* file, Check check) {
  QFile data(QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/") + QLatin1String(file));
  ASSERT_TRUE(data.open(QIODevice::ReadOnly)) << file;
  QJsonParseError error;
  const QJsonArray groups = QJsonDocument::fromJson(data.readAll(), &error).array();
  ASSERT_FALSE(groups.isEmpty()) << file << ' ' << error.offset << ": "
                                 << error.errorString().toStdString();
  for (const QJsonValue group : groups) {
    ASSERT_FALSE(group[u"rows"].toArray().isEmpty()) << file;
    for (const QJsonValue value : group[u"rows"].toArray()) {
      QJsonArray row = value.toArray();
      SCOPED_TRACE(row.takeAt(0).toString().toStdString());
      SplitSetup setup;
      applySettings(setup, group[u"settings"].toObject());
      if (row.at(0).isObject()) {
        applySettings(setup, row.takeAt(0).toObject());
      }
      QStringList texts;
      for (const QJsonValue text : row) {
        texts += text.toVariant().toString();
      }
      check(setup, texts);
    }
  }
}

} // namespace folivex::test
