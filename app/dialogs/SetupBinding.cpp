#include "app/dialogs/SetupBinding.h"

#include "engine/setup/SetupFields.h"
#include "widgets/Controls.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>

namespace folivex {

namespace {

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

SetupBinding::Row& SetupBinding::add(const SetupField& setting, QWidget* control) {
  const QString key(setting.key);
  control->setObjectName(key);
  if (control->toolTip().isEmpty()) {
    // As a paragraph it is broken into lines; a plain text would be one long one.
    control->setToolTip(
        QStringLiteral("<p>%1</p>").arg(QLatin1StringView(setting.tip).toString().toHtmlEscaped()));
  }
  m_rows.push_back({key, control, std::make_unique<FieldProblem>(control), {}, {}, {}, false});
  return m_rows.back();
}

void SetupBinding::edited(const QWidget* control) {
  if (!m_isShowing && onEdited) {
    onEdited(control->objectName());
  }
}

void SetupBinding::bind(bool SplitSetup::*setting, QCheckBox* box) {
  Row& row = add(fieldOf(setting), box);
  row.show = [=](const SplitSetup& setup) { box->setChecked(setup.*setting); };
  row.take = [=](SplitSetup& setup) { setup.*setting = box->isChecked(); };
  QObject::connect(box, &QCheckBox::toggled, box, [=, this] { edited(box); });
}

void SetupBinding::bind(QString SplitSetup::*setting, QLineEdit* field, Shown shown) {
  Row& row = add(fieldOf(setting), field);
  if (const int limit = fieldOf(setting).limit; limit > 0) {
    field->setMaxLength(limit);
  }
  row.show = [=](const SplitSetup& setup) {
    field->setText(setup.*setting);
    if (shown == Shown::Front) {
      field->setCursorPosition(0);
    }
  };
  row.take = [=](SplitSetup& setup) { setup.*setting = field->text(); };
  QObject::connect(field, &QLineEdit::textChanged, field, [=, this] { edited(field); });
}

void SetupBinding::bind(QString SplitSetup::*setting, QComboBox* list) {
  Row& row = add(fieldOf(setting), list);
  row.show = [=](const SplitSetup& setup) {
    const QString& text = setup.*setting;
    // A separator of the list is an entry with an empty text.
    const int entry =
        text.isEmpty() ? -1 : list->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive);
    list->setCurrentIndex(std::max(entry, 0));
  };
  row.take = [=](SplitSetup& setup) { setup.*setting = list->currentText(); };
  QObject::connect(list, &QComboBox::currentIndexChanged, list, [=, this] { edited(list); });
}

void SetupBinding::bind(QString SplitSetup::*setting, QPlainTextEdit* field) {
  Row& row = add(fieldOf(setting), field);
  row.show = [=](const SplitSetup& setup) {
    field->setPlainText(
        QString(setup.*setting).replace(QLatin1String("\r\n"), QLatin1String("\n")));
  };
  row.take = [=](SplitSetup& setup) {
    setup.*setting = field->toPlainText().replace(u'\n', QLatin1String("\r\n"));
  };
  QObject::connect(field, &QPlainTextEdit::textChanged, field, [=, this] { edited(field); });
}

void SetupBinding::bind(int SplitSetup::*setting, QLineEdit* field, WholeLimits limits) {
  Row& row = add(fieldOf(setting), field);
  row.show = [=](const SplitSetup& setup) { field->setText(QString::number(setup.*setting)); };
  row.take = [=](SplitSetup& setup) {
    bool isNumber = false;
    const int value = field->text().trimmed().toInt(&isNumber);
    setup.*setting = isNumber ? value : setup.*setting;
  };
  row.inputProblem = [=] { return wholeNumberProblem(field->text(), limits); };
  QObject::connect(field, &QLineEdit::textChanged, field, [=, this] { edited(field); });
}

void SetupBinding::bind(double SplitSetup::*setting, QLineEdit* field) {
  Row& row = add(fieldOf(setting), field);
  row.show = [=](const SplitSetup& setup) { field->setText(factorText(setup.*setting)); };
  row.take = [=](SplitSetup& setup) {
    if (factorProblem(field->text()).isEmpty()) {
      setup.*setting = field->text().trimmed().toDouble();
    }
  };
  row.inputProblem = [=] { return factorProblem(field->text()); };
  QObject::connect(field, &QLineEdit::textChanged, field, [=, this] { edited(field); });
}

QLineEdit* SetupBinding::field(QString SplitSetup::*setting, QWidget* parent, Shown shown) {
  auto* made = new QLineEdit(parent);
  bind(setting, made, shown);
  return made;
}

QLineEdit* SetupBinding::numberField(int SplitSetup::*setting, QWidget* parent,
                                     WholeLimits limits) {
  QLineEdit* made = folivex::numberField(parent);
  bind(setting, made, limits);
  return made;
}

QCheckBox* SetupBinding::box(bool SplitSetup::*setting, const QString& label, QWidget* parent) {
  auto* made = new QCheckBox(label, parent);
  bind(setting, made);
  return made;
}

void SetupBinding::follow(const QString& key, QWidget* companion) {
  m_companions[key] += companion;
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

void SetupBinding::disable(const QSet<QString>& keys) {
  for (const Row& row : m_rows) {
    const bool enabled = !keys.contains(row.key);
    row.control->setEnabled(enabled);
    for (QWidget* companion : m_companions.value(row.key)) {
      companion->setEnabled(enabled);
    }
  }
}

void SetupBinding::addLine(const QStringList& keys, const QList<QWidget*>& widgets) {
  m_lines.push_back({QSet<QString>(keys.begin(), keys.end()), widgets});
}

void SetupBinding::hideLines(const QSet<QString>& keys) {
  for (const Line& line : m_lines) {
    const bool isSeen = line.keys.isEmpty() || !keys.contains(line.keys);
    for (QWidget* widget : line.widgets) {
      widget->setVisible(isSeen);
    }
  }
}

QString SetupBinding::label(const QString& key) const {
  const auto plain = [](const QString& text) {
    QString all = text;
    return all.remove(u'&');
  };
  const QWidget* of = control(key);
  if (of != nullptr && !of->accessibleName().isEmpty()) {
    return of->accessibleName(); // its label alone would not tell it apart
  }
  if (const auto* box = qobject_cast<const QCheckBox*>(of)) {
    return plain(box->text());
  }
  for (const QWidget* companion : m_companions.value(key)) {
    if (const auto* text = qobject_cast<const QLabel*>(companion)) {
      return plain(text->text());
    }
  }
  return key;
}

QString SetupBinding::shownValue(const QString& key) const {
  const QWidget* of = control(key);
  if (const auto* field = qobject_cast<const QLineEdit*>(of)) {
    return field->echoMode() == QLineEdit::Normal ? field->text() : QString();
  }
  const auto* list = qobject_cast<const QComboBox*>(of);
  return list == nullptr ? QString() : list->currentText();
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

void SetupBinding::focusFirst(const SettingFindings& findings) const {
  for (const Row& row : m_rows) {
    const bool isWrong =
        std::any_of(findings.begin(), findings.end(), [&](const SettingFinding& finding) {
          return finding.key == row.key && finding.kind == FindingKind::Problem;
        });
    if (isWrong) {
      row.control->setFocus(Qt::OtherFocusReason);
      if (auto* field = qobject_cast<QLineEdit*>(row.control)) {
        field->selectAll();
      }
      return;
    }
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

QLabel* SetupBinding::problemLine(const QWidget* control) const {
  const auto row = std::find_if(m_rows.begin(), m_rows.end(),
                                [&](const Row& candidate) { return candidate.control == control; });
  return row == m_rows.end() ? nullptr : row->problem->label();
}

} // namespace folivex
