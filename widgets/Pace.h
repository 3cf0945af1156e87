// Pace: doing something often enough, and no oftener.
#pragma once

#include <QElapsedTimer>

namespace folivex {

/// Asked at every step of fast work whether it is time for something slow.
class Pace {
public:
  explicit Pace(int milliseconds) : m_milliseconds(milliseconds) {}

  /// True at the first call, and then whenever the time has passed since it was true.
  bool isDue() {
    if (m_last.isValid() && m_last.elapsed() < m_milliseconds) {
      return false;
    }
    m_last.start();
    return true;
  }
  void reset() { m_last.invalidate(); }

private:
  int m_milliseconds;
  QElapsedTimer m_last;
};

} // namespace folivex
