#include "app/dialogs/SetupBinding.h"

#include "engine/setup/SetupFields.h"
#include "widgets/Controls.h"
#include "widgets/ListTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>

namespace folivex {

namespace {

// What fields of numbers have room for.
constexpr int charactersOfRange = 9;
constexpr int digitsOfPlace = 6;

template <typename Value> const SetupField& fieldOf(Value SplitSetup::*setting) {
  const auto fields = setupFields();
  const auto field = std::find_if(fields.begin(), fields.end(), [&](const SetupField& candidate) {
    const auto* member = std::get_if<Value SplitSetup::*>(&candidate.member);
    return member != nullptr && *member == setting;
  });
  Q_ASSERT(field != fields.end());
  return *field;
}

/// "1.02" and not "1.020000": as a person would write it.
QString factorText(double value) {
  return QString::number(value, 'g', 10);
}

} // namespace

template <typename Value, typename Control, typename Signal>
SetupBinding::Row& SetupBinding::add(Value SplitSetup::*setting, Control* control, Signal changed) {
  const SetupField& field = fieldOf(setting);
  const QString key(field.key);
  control->setObjectName(key);
  control->setToolTip(cellToolTip(QString::fromLatin1(field.tip)));
  QObject::connect(control, changed, control, [this, key] {
    if (!m_isShowing && onEdited) {
      onEdited(key);
    }
  });
  Row& row = m_rows.emplace_back();
  row.key = key;
  row.control = control;
  row.problem = std::make_unique<FieldProblem>(control);
  return row;
}

QCheckBox* SetupBinding::box(bool SplitSetup::*setting, const QString& label, QWidget* line) {
  auto* box = new QCheckBox(label, line);
  Row& row = add(setting, box, &QCheckBox::toggled);
  row.show = [=](const SplitSetup& setup) { box->setChecked(setup.*setting); };
  row.take = [=](SplitSetup& setup) { setup.*setting = box->isChecked(); };
  return box;
}

QLineEdit* SetupBinding::text(QString SplitSetup::*setting, Shown shown, QWidget* line) {
  QLineEdit* field =
      shown == Shown::Position ? numberField(line, charactersOfRange) : new QLineEdit(line);
  field->setEchoMode(shown == Shown::Never ? QLineEdit::Password : QLineEdit::Normal);
  if (const int limit = fieldOf(setting).limit; limit > 0) {
    field->setMaxLength(limit);
  }
  Row& row = add(setting, field, &QLineEdit::textChanged);
  row.show = [=](const SplitSetup& setup) {
    field->setText(setup.*setting);
    if (shown != Shown::End) {
      field->setCursorPosition(0);
    }
  };
  row.take = [=](SplitSetup& setup) { setup.*setting = field->text(); };
  return field;
}

QLineEdit* SetupBinding::whole(int SplitSetup::*setting, WholeLimits limits, QWidget* line) {
  QLineEdit* field = numberField(line, digitsOfPlace);
  Row& row = add(setting, field, &QLineEdit::textChanged);
  row.show = [=](const SplitSetup& setup) { field->setText(QString::number(setup.*setting)); };
  row.take = [=](SplitSetup& setup) {
    bool isNumber = false;
    const int value = field->text().trimmed().toInt(&isNumber);
    setup.*setting = isNumber ? value : setup.*setting;
  };
  row.inputProblem = [=] { return wholeNumberProblem(field->text(), limits); };
  return field;
}

QLineEdit* SetupBinding::factor(double SplitSetup::*setting, QWidget* line) {
  QLineEdit* field = numberField(line, charactersOfRange);
  Row& row = add(setting, field, &QLineEdit::textChanged);
  row.show = [=](const SplitSetup& setup) { field->setText(factorText(setup.*setting)); };
  row.take = [=](SplitSetup& setup) {
    if (factorProblem(field->text()).isEmpty()) {
      setup.*setting = field->text().trimmed().toDouble();
    }
  };
  row.inputProblem = [=] { return factorProblem(field->text()); };
  return field;
}

QComboBox* SetupBinding::list(QString SplitSetup::*setting, const QStringList& entries,
                              QWidget* line) {
  auto* list = new QComboBox(line);
  list->addItems(entries);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  Row& row = add(setting, list, &QComboBox::currentIndexChanged);
  row.show = [=](const SplitSetup& setup) {
    const QString& text = setup.*setting;
    // A separator of the list is an entry with an empty text.
    const int entry =
        text.isEmpty() ? -1 : list->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    list->setCurrentIndex(std::max(entry, 0));
  };
  row.take = [=](SplitSetup& setup) { setup.*setting = list->currentText(); };
  return list;
}

QPlainTextEdit* SetupBinding::longText(QString SplitSetup::*setting, QWidget* line) {
  auto* field = new QPlainTextEdit(line);
  constexpr int linesAtLeast = 5;
  field->setMinimumHeight(linesAtLeast * field->fontMetrics().lineSpacing());
  field->setTabChangesFocus(true);
  Row& row = add(setting, field, &QPlainTextEdit::textChanged);
  row.show = [=](const SplitSetup& setup) {
    field->setPlainText(
        QString(setup.*setting).replace(QLatin1String("\r\n"), QLatin1String("\n")));
  };
  row.take = [=](SplitSetup& setup) {
    setup.*setting = field->toPlainText().replace(u'\n', QLatin1String("\r\n"));
  };
  return field;
}

QLabel* SetupBinding::problemLine() const {
  return m_rows.back().problem->label();
}

void SetupBinding::follow(QWidget* companion) {
  m_rows.back().companions += companion;
}

void SetupBinding::say(QLabel* label, Words words) {
  m_words.emplace_back(label, words);
}

void SetupBinding::show(const SplitSetup& setup) {
  m_isShowing = true;
  for (const Row& row : m_rows) {
    row.show(setup);
  }
  m_isShowing = false;
}

void SetupBinding::take(SplitSetup& setup) const {
  for (const Row& row : m_rows) {
    row.take(setup);
  }
}

void SetupBinding::adapt(const SplitSetup& setup, const QSet<QString>& idle) {
  for (const Row& row : m_rows) {
    for (QWidget* widget : QList<QWidget*>{row.control} + row.companions) {
      widget->setEnabled(!idle.contains(row.key));
    }
  }
  for (const auto& [label, words] : m_words) {
    label->setText(words(setup));
  }
}

void SetupBinding::hideLines(const QSet<QString>& keys) {
  QSet<QWidget*> seen;
  for (const Row& row : m_rows) {
    if (!keys.contains(row.key)) {
      seen += row.control->parentWidget();
    }
  }
  for (const Row& row : m_rows) {
    QWidget* line = row.control->parentWidget();
    for (QWidget* widget : QList<QWidget*>{line} + row.companions) {
      widget->setVisible(seen.contains(line));
    }
  }
}

SettingFindings SetupBinding::inputFindings() const {
  SettingFindings findings;
  for (const Row& row : m_rows) {
    const QString problem =
        row.inputProblem && row.control->isEnabled() ? row.inputProblem() : QString();
    if (!problem.isEmpty()) {
      findings.push_back({row.key, problem, FindingKind::Problem});
    }
  }
  return findings;
}

QString SetupBinding::label(const QString& key) const {
  const QWidget* of = control(key);
  const auto* box = qobject_cast<const QCheckBox*>(of);
  return box == nullptr ? of->accessibleName() : box->text().remove(u'&');
}

QString SetupBinding::said(const QString& key) const {
  const auto* field = qobject_cast<const QLineEdit*>(control(key));
  const auto* list = qobject_cast<const QComboBox*>(control(key));
  const QString value = list != nullptr ? list->currentText()
                        : field != nullptr && field->echoMode() == QLineEdit::Normal ? field->text()
                                                                                     : QString();
  return value.isEmpty() ? label(key) : label(key) + u' ' + value;
}

void SetupBinding::tell(const SettingFindings& findings, Telling telling) {
  for (Row& row : m_rows) {
    const auto found =
        std::find_if(findings.begin(), findings.end(),
                     [&](const SettingFinding& finding) { return finding.key == row.key; });
    const bool isProblem = found != findings.end() && found->kind == FindingKind::Problem;
    const bool isTold = found != findings.end() && row.control->isEnabled() &&
                        (!isProblem || telling == Telling::All || row.tellsProblem);
    row.problem->tell(isTold ? found->text : QString(),
                      isProblem ? FieldProblem::Weight::Problem : FieldProblem::Weight::Hint);
    row.tellsProblem = isTold && isProblem;
  }
}

void SetupBinding::focusFirstProblem() const {
  for (const Row& row : m_rows) {
    if (!row.tellsProblem) {
      continue;
    }
    row.control->setFocus(Qt::OtherFocusReason);
    if (auto* field = qobject_cast<QLineEdit*>(row.control)) {
      field->selectAll();
    }
    return;
  }
}

QStringList SetupBinding::keys() const {
  QStringList keys;
  for (const Row& row : m_rows) {
    keys += row.key;
  }
  return keys;
}

QWidget* SetupBinding::control(const QString& key) const {
  const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                [&](const Row& candidate) { return candidate.key == key; });
  return row == m_rows.end() ? nullptr : row->control;
}

} // namespace folivex
