// The batch list and the windows of e-mail delivery.
#include "batch/BatchEntry.h"
#include "batch/CBatchList.h"
#include "batch/CScanning.h"
#include "mail/windows/CChangeEmailDlg.h"
#include "mail/windows/CEmailListDlg.h"
#include "mail/windows/CEmailStatusDlg.h"
#include "mail/windows/CFindingsDlg.h"
#include "scripts/pictures/Scenes.h"

#include <QTableView>

namespace folivex::pictures {

void takeBatch(Camera& camera, const Studio& studio) {
  CBatchList list(studio.dialogs);
  list.onProcessList = [] {};
  camera.take(list, QStringLiteral("batch-empty"));
  const QString folder = QStringLiteral("/srv/scans/2026/");
  list.rows().append({{useYes, folder + QStringLiteral("january/statements.pdf"), statusDone,
                       QStringLiteral("40 page(s): 40 in 12 file(s).")},
                      {useYes, folder + QStringLiteral("february & more/<b>.pdf"), statusDone,
                       QStringLiteral("6 page(s): 5 in 2 file(s), 1 in no range (1).")},
                      {useYes, folder + QStringLiteral("no/such/file.pdf"), statusFileError,
                       QStringLiteral("The file is not there.")},
                      {useNo, folder + QStringLiteral("march/drafts.pdf"), statusReady},
                      {useYes,
                       folder + QStringLiteral("march/a folder with a name that goes on for quite "
                                               "a while/and-a-file-of-the-same-kind-2026-03.pdf"),
                       statusProcessing},
                      {useNoStamp, folder + QStringLiteral("march/late.pdf"), statusReady}});
  list.findChild<QTableView*>(QStringLiteral("list"))->selectRow(3);
  camera.take(list, QStringLiteral("batch"));
  list.setRunning(true);
  camera.take(list, QStringLiteral("batch-running"));
  CScanning scanning(nullptr);
  scanning.showPlace(folder + QStringLiteral("march/a folder with a name that goes on for quite a "
                                             "while/and-a-file-of-the-same-kind.pdf"));
  camera.take(scanning, QStringLiteral("scanning"));
}

namespace {

std::vector<AddressedOutput> addressedOutputs() {
  std::vector<AddressedOutput> outputs;
  for (int i = 1; i <= 9; ++i) {
    const bool hasAddress = i != 4;
    outputs.push_back({QStringLiteral("/srv/split/2026/march/statement_%1.pdf").arg(1000 + i),
                       3 * i - 2,
                       3 * i,
                       QStringLiteral("Account:"),
                       hasAddress ? QStringLiteral("customer%1@example.com").arg(i) : QString(),
                       {}});
  }
  return outputs;
}

void takeSending(Camera& camera) {
  CEmailStatusDlg status(nullptr);
  status.setMailCount(1204);
  EmailProgress progress;
  progress.recipient = QStringLiteral("customer-with-a-long-name@mail.example.com");
  progress.handled = 411;
  progress.sentOk = 409;
  progress.errors = 2;
  status.show();
  status.onProgress(progress);
  camera.take(status, QStringLiteral("email-status"));
  CChangeEmailDlg change(QStringLiteral("customer4@"),
                         QStringLiteral("/srv/split/statement_1004.pdf"), nullptr);
  change.onTake = [](const QString&) { return QStringLiteral("This is no e-mail address."); };
  change.accept();
  camera.take(change, QStringLiteral("email-change"));
  CFindingsDlg findings({QStringLiteral("Import from spreadsheet"),
                         QStringLiteral("12 e-mails in customers.xlsx. Please look at these points "
                                        "first:"),
                         QStringLiteral("&Take them into the list"),
                         {},
                         QStringLiteral("&Cancel")},
                        {QStringLiteral("row 4: the file is missing"),
                         QStringLiteral("row 9: two addresses; the first is taken")},
                        nullptr);
  camera.take(findings, QStringLiteral("email-findings"));
}

} // namespace

void takeMail(Camera& camera, const Studio& studio) {
  {
    CEmailListDlg empty(studio.dialogs, nullptr);
    camera.take(empty, QStringLiteral("email-list-empty"));
  }
  CEmailListDlg list(studio.dialogs, nullptr);
  list.setSubject(QStringLiteral("Your statement"));
  EmailList filled;
  const std::vector<AddressedOutput> outputs = addressedOutputs();
  std::vector<AddressedOutput> without = filled.fill(outputs);
  filled.setAddress(2, QString());
  list.showRun(filled, std::move(without));
  list.findChild<QTableView*>(QStringLiteral("list"))->selectRow(1);
  camera.take(list, QStringLiteral("email-list"));
  EmailEntries own;
  for (const EmailRow& row : filled.rows()) {
    own.push_back(row.entry);
    own.back().body = QStringLiteral("Dear customer,\r\nyour statement is attached.");
    own.back().subject = QStringLiteral("Statement of March");
  }
  filled.setEntries(own, QStringLiteral("/srv/lists/customers.xlsx"));
  list.showRun(filled, {});
  camera.take(list, QStringLiteral("email-list-own-texts"));
  takeSending(camera);
}

} // namespace folivex::pictures
