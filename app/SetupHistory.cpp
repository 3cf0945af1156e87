#include "app/SetupHistory.h"

namespace folivex {

class SetupHistory::Step : public QUndoCommand {
public:
  struct Setups {
    SplitSetup before;
    SplitSetup after;
  };
  Step(SetupHistory& history, Setups setups, const QString& text, const QString& field)
      : QUndoCommand(text), m_history(history), m_setups(std::move(setups)), m_field(field),
        m_series(history.m_series) {}

  int id() const override { return m_field.isEmpty() ? -1 : 1; }

  bool mergeWith(const QUndoCommand* other) override {
    const auto* next = static_cast<const Step*>(other);
    if (next->m_field != m_field || next->m_series != m_series) {
      return false;
    }
    m_setups.after = next->m_setups.after;
    setObsolete(m_setups.after == m_setups.before);
    return true;
  }

  void undo() override { m_history.restore(m_setups.before); }
  void redo() override {
    if (m_isDone) {
      m_history.restore(m_setups.after);
    }
    m_isDone = true;
  }

private:
  SetupHistory& m_history;
  Setups m_setups;
  QString m_field;
  int m_series;
  bool m_isDone = false; ///< a step begins with what the person did
};

SetupHistory::SetupHistory() {
  constexpr int most = 200;
  m_stack.setUndoLimit(most);
}

void SetupHistory::push(const SplitSetup& before, const SplitSetup& after, const QString& text,
                        const QString& field) {
  m_stack.push(new Step(*this, {before, after}, text, field));
}

void SetupHistory::restore(const SplitSetup& setup) {
  endStep();
  if (onRestore) {
    onRestore(setup);
  }
}

} // namespace folivex
