// Every setting is reached through its control, and comes back from the setup file.
#include "engine/setup/SetupFields.h"
#include "tests/app/MainWindowBench.h"
#include "tests/support/Rows.h"

#include <QPlainTextEdit>

namespace folivex::testing {
namespace {

constexpr const char* dialogActions[] = {"openReportOptions", "openOtherSettings",
                                         "openSplitCommand", "openEmailSettings"};

/// Where not any text will do; as the file has it.
const QHash<QString, QString>& ownValues() {
  static const QHash<QString, QString> values = [] {
    QHash<QString, QString> all;
    test::forEachRow("app/own-values.json",
                     [&all](const SplitSetup&, const QStringList& row) { all[row[0]] = row[1]; });
    return all;
  }();
  return values;
}

/// The value that tells a setting apart from all others; empty for what is no setting.
QString valueOf(const QString& key) {
  const auto fields = setupFields();
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [&](const SetupField& one) { return one.key == key; });
  if (field == fields.end()) {
    return {};
  }
  return ownValues().value(key, std::holds_alternative<int SplitSetup::*>(field->member)
                                    ? QString::number(100 + (field - fields.begin()))
                                    : key.toLower());
}

class SettingsReach : public MainWindowBench {
protected:
  static int kindOf(const QWidget* widget) {
    return qobject_cast<const QComboBox*>(widget) != nullptr   ? 0
           : qobject_cast<const QCheckBox*>(widget) != nullptr ? 2
                                                               : 1;
  }

  /// As a person does: choices first, and boxes behind the fields that they make idle.
  void setAll(QWidget* window) {
    QList<QWidget*> controls = window->findChildren<QWidget*>();
    std::reverse(controls.begin(), controls.end());
    for (const int kind : {0, 1, 2, 1, 2}) {
      for (QWidget* widget : controls) {
        const QString key = widget->objectName();
        if (widget->window() == window && widget->isEnabled() && kindOf(widget) == kind &&
            !m_typed.contains(key) && !valueOf(key).isEmpty()) {
          set(window, widget, key);
        }
      }
    }
  }

  void set(QWidget* window, QWidget* widget, const QString& key) {
    const QByteArray name = key.toLatin1();
    m_typed[key] = valueOf(key);
    if (auto* box = qobject_cast<QCheckBox*>(widget)) {
      m_typed[key] = QString::number(static_cast<int>(!box->isChecked()));
      QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(5, box->height() / 2));
    } else if (qobject_cast<QComboBox*>(widget) != nullptr) {
      choose(name, m_typed[key]);
    } else if (qobject_cast<QPlainTextEdit*>(widget) != nullptr) {
      typeInto(window, name, "first");
      QTest::keyClick(widget, Qt::Key_Return);
      QTest::keyClicks(widget, "second");
    } else {
      typeInto(window, name, m_typed[key]);
    }
  }

  /// The values of the settings as saved, a key that stands twice with its last value.
  QHash<QString, QString> saved(const char* name) {
    m_dialogs.files.push_back({at(name)});
    trigger("saveSetup");
    EXPECT_EQ(m_dialogs.messages.takeLast(), at(name) + " saved.");
    QHash<QString, QString> values;
    const QString all = QString::fromUtf8(test::contentOf(at(name))).remove(u'\r');
    for (const QString& line : all.split(u'\n')) {
      QString& value = values[line.section(u';', 0, 0)];
      value = line.section(u';', 1);
      value.chop(1); // the blank at the end
    }
    return values;
  }

  QHash<QString, QString> m_typed;
};

TEST_F(SettingsReach, EverySettingComesBackFromTheFile) {
  open();
  SplitSetup& setup = m_window->program().store().edited();
  setup.useOutlook = true; // without that program it can only be switched off
  setup.emailFrom.clear();
  m_window->program().store().working().stripEnd = 3; // set in the setup file alone
  m_window->refresh();
  for (const char* action : dialogActions) {
    const DialogScript next([&](QDialog* dialog) {
      setAll(dialog);
      click(dialog, "ok");
      EXPECT_FALSE(dialog->isVisible()) << action << " does not close";
      dialog->hide();
    });
    trigger(action);
  }
  setAll(m_window.get());
  m_typed["STRIPEND"] = "3";
  QHash<QString, QString> values = saved("all.fxs");
  EXPECT_EQ(values["ALWAYSAPPEND"], "0"); // given up for overwriting
  click(m_window.get(), "ALWAYSAPPEND");
  values["ALWAYSAPPEND"] = saved("append.fxs")["ALWAYSAPPEND"];
  for (const SetupField& field : setupFields()) {
    if (!std::holds_alternative<AutomationKey>(field.member) &&
        !std::holds_alternative<AddSpaceKey>(field.member)) {
      const QString key(field.key);
      EXPECT_TRUE(m_typed.contains(key)) << "no control for " << key.toStdString();
      EXPECT_EQ(values[key], m_typed[key]) << key.toStdString();
    }
  }
}

TEST_F(SettingsReach, CancelledDialogsChangeNothing) {
  open();
  const SplitSetup before = m_window->currentSetup();
  for (const char* action : dialogActions) {
    const DialogScript next([&](QDialog* dialog) {
      for (auto* box : dialog->findChildren<QCheckBox*>()) {
        box->toggle();
      }
      click(dialog, "cancel");
    });
    trigger(action);
  }
  EXPECT_EQ(m_window->currentSetup(), before);
}

} // namespace
} // namespace folivex::testing
