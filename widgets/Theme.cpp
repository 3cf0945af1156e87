#include "widgets/Theme.h"

#include "widgets/LookStyle.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

#include <algorithm>
#include <utility>

#ifdef Q_OS_WIN
#include "platform/TitleBar.h"

#include <QEvent>
#endif

namespace folivex {

namespace {

struct Shades {
  QRgb window;
  QRgb base;
  QRgb button;
  QRgb text;
  QRgb faintText; ///< of what is disabled
  QRgb quietText;
  QRgb highlight;
  QRgb highlightedText;
  QRgb link;
};

QPalette paletteOf(const Shades& shades) {
  QPalette palette(QColor(shades.button), QColor(shades.window));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    palette.setColor(role, shades.text);
    palette.setColor(QPalette::Disabled, role, shades.faintText);
  }
  palette.setColor(QPalette::Window, shades.window);
  palette.setColor(QPalette::Button, shades.button);
  palette.setColor(QPalette::Base, shades.base);
  palette.setColor(QPalette::Disabled, QPalette::Base, shades.window);
  palette.setColor(QPalette::AlternateBase, shades.window);
  palette.setColor(QPalette::ToolTipBase, shades.base);
  palette.setColor(QPalette::PlaceholderText, shades.quietText);
  palette.setColor(QPalette::Highlight, shades.highlight);
  palette.setColor(QPalette::HighlightedText, shades.highlightedText);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, shades.button);
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, shades.faintText);
  palette.setColor(QPalette::Link, shades.link);
  palette.setColor(QPalette::LinkVisited, shades.link);
  return palette;
}

// Window, base, button, text, faint text, quiet text, highlight, highlighted text, link.
QPalette lightPalette() {
  return paletteOf(
      {0xf3f4f6, 0xffffff, 0xe9ebee, 0x1b1f24, 0x7c838c, 0x58606a, 0x1f6fb8, 0xffffff, 0x0b579b});
}

QPalette darkPalette() {
  return paletteOf(
      {0x26292e, 0x1b1d21, 0x33373d, 0xe8eaed, 0x8b929b, 0xa9b0b9, 0x3b8eda, 0x0d1014, 0x7cb9f2});
}

/// Qt's own colours for what is disabled can hardly be read.
QPalette readable(QPalette palette) {
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    const QColor text = palette.color(QPalette::Active, role);
    const QColor ground = palette.color(QPalette::Active, QPalette::Window);
    const auto between = [](int a, int b) { return (a + b) / 2; };
    palette.setColor(QPalette::Disabled, role,
                     QColor(between(text.red(), ground.red()),
                            between(text.green(), ground.green()),
                            between(text.blue(), ground.blue())));
  }
  return palette;
}

/// What the desktop gave the application before any theme was applied.
const QPalette& systemPalette() {
  static const QPalette palette = QApplication::palette();
  return palette;
}

const QString& systemStyle() {
  static const QString name = QApplication::style()->objectName();
  return name;
}

#ifdef Q_OS_WIN
void matchTitle(QWidget& window) {
  constexpr int halfLight = 128;
  platform::setTitleDark(window.winId(),
                         QApplication::palette().window().color().lightness() < halfLight);
}

/// Titles go with the windows below them: those that are open, and each that comes.
class Titles : public QObject {
public:
  using QObject::QObject;
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Show && object->isWidgetType()) {
      if (auto* const widget = static_cast<QWidget*>(object); widget->isWindow()) {
        matchTitle(*widget);
      }
    }
    return false;
  }
};

void matchTitles() {
  static const auto* const titles = [] {
    auto* const made = new Titles(qApp);
    qApp->installEventFilter(made);
    return made;
  }();
  Q_UNUSED(titles);
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (window->isVisible()) {
      matchTitle(*window);
    }
  }
}
#else
void matchTitles() {}
#endif

constexpr std::pair<Theme, const char*> themeNames[] = {
    {Theme::System, "system"}, {Theme::Light, "light"}, {Theme::Dark, "dark"}};

} // namespace

QString themeName(Theme theme) {
  const auto* const named =
      std::ranges::find(themeNames, theme, &std::pair<Theme, const char*>::first);
  return QString::fromLatin1(named->second);
}

Theme themeOf(const QString& name) {
  for (const auto& [theme, known] : themeNames) {
    if (name == QLatin1String(known)) {
      return theme;
    }
  }
  return Theme::System;
}

void applyTheme(Theme theme) {
  const QPalette& system = systemPalette();
  const QString& style = systemStyle();
  // Only Fusion draws every control from the palette; a desktop's own style has its own colours.
  const bool isOwnLook =
      theme != Theme::System || style.compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0;
  QApplication::setStyle(isOwnLook ? new LookStyle : QStyleFactory::create(style));
  QApplication::setPalette(theme == Theme::Light  ? lightPalette()
                           : theme == Theme::Dark ? darkPalette()
                           : isOwnLook            ? readable(system)
                                                  : system);
  paintTones();
  matchTitles();
}

} // namespace folivex
