// What somebody gets who cannot see well, or uses no mouse: each window and dialog, in both themes.
#include "app/help/HelpWindow.h"
#include "batch/CBatchList.h"
#include "mail/windows/CChangeEmailDlg.h"
#include "mail/windows/CEmailListDlg.h"
#include "mail/windows/CEmailStatusDlg.h"
#include "mail/windows/CFindingsDlg.h"
#include "mail/windows/CMailWaitDlg.h"
#include "tests/program/ProgramWindowsBench.h"
#include "widgets/Theme.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QDockWidget>
#include <QGroupBox>
#include <QLabel>
#include <QSet>
#include <QTableView>
#include <QTextBrowser>
#include <QToolBar>

#include <algorithm>
#include <cmath>

namespace folivex::testing {
namespace {

double luminance(const QColor& color) {
  const auto part = [](double share) {
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(color.redF()) + 0.7152 * part(color.greenF()) + 0.0722 * part(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const double a = luminance(one);
  const double b = luminance(other);
  return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

constexpr double leastContrast = 4.5;

/// What the text of a widget stands on.
QColor groundOf(const QWidget* widget) {
  while (!widget->isWindow() && !widget->autoFillBackground()) {
    widget = widget->parentWidget();
  }
  return widget->palette().color(widget->backgroundRole());
}

class AccessTest : public ProgramWindowsBench {
protected:
  ~AccessTest() override { applyTheme(Theme::System); }

  /// Every control of a window that can be reached, and every text of it.
  static void expectAccessible(QWidget* window) {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
      if (widget->window() != window || !widget->isVisible() || !widget->isEnabled()) {
        continue;
      }
      SCOPED_TRACE(window->objectName().toStdString() + ": " + widget->metaObject()->className() +
                   ' ' + widget->objectName().toStdString());
      if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr) {
        QAccessibleInterface* told = QAccessible::queryAccessibleInterface(widget);
        EXPECT_NE(told->role(), QAccessible::NoRole);
        EXPECT_NE(told->role(), QAccessible::Client);
        EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << "has no name";
      }
      if (const auto* label = qobject_cast<const QLabel*>(widget);
          label != nullptr && !label->text().isEmpty()) {
        EXPECT_GE(contrast(label->palette().color(label->foregroundRole()), groundOf(label)),
                  leastContrast)
            << label->text().toStdString();
      }
    }
  }

  /// Goes round with the Tab key: wherever the cursor is, something looks other than before.
  static void expectFocusIsSeen(QWidget* window) {
    window->activateWindow();
    ASSERT_TRUE(waitUntil([window] { return window->isActiveWindow(); }));
    QHash<QWidget*, QImage> without;
    constexpr int most = 60;
    for (int i = 0; i < most; ++i) {
      QTest::keyClick(window->focusWidget() != nullptr ? window->focusWidget() : window,
                      Qt::Key_Tab);
      QWidget* now = window->focusWidget();
      if (now == nullptr || without.contains(now)) {
        continue; // a page goes through its links first
      }
      EXPECT_TRUE(waitUntil([now] { return !now->visibleRegion().isEmpty(); }))
          << now->objectName().toStdString() << " is behind something";
      const QImage focused = now->grab().toImage();
      now->clearFocus();
      without[now] = now->grab().toImage();
      now->setFocus(Qt::TabFocusReason);
      const auto* view = qobject_cast<const QAbstractItemView*>(now);
      // A list shows it at its row, a page to read at its links.
      const bool isEmpty = (view != nullptr && !view->currentIndex().isValid()) ||
                           qobject_cast<const QTextBrowser*>(now) != nullptr;
      EXPECT_TRUE(isEmpty || focused != without[now])
          << window->objectName().toStdString() << ": " << now->metaObject()->className() << ' '
          << now->objectName().toStdString();
    }
    EXPECT_FALSE(without.isEmpty()) << window->objectName().toStdString();
  }

  /// What belongs together for the eye: a pane, a group of a form, else the whole window.
  static QWidget* regionOf(QWidget* widget) {
    const auto isRegion = [](const QWidget* one) {
      return one->isWindow() || qobject_cast<const QDockWidget*>(one) != nullptr ||
             qobject_cast<const QToolBar*>(one) != nullptr ||
             qobject_cast<const QGroupBox*>(one) != nullptr ||
             one->objectName() == QLatin1String("pageViewer");
    };
    while (!isRegion(widget)) {
      widget = widget->parentWidget();
    }
    return widget;
  }

  static QRect placeIn(const QWidget* window, const QWidget* widget) {
    return {widget->mapTo(window, QPoint()), widget->size()};
  }

  /// Where the Tab key goes, from the upper left control on.
  static QList<QWidget*> tabStops(QWidget* window) {
    QList<QWidget*> stops;
    QWidget* now = window->focusWidget();
    for (; now != nullptr && !stops.contains(now); now = window->focusWidget()) {
      stops += now;
      QTest::keyClick(now, Qt::Key_Tab);
    }
    if (now == nullptr) {
      return stops;
    }
    stops = stops.mid(stops.indexOf(now));
    const auto first = std::ranges::min_element(stops, {}, [window](const QWidget* one) {
      const QPoint place = one->mapTo(window, QPoint());
      return std::pair(place.y(), place.x());
    });
    std::ranges::rotate(stops, first);
    return stops;
  }

  /// Downwards, and in a row from the left; a pane or a group is left when it is gone through.
  static void expectTabOrderOfTheEye(QWidget* window) {
    const QList<QWidget*> stops = tabStops(window);
    QSet<QWidget*> left;
    for (qsizetype i = 1; i < stops.size(); ++i) {
      QWidget* before = stops[i - 1];
      QWidget* now = stops[i];
      SCOPED_TRACE(window->objectName().toStdString() + ": from " +
                   before->objectName().toStdString() + " to " + now->objectName().toStdString());
      if (regionOf(before) != regionOf(now)) {
        left += regionOf(before);
        EXPECT_FALSE(left.contains(regionOf(now)) && !regionOf(now)->isWindow()) << "comes back";
        before = regionOf(before);
        now = regionOf(now);
        if (before->isWindow() || now->isWindow()) {
          continue; // a group and what stands beside it
        }
      }
      const QRect from = placeIn(window, before);
      const QRect to = placeIn(window, now);
      const bool isRightOf = to.left() >= from.center().x();
      EXPECT_TRUE(to.top() > from.center().y() || isRightOf) << "goes back";
      EXPECT_TRUE(to.bottom() >= from.top() || before != stops[i - 1]) << "goes up";
    }
  }

  static void expectAll(QWidget* window) {
    for (const Theme theme : {Theme::Light, Theme::Dark}) {
      SCOPED_TRACE(themeName(theme).toStdString());
      applyTheme(theme);
      QApplication::processEvents();
      expectAccessible(window);
      expectFocusIsSeen(window);
    }
  }
};

TEST_F(AccessTest, TextsOfBothThemesAreReadable) {
  using P = QPalette;
  constexpr std::pair<P::ColorRole, P::ColorRole> pairs[] = {{P::WindowText, P::Window},
                                                             {P::Text, P::Base},
                                                             {P::Text, P::AlternateBase},
                                                             {P::ButtonText, P::Button},
                                                             {P::Link, P::Window},
                                                             {P::Link, P::Base},
                                                             {P::PlaceholderText, P::Base},
                                                             {P::PlaceholderText, P::Window},
                                                             {P::ToolTipText, P::ToolTipBase},
                                                             {P::HighlightedText, P::Highlight}};
  for (const Theme theme : {Theme::Light, Theme::Dark}) {
    SCOPED_TRACE(themeName(theme).toStdString());
    applyTheme(theme);
    const QPalette palette = QApplication::palette();
    for (const auto& [ink, ground] : pairs) {
      EXPECT_GE(contrast(palette.color(ink), palette.color(ground)), leastContrast)
          << ink << " on " << ground;
    }
    for (const Tone tone : {Tone::Problem, Tone::Hint, Tone::Success, Tone::Quiet}) {
      QLabel label;
      setTone(&label, tone);
      for (const auto ground : {P::Window, P::Base}) {
        EXPECT_GE(contrast(label.palette().color(P::WindowText), palette.color(ground)),
                  leastContrast)
            << static_cast<int>(tone);
      }
    }
  }
}

TEST_F(AccessTest, WindowsAreNamedReadableAndUsedWithoutAMouse) {
  main().resize(1280, 900);
  expectAll(&main());
  expectTabOrderOfTheEye(&main());
  main().resize(900, 560); // the panes are tabs
  expectFocusIsSeen(&main());
  trigger("prepareList");
  expectAll(opened<CBatchList>());
  expectTabOrderOfTheEye(opened<CBatchList>());
  trigger("openHelp");
  expectAll(opened<HelpWindow>());
}

TEST_F(AccessTest, MailWindowsAreNamedReadableAndUsedWithoutAMouse) {
  CEmailListDlg list(m_dialogs, &main());
  EmailEntries entries(2);
  entries[0].address = "anna@x.example";
  EmailList filled;
  filled.setEntries(entries, {});
  list.showRun(std::move(filled), {{at("1.pdf"), 1, 1, {}, {}, {}}});
  control<QTableView>(&list, "list")->selectRow(0);
  CChangeEmailDlg change("anna@", at("1.pdf"), &main());
  change.onTake = [](const QString&) { return QStringLiteral("This is no e-mail address."); };
  CFindingsDlg findings({"Import", "Look at these points first:", "&Take them", "Go on", "&Cancel"},
                        {"row 4: the file is missing"}, &main());
  CEmailStatusDlg status(&main());
  CMailWaitDlg wait("Send Test", "The server is asked.", &main());
  for (QDialog* window :
       std::initializer_list<QDialog*>{&list, &change, &findings, &status, &wait}) {
    window->setModal(false);
    window->show();
    if (window == &change) {
      change.accept(); // tells what is wrong, and stays
    }
    expectAll(window);
    expectTabOrderOfTheEye(window);
    window->hide();
  }
}

TEST_F(AccessTest, DialogsAreNamedReadableAndUsedWithoutAMouse) {
  for (const char* action : {"openReportOptions", "openOtherSettings", "openSplitCommand",
                             "openEmailSettings", "updateCheck", "problemReport"}) {
    SCOPED_TRACE(action);
    const DialogScript next([](QDialog* dialog) {
      expectAll(dialog);
      expectTabOrderOfTheEye(dialog);
      dialog->reject();
    });
    trigger(action);
  }
}

} // namespace
} // namespace folivex::testing
