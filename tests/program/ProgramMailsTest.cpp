// Mails of a run in the program's window.
#include "tests/program/ProgramWindowsBench.h"
#include "tests/support/TextPdf.h"

namespace folivex::testing {

using ProgramMails = ProgramWindowsBench;

/// Who cancels the list of mails goes on where the run was begun.
TEST_F(ProgramMails, TheKeyboardIsBackAfterTheListOfMailsWasCancelled) {
  test::TextPdf pdf;
  pdf.page({"Account: 1 anna@x.example"});
  pdf.write(at("mail.pdf"));
  SplitSetup& setup = main().program().store().edited();
  setup.fileName = at("mail.pdf");
  setup.findString = "Account:";
  setup.outputDir = at("out");
  setup.emailEnable = setup.emailConfirm = true;
  setup.emailSmtp = "localhost:9";
  setup.emailFrom = "office@example.org";
  setup.emailSubject = "Statement";
  main().refresh();
  auto* begun = control<QWidget>(&main(), "FINDSTRING");
  main().activateWindow();
  EXPECT_TRUE(waitUntil([this] { return main().isActiveWindow(); }));
  begun->setFocus();
  DialogScript mails;
  mails.then("CEmailListDlg", [](QDialog* list) {
    EXPECT_TRUE(waitUntil([list] { return list->isActiveWindow(); }));
    QTest::keyClick(list, Qt::Key_Escape);
  });
  QTest::keyClick(&main(), Qt::Key_F5);
  EXPECT_TRUE(waitUntil([&] { return begun->hasFocus(); }))
      << (QApplication::focusWidget() != nullptr
              ? QApplication::focusWidget()->objectName().toStdString()
              : "nothing");
}

} // namespace folivex::testing
