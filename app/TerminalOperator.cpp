#include "app/TerminalOperator.h"

#include "platform/Terminal.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <utility>

namespace folivex {

namespace {

constexpr qint64 progressMilliseconds = 100;
/// A line that wraps is not taken off the terminal again.
constexpr qsizetype longestProgress = 78;

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "read and written by a signal handler");

extern "C" void onInterrupt(int signal) {
  interrupted = true;
  // A second one ends the program at once.
  std::signal(signal, SIG_DFL);
}

QString progressLine(const Progress& progress) {
  if (progress.pageCount > 0 && progress.phase != Phase::Sending) {
    return QStringLiteral("Page %1 of %2, %3 file(s)")
        .arg(progress.page)
        .arg(progress.pageCount)
        .arg(progress.outputs);
  }
  const QString text = progress.text.simplified();
  return text.size() <= longestProgress ? text
                                        : text.left(longestProgress - 3) + QStringLiteral("...");
}

} // namespace

void catchSignals() {
  std::signal(SIGINT, onInterrupt);
  std::signal(SIGTERM, onInterrupt);
}

void ignoreWriteSignals() {
#if defined(SIGXFSZ)
  // A file over its size limit, and a reader that has gone, are write errors like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

void tellTerminal(const QString& text) {
  std::fprintf(stderr, "%s\n", platform::terminalText(text).constData());
}

TerminalOperator::TerminalOperator(std::function<void()> stop, RecordStream& records)
    : m_stop(std::move(stop)), m_records(records), m_onTerminal(platform::isTerminal(stderr)) {}

void TerminalOperator::message(const QString& text) {
  note(text);
}

Answer TerminalOperator::question(const QString& text, const QString& caption) {
  Q_UNUSED(caption);
  note(text);
  return Answer::No;
}

void TerminalOperator::note(const QString& text) {
  clearProgress();
  tellTerminal(text);
}

void TerminalOperator::print(const QString& text) {
  clearProgress();
  std::FILE* out = wantsRecords() ? stderr : stdout;
  std::fputs(platform::terminalText(text).constData(), out);
  std::fflush(out);
}

void TerminalOperator::progress(const Progress& progress) {
  if (!m_onTerminal || (m_progressShown && m_sinceProgress.elapsed() < progressMilliseconds)) {
    return;
  }
  const QString line = progressLine(progress);
  if (line.isEmpty()) {
    return;
  }
  std::fprintf(stderr, "\r\033[K%s", platform::terminalText(line).constData());
  std::fflush(stderr);
  m_progressShown = true;
  m_sinceProgress.start();
}

void TerminalOperator::handlePendingEvents() {
  if (interrupted.exchange(false)) {
    m_stop();
  }
}

void TerminalOperator::openDocument(const QString& path) {
  note(path);
}

void TerminalOperator::clearProgress() {
  if (m_progressShown) {
    std::fputs("\r\033[K", stderr);
    m_progressShown = false;
  }
}

} // namespace folivex
