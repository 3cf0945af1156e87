// NoticeLine: what a window says about the last thing that it did, where no box is called for.
#pragma once

#include <QLabel>

namespace folivex {

/// Takes no room while there is nothing to say. A path in the text is wrapped and never makes the
/// window wider; pointed at, it is told whole.
class NoticeLine : public QLabel {
public:
  explicit NoticeLine(QWidget* parent);

  void tell(const QString& text);
};

} // namespace folivex
