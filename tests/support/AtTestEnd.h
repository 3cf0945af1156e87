// atTestEnd: what a test program has to put away while everything that it stands on is whole.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <utility>

namespace folivex::test {

/// Calls `action` behind the last test. Libraries are let go there: when the process takes its
/// static objects down, a thread of theirs that still frees a source would find some of them gone.
inline void atTestEnd(std::function<void()> action) {
  class Listener : public testing::EmptyTestEventListener {
  public:
    explicit Listener(std::function<void()> action) : m_action(std::move(action)) {}
    void OnTestProgramEnd(const testing::UnitTest& /*test*/) override { m_action(); }

  private:
    std::function<void()> m_action;
  };
  // The list owns its listeners.
  testing::UnitTest::GetInstance()->listeners().Append(new Listener(std::move(action)));
}

} // namespace folivex::test
