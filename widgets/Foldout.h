// Foldout: a part of a form below a title that folds it away.
#pragma once

#include <QWidget>

#include <functional>

class QToolButton;

namespace folivex {

/// A title that is a button (click, Space or Enter), and the body that it shows and hides.
class Foldout : public QWidget {
public:
  enum class Rank { Section, Part };
  /// A section stands out; a part belongs to the section around it. The body is unfolded, and has
  /// no layout yet. The title's object name is `name` with "Title" behind it.
  Foldout(const char* name, const QString& title, Rank rank, QWidget* parent);

  Rank rank() const { return m_rank; }
  QWidget* body() const { return m_body; }
  QToolButton* title() const;

  bool isFolded() const { return m_isFolded; }
  void setFolded(bool folded);

  /// What there is inside beside defaults, in a few words; the title says it while folded.
  void setHeld(const QString& text);

  /// The person folded or unfolded it.
  std::function<void()> onToggled;

private:
  class Title;
  void describe();

  Rank m_rank;
  Title* m_title;
  QWidget* m_body;
  bool m_isFolded = false;
};

/// Unfolds all that `widget` is folded away in.
void unfoldTo(QWidget* widget);

} // namespace folivex
