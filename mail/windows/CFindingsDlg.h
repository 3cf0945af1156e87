// CFindingsDlg: many lines to read before going on.
#pragma once

#include <QDialog>
#include <QStringList>

namespace folivex {

/// The lines can be selected and copied.
class CFindingsDlg : public QDialog {
public:
  struct Texts {
    QString title;
    QString heading;       ///< above the lines
    QString accept;        ///< the button that goes on; empty: there is only "Close"
    const char* acceptTip; ///< its tooltip
    QString close;         ///< the other button
    bool canAccept = true;
  };
  CFindingsDlg(const Texts& texts, const QStringList& lines, QWidget* parent);
};

} // namespace folivex
