#include "app/groups/SearchGroup.h"
#include "widgets/Controls.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace folivex {

SearchGroup::SearchGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("searchGroup", QStringLiteral("Which words, and where"), "search", parts, parent),
      m_viewPage(nullptr) {
  QLineEdit* find = textField(&SplitSetup::findString);
  QCheckBox* ignoreCase =
      box(&SplitSetup::ignoreCase, QStringLiteral("&Ignore case sensitive text"));
  QLineEdit* h = positionField(&SplitSetup::matchPosH);
  QLineEdit* v = positionField(&SplitSetup::matchPosV);
  m_viewPage = sideButton("viewPageButton", QStringLiteral("View Pa&ge h,v..."),
                          QStringLiteral("See a page, and where its words stand"), this);
  QLineEdit* until = textField(&SplitSetup::extractUntil);
  QLineEdit* untilH = wholeField(&SplitSetup::untilMatchPosH);
  QLineEdit* untilV = wholeField(&SplitSetup::untilMatchPosV);

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("Find &word(s):"), {find, ignoreCase});
  grid.row(QStringLiteral("&At Position h:"),
           {h, between(QStringLiteral("&v:"), v), v, m_viewPage});
  grid.row(QStringLiteral("E&xtract until word(s):"), {until});
  grid.row(QStringLiteral("At Position h:"),
           {untilH, between(QStringLiteral("v:"), untilV), untilV});
}

} // namespace folivex
