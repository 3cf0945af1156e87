#include "widgets/NoticeLine.h"

#include <QRegularExpression>

namespace folivex {

namespace {

/// A long path may go on in the next line behind any separator.
QString breakable(QString text) {
  static const QRegularExpression separators(QStringLiteral("([/\\\\])"));
  return text.replace(separators, QStringLiteral("\\1\u200B"));
}

} // namespace

NoticeLine::NoticeLine(QWidget* parent) : QLabel(parent) {
  setObjectName(QStringLiteral("notice"));
  setTextFormat(Qt::PlainText); // paths are no markup
  setWordWrap(true);
  QSizePolicy policy = sizePolicy();
  policy.setHorizontalPolicy(QSizePolicy::Ignored);
  setSizePolicy(policy);
  hide();
}

void NoticeLine::tell(const QString& text) {
  setText(breakable(text));
  setToolTip(text.isEmpty() ? QString() : QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()));
  setVisible(!text.isEmpty());
}

} // namespace folivex
