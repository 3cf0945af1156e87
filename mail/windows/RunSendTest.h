// The test mail of the e-mail settings, with its window.
#pragma once

#include "mail/MailServer.h"

class QWidget;

namespace folivex {

class Dialogs;
struct SplitSetup;

/// Sends one mail to the sender with these settings, lets the person stop that, and says what came
/// of it. After a failure the file with the error is opened. Windows appear over `over`.
void runSendTest(const SplitSetup& setup, Dialogs& dialogs, QWidget* over,
                 const SmtpOptions& options = {});

} // namespace folivex
