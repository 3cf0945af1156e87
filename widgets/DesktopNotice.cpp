#include "widgets/DesktopNotice.h"

#include <QApplication>
#include <QString>

#ifdef Q_OS_WIN
#include <QSystemTrayIcon>
#include <QTimer>
#else
#include <QDBusConnection>
#include <QDBusMessage>
#include <QThreadPool>
#endif

namespace folivex {

#ifdef Q_OS_WIN

void showDesktopNotice(const QString& title, const QString& text) {
  if (!QSystemTrayIcon::isSystemTrayAvailable()) {
    return;
  }
  constexpr int shownMs = 10'000;
  auto* icon = new QSystemTrayIcon(QApplication::windowIcon(), qApp);
  icon->show(); // only an icon that is there can speak
  icon->showMessage(title, text, QSystemTrayIcon::Information, shownMs);
  QTimer::singleShot(shownMs, icon, &QObject::deleteLater);
}

#else

namespace {

QDBusMessage noticeCall(const QString& title, const QString& text) {
  const QString service = QStringLiteral("org.freedesktop.Notifications");
  QDBusMessage call = QDBusMessage::createMethodCall(
      service, QStringLiteral("/org/freedesktop/Notifications"), service, QStringLiteral("Notify"));
  constexpr uint replacesNone = 0;
  constexpr int desktopsOwnTime = -1;
  // A desktop may read the text, and not the title, as markup.
  call << QStringLiteral("Folivex") << replacesNone << QStringLiteral("folivex") << title
       << text.toHtmlEscaped() << QStringList() << QVariantMap() << desktopsOwnTime;
  return call;
}

} // namespace

void showDesktopNotice(const QString& title, const QString& text) {
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
      qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
    return; // there is no session to ask, and looking for one would start it
  }
  // A bus that hangs would hold the window: reaching it is what may take time.
  QThreadPool::globalInstance()->start([call = noticeCall(title, text)] {
    const QString name = QStringLiteral("folivex-notice");
    {
      QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
      constexpr int patienceMs = 2000;
      if (bus.isConnected()) {
        bus.call(call, QDBus::Block, patienceMs);
      }
    }
    QDBusConnection::disconnectFromBus(name);
  });
}

#endif

} // namespace folivex
