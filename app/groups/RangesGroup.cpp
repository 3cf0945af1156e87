#include "app/groups/RangesGroup.h"

#include "engine/plan/SplitMethod.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

namespace folivex {

RangesGroup::RangesGroup(GroupParts parts, QWidget* parent)
    : SetupGroup("rangesGroup", QStringLiteral("How pages make a document"), "ranges", parts,
                 parent),
      m_methods(new QComboBox(this)) {
  for (const QString& text : splitMethodTexts()) {
    m_methods->addItem(text);
  }
  m_methods->insertSeparator(m_methods->count());
  for (const QString& text : bookmarkMethodTexts()) {
    m_methods->addItem(text);
  }
  m_methods->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  parts.binding.bind(&SplitSetup::pageExtract, m_methods);
  QLineEdit* offset = wholeField(&SplitSetup::offsetFirst, {0, std::numeric_limits<int>::max()});

  FormGrid grid(this, parts.binding);
  grid.row(QStringLiteral("* Page &extract:"), {m_methods});
  grid.row(QStringLiteral("Remove first:"),
           {offset, between(QStringLiteral("output pages"), offset)});
}

} // namespace folivex
