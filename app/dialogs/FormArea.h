// FormArea: groups of settings in one column or two, as many as there is room for.
#pragma once

#include <QList>
#include <QScrollArea>

class QBoxLayout;

namespace folivex {

/// Where the width is too small for two columns, the second one stands below the first; where the
/// height is too small, the area scrolls. It never scrolls both ways: that is no way to fill in a
/// form.
class FormArea : public QScrollArea {
public:
  explicit FormArea(QWidget* parent);

  /// Takes the groups (owners of grids); `right` may be empty. To be called once. A column that has
  /// something which can grow is as high as the area, else its groups stand at the top.
  void setColumns(const QList<QWidget*>& left, const QList<QWidget*>& right);

  /// Lines that tell problems have come or gone.
  void fitContent();
  /// Height that is missing for everything to be seen without scrolling; 0 when nothing is.
  int missingHeight() const;

  QSize sizeHint() const override; ///< everything seen without scrolling

protected:
  void resizeEvent(QResizeEvent* event) override;

private:
  enum class Arrangement { SideBySide, Stacked };
  void arrange(Arrangement arrangement);

  QList<QWidget*> m_left;
  QList<QWidget*> m_right;
  QBoxLayout* m_columns = nullptr;
  int m_sideBySideWidth = 0; ///< less than this has no room for two columns
};

} // namespace folivex
