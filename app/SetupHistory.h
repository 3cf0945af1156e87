// SetupHistory: what was done to the settings, to be undone and done again.
#pragma once

#include "engine/setup/SplitSetup.h"

#include <QUndoStack>

#include <functional>

namespace folivex {

/// Steps from one setup to the next. What is typed into one field is one step, until something else
/// is done.
class SetupHistory {
public:
  SetupHistory();

  /// The settings were changed already. `text` is what the Edit menu calls the step, `field` the
  /// key of a text that is being typed, else empty.
  void push(const SplitSetup& before, const SplitSetup& after, const QString& text,
            const QString& field = QString());
  /// What is typed from now on is a step of its own.
  void endStep() { ++m_series; }
  /// Other settings were loaded: there is no way back to these.
  void clear() { m_stack.clear(); }

  /// For the actions of a menu.
  QUndoStack& stack() { return m_stack; }

  /// The settings are to be these.
  std::function<void(const SplitSetup&)> onRestore;

private:
  class Step;
  void restore(const SplitSetup& setup);

  QUndoStack m_stack;
  int m_series = 0; ///< of typed text
};

} // namespace folivex
