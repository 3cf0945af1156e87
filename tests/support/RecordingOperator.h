// RecordingOperator: stands in for the person, and keeps what was told.
#pragma once

#include "engine/base/Operator.h"

#include <QStringList>

#include <functional>

namespace folivex::test {

class RecordingOperator : public Operator {
public:
  void message(const QString& text) override { messages += text; }
  Answer question(const QString& text, const QString& /*caption*/) override {
    questions += text;
    return answer;
  }
  void note(const QString& text) override { notes += text; }
  void print(const QString& text) override { prints += text; }
  void progress(const Progress& progress) override {
    statuses += progress.text;
    if (onProgress) {
      onProgress(progress);
    }
  }
  void handlePendingEvents() override {
    if (onEvents) {
      onEvents();
    }
  }
  void openDocument(const QString& path) override { opened += path; }

  QString allNotes() const { return notes.join(QLatin1Char('\n')); }

  QStringList messages;
  QStringList questions;
  QStringList notes;
  QStringList prints;
  QStringList statuses;
  QStringList opened;
  Answer answer = Answer::No;
  std::function<void()> onEvents;
  std::function<void(const Progress&)> onProgress;
};

} // namespace folivex::test
