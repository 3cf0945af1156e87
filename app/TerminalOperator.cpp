#include "app/TerminalOperator.h"

#include "platform/Terminal.h"

#include <atomic>
#include <csignal>
#include <cstdio>
#include <utility>

namespace folivex {

namespace {

constexpr qint64 progressMilliseconds = 100;

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free, "read and written by a signal handler");

extern "C" void onInterrupt(int signal) {
  interrupted = true;
  // A second one ends the program at once.
  std::signal(signal, SIG_DFL);
}

} // namespace

void catchSignals() {
  std::signal(SIGINT, onInterrupt);
  std::signal(SIGTERM, onInterrupt);
#if defined(SIGXFSZ)
  // A file over its size limit, and a reader that has gone, are write errors like any other.
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
#endif
}

TerminalOperator::TerminalOperator(std::function<void()> stop)
    : m_stop(std::move(stop)), m_onTerminal(platform::isTerminal(stderr)) {}

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
  std::fprintf(stderr, "%s\n", platform::terminalText(text).constData());
}

void TerminalOperator::print(const QString& text) {
  clearProgress();
  std::fputs(platform::terminalText(text).constData(), stdout);
  std::fflush(stdout);
}

void TerminalOperator::progress(const Progress& progress) {
  if (!m_onTerminal || progress.pageCount == 0) {
    return;
  }
  if (m_progressShown && m_sinceProgress.elapsed() < progressMilliseconds) {
    return;
  }
  std::fprintf(stderr, "\r\033[KPage %d of %d, %d file(s)", progress.page, progress.pageCount,
               progress.outputs);
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
