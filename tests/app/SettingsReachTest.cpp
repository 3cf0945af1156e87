// Every setting is reached through its control, and comes back from the setup file.
#include "engine/setup/SetupFields.h"
#include "tests/app/MainWindowBench.h"

#include <QPlainTextEdit>

namespace folivex::testing {
namespace {

struct Row {
  const char* window; ///< action that opens the dialog; null for the main window
  const char* key;    ///< also the name of the control
  const char* value;  ///< as the file has it; "0" and "1" for a box
};

// Within a window in the order in which a person must go: a choice comes before what it makes
// usable, and behind what it makes idle.
constexpr auto report = "openReportOptions";
constexpr auto other = "openOtherSettings";
constexpr auto command = "openSplitCommand";
constexpr auto email = "openEmailSettings";
constexpr const char* mainWindow = nullptr;

const std::vector<Row>& rows() {
  static const std::vector<Row> all = {
      {report, "REPORTOPTIONSTXT", "0"},
      {report, "REPORTOPTIONSCSV", "0"},
      {report, "REPORTOPTIONSCURRENT", "0"},
      {report, "REPORTOPTIONSOUTPUTFOLDER", "/tmp"},
      {report, "REPORTUSEFILELIST", "/etc/passwd"},
      {report, "REPORTREMOVECHARS", "#&"},
      {report, "HORIZWORDSPACING", "1.250000"},
      {other, "OTHERSETTINGSREMOVEFILES", "1"},
      {other, "OTHERSETTINGSREMOVETEXT", "Ltd|Inc."},
      {command, "CONFIGUSEEXTERNAL", "1"},
      {command, "CONFIGEXTERNALCOMMAND", "/usr/bin/splitpdf"},
      {command, "CONFIGEXTERNALPARAMS", "[IN] [OUT] [START] [END]"},
      {email, "USEOUTLOOKAUTO", "1"},
      {email, "USEOUTLOOK", "0"}, // on before: without the program it can only be switched off
      {email, "EMAILENABLE", "1"},
      {email, "EMAILCONFIRM", "0"},
      {email, "EMAILTEST", "0"},
      {email, "EMAILPAUSE", "1500"},
      {email, "EMAILLOGFILE", "mails.txt"},
      {email, "EMAILSMTP", "ssl:mail.example.com:465"},
      {email, "EMAILLOGIN", "me"},
      {email, "EMAILPASSWORD", "secret"},
      {email, "EMAILFROM", "me@example.com"},
      {email, "EMAILFROMNAME", "Me"},
      {email, "EMAILINVOICECC", "you@example.com"},
      {email, "EMAILSUBJECT", "Your statement"},
      {email, "EMAILMSG", "first(return)(newline)second"},
      {email, "EMAILHTML", "1"},
      {email, "EMAILMATCHVERT", "-1"},
      {email, "EMAILMATCHVERTTO", "80"},
      {email, "EMAILMATCHHORIZFROM", "30"},
      {email, "EMAILMATCHHORIZTO", "300"},
      {email, "EMAILHORIZAFTERTEXT", "to:"},
      {email, "EMAILHORIZBEFORETEXT", "phone"},
      {mainWindow, "PAGEEXTRACT", "From match to until match using position h,v"},
      {mainWindow, "EXTRACT", "USE 'use as filename name after text' - take rest of line"},
      {mainWindow, "FILENAME", "/srv/in/a.pdf"},
      {mainWindow, "USECURRENT", "1"},
      {mainWindow, "PDFPASSWORD", "open sesame"},
      {mainWindow, "STARTFROMPAGE", "3"},
      {mainWindow, "STARTENDPAGE", "-1"},
      {mainWindow, "OCRFIRST", "1"},
      {mainWindow, "ROTATED", "1"},
      {mainWindow, "FINDSTRING", "Invoice"},
      {mainWindow, "IGNORECASE", "1"},
      {mainWindow, "MATCHPOSH", "320-325|400"},
      {mainWindow, "MATCHPOSV", "-3"},
      {mainWindow, "EXTRACTUNTIL", "Total"},
      {mainWindow, "UNTILMATCHPOSH", "-2"},
      {mainWindow, "UNTILMATCHPOSV", "700"},
      {mainWindow, "OFFSETFIRST", "1"},
      {mainWindow, "EXTRACTFILENAME", "Name:"},
      {mainWindow, "TAKENWORDSFORFILENAME", "4"},
      {mainWindow, "UNTILHHPOSLESSTHAN", "500"},
      {mainWindow, "FIRSTCHAROFWORD", "("},
      {mainWindow, "ANYCHAROFWORD", "[num]"},
      {mainWindow, "ADDBWORDS", " "},
      {mainWindow, "PREFIXFILENAME", "[YYYY]_"},
      {mainWindow, "USESOURCEFILENAME", "1"},
      {mainWindow, "POSTFIXFILENAME", "_end"},
      {mainWindow, "USESOURCEFILENAMEPOST", "1"},
      {mainWindow, "OUTPUTDIR", "/srv/out"},
      {mainWindow, "SPLITTOSOURCE", "1"},
      {mainWindow, "ALWAYSOVERWRITE", "1"},
      {mainWindow, "CREATELIST", "1"},
      {mainWindow, "KEEPBOOKMARKS", "1"},
      // Chosen last: it gives up ALWAYSOVERWRITE, whose own value is looked at before.
      {mainWindow, "ALWAYSAPPEND", "1"},
  };
  return all;
}

/// The settings that no control edits, and why.
const QHash<QString, QString>& withoutControl() {
  static const QHash<QString, QString> keys = {{"STRIPEND", "it is set in the setup file alone"}};
  return keys;
}

class SettingsReach : public MainWindowBench {
protected:
  /// As a person does: clicks, keys, choices.
  void set(QWidget* window, const Row& row) {
    auto* widget = control<QWidget>(window, row.key);
    ASSERT_TRUE(widget->isEnabled()) << row.key;
    const QString value = QString::fromLatin1(row.value);
    if (auto* box = qobject_cast<QCheckBox*>(widget)) {
      ASSERT_NE(box->isChecked(), value == "1") << row.key << " would prove nothing";
      QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(5, box->height() / 2));
      ASSERT_EQ(box->isChecked(), value == "1") << row.key;
    } else if (qobject_cast<QComboBox*>(widget) != nullptr) {
      choose(row.key, value);
    } else if (auto* message = qobject_cast<QPlainTextEdit*>(widget)) {
      message->setFocus();
      QTest::keyClicks(message, "first");
      QTest::keyClick(message, Qt::Key_Return);
      QTest::keyClicks(message, "second");
    } else {
      typeInto(window, row.key, value);
    }
  }

  void setAllIn(const char* action) {
    const auto setRows = [&](QWidget* window) {
      for (const Row& row : rows()) {
        if (row.window == action) {
          set(window, row);
        }
      }
    };
    if (action == nullptr) {
      setRows(m_window.get());
      return;
    }
    const NextDialog next([&](QDialog* dialog) {
      setRows(dialog);
      click(dialog, "ok");
      if (dialog->isVisible()) {
        ADD_FAILURE() << action << " does not close";
        dialog->reject();
      }
    });
    trigger(action);
  }

  QHash<QString, QString> save(const char* name) {
    m_dialogs.files.push_back({at(name)});
    trigger("saveSetup");
    EXPECT_EQ(m_dialogs.messages.takeLast(), at(name) + " saved.");
    return valuesInFile(at(name));
  }
};

TEST_F(SettingsReach, EverySettingComesBackFromTheFile) {
  open();
  m_window->program().store().edited().useOutlook = true;
  m_window->program().store().edited().emailFrom.clear();
  m_window->refresh();
  for (const char* window : {report, other, command, email, mainWindow}) {
    setAllIn(window);
    if (HasFatalFailure()) {
      return;
    }
  }
  QHash<QString, QString> values = save("all.fxs");
  EXPECT_EQ(values["ALWAYSOVERWRITE"], "0"); // given up for append
  click(m_window.get(), "ALWAYSOVERWRITE");
  values["ALWAYSOVERWRITE"] = save("overwrite.fxs")["ALWAYSOVERWRITE"];
  QSet<QString> reached;
  for (const Row& row : rows()) {
    EXPECT_EQ(values[row.key], row.value) << row.key;
    reached += row.key;
  }
  for (const SetupField& field : setupFields()) {
    const bool isSetting = !std::holds_alternative<AutomationKey>(field.member) &&
                           !std::holds_alternative<AddSpaceKey>(field.member);
    const QString key(field.key);
    if (isSetting) {
      EXPECT_NE(reached.contains(key), withoutControl().contains(key)) << key.toStdString();
    }
  }
}

TEST_F(SettingsReach, SettingsWithoutAControlAreKept) {
  open();
  m_window->program().store().working().stripEnd = 3;
  setAllIn(report);
  EXPECT_EQ(save("kept.fxs")["STRIPEND"], "3");
}

TEST_F(SettingsReach, CancelledDialogsChangeNothing) {
  open();
  const SplitSetup before = m_window->currentSetup();
  for (const char* action : {report, other, command, email}) {
    const NextDialog next([&](QDialog* dialog) {
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
