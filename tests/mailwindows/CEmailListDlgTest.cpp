// The list, through its menus, keys and mouse.
#include "mail/windows/CEmailListDlg.h"
#include "mail/windows/EmailModel.h"
#include "tests/mailwindows/MailWindows.h"
#include "widgets/DesktopDialogs.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace folivex::testing {
namespace {

class EmailListDialog : public MailWindows {
protected:
  EmailListDialog() {
    list.show();
    EXPECT_TRUE(waitUntil([this] { return list.isActiveWindow(); }));
  }

  /// Rows "a@x.example" with "/out/9.pdf" and so on; a dot is a row without an address.
  void fill(const QString& letters, const QString& body = {}) {
    EmailEntries entries;
    for (const QChar letter : letters) {
      EmailEntry entry;
      entry.address = letter == u'.' ? QString() : letter + QStringLiteral("@x.example");
      entry.file = QStringLiteral("/out/%1.pdf").arg(letters.size() - qsizetype(entries.size()));
      entry.body = body;
      entries.push_back(entry);
    }
    EmailList filled;
    filled.setEntries(entries, {});
    list.showRun(std::move(filled), {});
  }
  /// First letters of the addresses that are seen.
  QString seen() {
    QString letters;
    for (const QString& address : shownIn(&list)) {
      letters += address.isEmpty() ? QStringLiteral(".") : address.left(1);
    }
    return letters;
  }
  QString sending() {
    QString letters;
    for (const EmailRow& row : list.toSend().rows()) {
      letters += row.entry.address.left(1);
    }
    return letters;
  }
  void choose(const char* action) { control<QAction>(&list, action)->trigger(); }
  QString label(const char* name) {
    return control<QLabel>(&list, name)->text().remove(QChar(0x200B));
  }
  void clickHeader(EmailColumn column) {
    QHeaderView* header = tableOf(&list)->horizontalHeader();
    const int x = header->sectionViewportPosition(static_cast<int>(column)) + 5;
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, {x, header->height() / 2});
  }
  QPoint placeOf(int row) {
    return tableOf(&list)->visualRect(tableOf(&list)->model()->index(row, 0)).center();
  }
  void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(tableOf(&list)->viewport(), Qt::LeftButton, modifiers, placeOf(row));
  }

  CEmailListDlg list{dialogs, nullptr};
  QAbstractItemModelTester tester{tableOf(&list)->model(),
                                  QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(EmailListDialog, OwnTextsAreShownWhereThereAreAny) {
  EXPECT_FALSE(control<QPushButton>(&list, "send")->isEnabled());
  for (const QString& body : {QString(), QStringLiteral("own"), QString()}) {
    fill("ab.", body);
    for (int i = 0; i < emailColumnCount; ++i) {
      EXPECT_EQ(tableOf(&list)->isColumnHidden(i), body.isEmpty() && i >= 4 && i <= 7) << i;
    }
  }
  EXPECT_EQ(label("countLine"), "3 rows, 2 with an address, 0 selected");
}

TEST_F(EmailListDialog, LoadsAndSavesByteForByte) {
  const QByteArray bytes = "\xEF\xBB\xBFUNICODEV4\r\r\n"
                           "a@x.example|/out/1.pdf|3|5\r\r\n"
                           "|/out/\xC3\xBC.pdf|0|x\r\r\n";
  write("in.lst", bytes);
  QDir::setCurrent(folder.path());
  // Nothing is loaded as yet: an existing file is left alone.
  choose("saveList");
  EXPECT_FALSE(QFile::exists(at("default.lst")));

  dialogs.files = {{at("in.lst")}, {at("out.lst")}, {at("no/out.lst")}, {at("gone.lst")}};
  choose("loadList");
  EXPECT_EQ(shownIn(&list), QStringList({"a@x.example", ""}));
  EXPECT_EQ(shownIn(&list, EmailColumn::ExtractPageEnd), QStringList({"5", "x"}));
  choose("saveListAs");
  EXPECT_EQ(read("out.lst"), bytes);
  choose("saveListAs");
  choose("loadList");
  EXPECT_EQ(shownIn(&list), QStringList());
  EXPECT_EQ(dialogs.messages,
            QStringList({"Nothing to save!", "Saved email list to: " + at("out.lst"),
                         "Unable to create file: " + at("no/out.lst"),
                         "Unable to open file: " + at("gone.lst")}));
  // A list that came from no file goes to the current folder, and the person is told which that is.
  dialogs.messages.clear();
  fill("b");
  choose("saveList");
  EXPECT_EQ(read("default.lst"), "\xEF\xBB\xBFUNICODEV4\r\r\nb@x.example|/out/1.pdf|0|0\r\r\n");
  EXPECT_EQ(dialogs.messages, QStringList("Saved email list to: default.lst"));
  EXPECT_TRUE(label("notice").contains(QDir::currentPath())) << label("notice").toStdString();
}

TEST_F(EmailListDialog, ADoubleClickChangesTheAddressOfTheRowThatIsSeenThere) {
  fill("ab.");
  clickHeader(EmailColumn::File); // turns the order round
  EXPECT_EQ(seen(), ".ba");
  DialogScript script;
  script.then("CChangeEmailDlg", [](QDialog* change) {
    EXPECT_EQ(control<QLineEdit>(change, "address")->text(), "a@x.example");
    typeInto(change, "address", "c@x.example, d@x.example");
    click(change, "ok");
    EXPECT_TRUE(change->isVisible());
    EXPECT_TRUE(control<QLineEdit>(change, "address")->property("problem").toBool());
    typeInto(change, "address", "c@x.example");
    click(change, "ok");
  });
  clickRow(2);
  QTest::mouseDClick(tableOf(&list)->viewport(), Qt::LeftButton, {}, placeOf(2));
  EXPECT_EQ(seen(), ".bc");
  EXPECT_EQ(list.list().rows()[0].entry.address, "c@x.example");

  // The same by keyboard, of a row that had none.
  script.then("CChangeEmailDlg", [](QDialog* change) {
    typeInto(change, "address", "e@x.example");
    QTest::keyClick(change, Qt::Key_Return);
  });
  clickRow(0);
  QTest::keyClick(tableOf(&list), Qt::Key_Return);
  EXPECT_EQ(seen(), "ebc");
  EXPECT_EQ(label("countLine"), "3 rows, 3 with an address, 1 selected");

  // What was typed in is not lost by a key.
  dialogs.answers = {false, true};
  QTest::keyClick(&list, Qt::Key_Escape);
  EXPECT_TRUE(list.isVisible());
  click(&list, "cancel");
  EXPECT_FALSE(list.isVisible());
}

TEST_F(EmailListDialog, ChangesAndRowsThatOthersReplacedComeBack) {
  write("z.lst", "UNICODEV4\nz@x.example|/out/z.pdf|0|0\n");
  const auto undo = [this] {
    list.activateWindow();
    EXPECT_TRUE(waitUntil([this] { return list.isActiveWindow(); }));
    QTest::keyClick(tableOf(&list), Qt::Key_Z, Qt::ControlModifier);
  };
  EmailList filled;
  AddressedOutput output;
  output.file = at("a.pdf");
  AddressedOutput addressed = output;
  addressed.address = "nobody"; // a page may hold what is no address
  filled.fill(std::vector{addressed});
  list.showRun(std::move(filled), {output});
  undo();
  EXPECT_EQ(seen(), "n");
  DialogScript script;
  script.then("CChangeEmailDlg", [](QDialog* change) {
    typeInto(change, "address", "b@x.example");
    click(change, "ok");
  });
  clickRow(0);
  QTest::keyClick(tableOf(&list), Qt::Key_F2);
  dialogs.files = {{at("z.lst")}, {at("gone.lst")}};
  choose("loadList");
  choose("loadList"); // cannot be opened, and leaves nothing
  EXPECT_EQ(seen(), "");
  for (const char* before : {"z", "b"}) {
    undo();
    EXPECT_EQ(seen(), before);
  }
  EXPECT_EQ(list.listFile(), QString());
  EXPECT_TRUE(control<QPushButton>(&list, "withoutAddress")->isVisible());
  undo();
  EXPECT_EQ(seen(), "n");
  EXPECT_FALSE(control<QAction>(&list, "undo")->isEnabled());
  click(&list, "cancel"); // and no work is lost
  EXPECT_FALSE(list.isVisible());
}

TEST_F(EmailListDialog, SubjectsAreThoseThatGoOut) {
  EmailEntries entries(3);
  entries[1].subject = "Own";
  entries[2].invoiceNumberInSubject = "17";
  EmailList filled;
  filled.setEntries(entries, {});
  list.setSubject("Statement");
  list.showRun(std::move(filled), {});
  EXPECT_EQ(shownIn(&list, EmailColumn::Subject),
            QStringList({"Statement", "Own", "Statement 17"}));
  clickHeader(EmailColumn::Subject);
  EXPECT_EQ(shownIn(&list, EmailColumn::Subject),
            QStringList({"Own", "Statement", "Statement 17"}));
  typeInto(&list, "filter", "statement");
  EXPECT_EQ(shownIn(&list, EmailColumn::Subject), QStringList({"Statement", "Statement 17"}));
}

TEST_F(EmailListDialog, TheViewNeverChangesWhatIsSentNorItsOrder) {
  struct Row {
    const char* what;
    QList<int> clicked; ///< rows of the view, which shows "edcba."
    const char* filter;
    std::deque<int> choices; ///< of "Send selected only?": Yes, No
    std::deque<bool> answers;
    const char* count; ///< end of the line
    const char* sent;  ///< null: the dialog stays
  };
  const Row rows[] = {
      {"nothing selected", {}, "", {}, {}, "address, 0 selected", "abcde"},
      {"selected only, in sending order", {0, 3, 2}, "", {0}, {}, "address, 3 selected", "bce"},
      {"selected, and No", {1}, "", {1}, {}, "address, 1 selected", "abcde"},
      {"selected, and Cancel", {1}, "", {Dialogs::noChoice}, {}, "address, 1 selected", nullptr},
      {"selected without an address", {5}, "", {0}, {}, "address, 1 selected", nullptr},
      {"selected and seen", {0, 2}, "/2.PDF", {0}, {}, "1 shown, 1 selected", "e"},
      {"selected and hidden", {0, 2}, "A@X", {}, {true}, "1 shown, 0 selected", "abcde"},
      {"hidden, and No", {}, "A@X", {}, {false}, "1 shown, 0 selected", nullptr}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    list.show();
    typeInto(&list, "filter", "");
    fill("abcde.");
    tableOf(&list)->sortByColumn(static_cast<int>(EmailColumn::Email), Qt::DescendingOrder);
    EXPECT_EQ(seen(), "edcba.");
    for (const int clicked : row.clicked) {
      clickRow(clicked, Qt::ControlModifier);
    }
    typeInto(&list, "filter", row.filter);
    EXPECT_TRUE(label("countLine").endsWith(row.count)) << label("countLine").toStdString();
    // Enter in the filter sends nothing.
    QTest::keyClick(control<QLineEdit>(&list, "filter"), Qt::Key_Return);
    EXPECT_TRUE(list.isVisible());
    dialogs.choices = row.choices;
    dialogs.answers = row.answers;
    click(&list, "send");
    EXPECT_EQ(list.isVisible(), row.sent == nullptr);
    EXPECT_TRUE(row.sent == nullptr || sending() == row.sent) << sending().toStdString();
  }
  EXPECT_EQ(dialogs.questions.count("Send selected only?"), 5);
  EXPECT_EQ(dialogs.messages, QStringList("None of the selected rows has an address."));
}

/// With the boxes of the desktop: only a button that says so sends, and no key pressed too soon.
TEST_F(MailWindows, NothingIsSentButByTheButtonThatSaysSo) {
  DesktopDialogs desktop;
  CEmailListDlg list(desktop, nullptr);
  EmailEntries entries(3);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    entries[i].address = QStringLiteral("%1@x.example").arg(i);
  }
  entries[0].addressesDiffer = true;
  EmailList filled;
  filled.setEntries(entries, {});
  list.showRun(std::move(filled), {});
  const auto key = [](Qt::Key pressed) {
    return [pressed](QDialog* box) { QTest::keyClick(box, pressed); };
  };
  const auto button = [](const QString& text) {
    return [text](QDialog* box) {
      for (QPushButton* each : box->findChildren<QPushButton*>()) {
        if (each->text() == text) {
          return each->click();
        }
      }
      ADD_FAILURE() << "no button " << text.toStdString();
      box->reject();
    };
  };
  using Steps = std::vector<std::function<void(QDialog*)>>;
  const auto sends = [&list](const Steps& steps) {
    list.show();
    tableOf(&list)->selectRow(1);
    DialogScript script;
    for (const auto& step : steps) {
      script.then("", step);
    }
    click(&list, "send");
    return list.isVisible() ? 0 : int(list.toSend().count());
  };
  EXPECT_EQ(sends({key(Qt::Key_Escape)}), 0);
  EXPECT_EQ(sends({key(Qt::Key_Return)}), 0);
  EXPECT_EQ(sends({[](QDialog* box) { box->close(); }}), 0);
  EXPECT_EQ(sends({button("&Send the 1 selected")}), 1);
  EXPECT_EQ(sends({button("Send &all 3"), key(Qt::Key_Escape)}), 0);
  EXPECT_EQ(sends({button("Send &all 3"), key(Qt::Key_Return)}), 0);
  EXPECT_EQ(sends({button("Send &all 3"), button("&Send all the same")}), 3);
  // The filter hides what would go out.
  typeInto(&list, "filter", "2@");
  tableOf(&list)->clearSelection();
  DialogScript hidden(key(Qt::Key_Return));
  list.show();
  click(&list, "send");
  EXPECT_TRUE(list.isVisible());
}

/// Somebody stamps or signs the files before they go out: a person looks and accepts, row by row.
TEST_F(EmailListDialog, AFileThatChangedIsShownAndAcceptedAsItIs) {
  EmailEntries entries;
  for (const QString& name : {QString("1.pdf"), QString("2.pdf"), QString("3.pdf")}) {
    write(name, "%PDF " + name.toUtf8());
    EmailEntry entry;
    entry.address = "a@x.example";
    entry.file = at(name);
    entry.identity = platform::FileDigest::of(at(name));
    entries.push_back(entry);
  }
  entries[2].addressesDiffer = true;
  write("1.pdf", "%PDF 1.pdf stamped");
  EmailList filled;
  filled.setEntries(entries, {});
  list.showRun(std::move(filled), {});
  const QStringList warned = {at("1.pdf") + "  (changed since written)", at("2.pdf"),
                              at("3.pdf") + "  (pages with different addresses)"};
  EXPECT_TRUE(waitUntil([&] { return shownIn(&list, EmailColumn::File) == warned; }))
      << shownIn(&list, EmailColumn::File).join(' ').toStdString();
  EXPECT_FALSE(control<QPushButton>(&list, "acceptFile")->isEnabled());
  clickRow(0);
  click(&list, "view");
  EXPECT_EQ(dialogs.opened, QStringList(at("1.pdf")));
  click(&list, "acceptFile");
  EXPECT_EQ(shownIn(&list, EmailColumn::File)[0], at("1.pdf"));
  EXPECT_FALSE(control<QPushButton>(&list, "acceptFile")->isVisible());
  EXPECT_EQ(list.list().rows()[0].entry.identity, platform::FileDigest::of(at("1.pdf")));
  // Pages of different people go out only when somebody says so.
  dialogs.choices = {1, Dialogs::noChoice, 1, 0};
  click(&list, "send");
  EXPECT_TRUE(list.isVisible());
  click(&list, "send");
  EXPECT_FALSE(list.isVisible());
  EXPECT_FALSE(list.toSend().rows()[2].entry.addressesDiffer);
}

/// Sorting moves the selection with its rows, and a third click brings the sending order back.
TEST_F(EmailListDialog, SelectionFollowsItsRowsThroughSortingAndFiltering) {
  QString letters;
  for (int i = 0; i < 200; ++i) {
    letters += QChar(u'a' + i * 7 % 26);
  }
  fill(letters);
  QItemSelectionModel* selection = tableOf(&list)->selectionModel();
  for (int row = 0; row < letters.size(); row += 3) {
    selection->select(tableOf(&list)->model()->index(row, 0),
                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
  }
  const auto selectedFiles = [selection] {
    QStringList files;
    for (const QModelIndex& index : selection->selectedRows(static_cast<int>(EmailColumn::File))) {
      files += index.data().toString();
    }
    files.sort();
    return files;
  };
  const QStringList before = selectedFiles();
  EXPECT_EQ(before.size(), 67);
  clickHeader(EmailColumn::Email);
  QString sorted = letters;
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(seen(), sorted);
  EXPECT_EQ(selectedFiles(), before);
  typeInto(&list, "filter", "pdf");
  EXPECT_EQ(selectedFiles(), before);
  clickHeader(EmailColumn::Email);
  EXPECT_EQ(selectedFiles(), before);
  clickHeader(EmailColumn::Email);
  EXPECT_EQ(seen(), letters);
  EXPECT_EQ(selectedFiles(), before);
}

TEST_F(EmailListDialog, ToolTipsTellWhatTheRowsDoNotShow) {
  EmailEntry entry;
  entry.address = "a@x.example";
  entry.file = at("<b>.pdf");
  entry.furtherAddresses = {"b@x.example"};
  write("<b>.pdf", "%PDF");
  EmailEntry bad;
  bad.address = "nowhere";
  bad.file = at("gone.pdf");
  EmailEntry none;
  EmailList filled;
  filled.setEntries({entry, bad, none}, {});
  list.showRun(std::move(filled), {});
  const auto tip = [this](int row) {
    return tableOf(&list)->model()->index(row, 1).data(Qt::ToolTipRole).toString();
  };
  EXPECT_TRUE(tip(0).contains("&lt;b&gt;.pdf<br>Other addresses on its pages: b@x.example"))
      << tip(0).toStdString();
  EXPECT_FALSE(tip(0).contains("cannot"));
  EXPECT_TRUE(tip(1).contains("the address has no") && tip(1).contains("file cannot be read"));
  EXPECT_TRUE(tip(2).contains("No address: nothing is sent"));
}

class EmailListImport : public EmailListDialog {
protected:
  EmailListImport() { qputenv("PATH", FOLIVEX_BIN_DIR ":" + m_searchPath); }
  ~EmailListImport() override { qputenv("PATH", m_searchPath); }

private:
  QByteArray m_searchPath = qgetenv("PATH");
};

TEST_F(EmailListImport, FindingsOfASheetAreReadBeforeItIsTaken) {
  write("1.pdf", "%PDF");
  const QString path = at("list.csv");
  write("list.csv", "Email,File,Body,Colour\na@x.example,1.pdf,Dear A,red\nnobody,1.pdf\n"
                    "c@x.example,gone.pdf\n");
  write("z.lst", "UNICODEV4\nz@x.example|1.pdf|0|0\n");
  write("bad.xlsx", "%PDF-");
  dialogs.files = {{at("z.lst")}, {at("bad.xlsx")}, {path}, {path}};
  choose("loadList");
  choose("importSheet"); // cannot be read, and leaves the list as it was
  EXPECT_EQ(seen(), "z");
  EXPECT_TRUE(dialogs.messages.value(0).startsWith(at("bad.xlsx")));
  dialogs.messages.clear();
  DialogScript script;
  script.then("CFindingsDlg", [](QDialog* reading) {
    const QString text = control<QPlainTextEdit>(reading, "lines")->toPlainText();
    EXPECT_EQ(text.count('\n'), 2) << text.toStdString();
    EXPECT_TRUE(text.contains("Colour") && text.contains("Row 3: \"nobody\"") &&
                text.contains("gone.pdf"))
        << text.toStdString();
    click(reading, "close");
  });
  choose("importSheet");
  EXPECT_EQ(seen(), "z");
  script.then("CFindingsDlg", pressing("accept"));
  choose("importSheet");
  EXPECT_EQ(shownIn(&list), QStringList({"a@x.example", "nobody", "c@x.example"}));
  EXPECT_EQ(shownIn(&list, EmailColumn::File)[0], at("1.pdf"));
  EXPECT_FALSE(tableOf(&list)->isColumnHidden(static_cast<int>(EmailColumn::Body)));
  // A list file keeps no bodies: saving says so. It does not go over the list of before.
  QDir::setCurrent(folder.path());
  choose("saveList");
  EXPECT_EQ(dialogs.messages, QStringList("Saved email list to: default.lst"));
  EXPECT_TRUE(label("notice").contains("bodies"));
}

} // namespace
} // namespace folivex::testing
