// UpdateBench: an https server of this machine's own, with a certificate made on the spot.
#pragma once

#include "tests/support/Programs.h"

#include <QLibrary>
#include <QTemporaryDir>

namespace folivex::test {

class UpdateBench : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    // Loaded once by path, the library is then found by its bare name.
    static QLibrary library(QStringLiteral(FOLIVEX_BIN_DIR "/libUpdatesU.so"));
    ASSERT_TRUE(library.load()) << library.errorString().toStdString();
    qputenv("no_proxy", "localhost,127.0.0.1");
    s_server = std::make_unique<Server>();
    makeCertificate(QStringLiteral("own"));
    makeCertificate(QStringLiteral("other"));
    s_server->process.start(QStringLiteral("/usr/bin/python3"),
                            {QStringLiteral(FOLIVEX_SOURCE_DIR "/tests/updates/update_server.py"),
                             certificate(QStringLiteral("own")),
                             s_server->folder.filePath(QStringLiteral("own.key"))});
    QByteArray ports;
    while (!ports.endsWith('\n') && s_server->process.waitForReadyRead(hangLimit)) {
      ports += s_server->process.readAllStandardOutput();
    }
    const QList<QByteArray> both = ports.trimmed().split(' ');
    ASSERT_EQ(both.size(), 2) << s_server->process.readAllStandardError().toStdString();
    s_server->securePort = QString::fromLatin1(both[0]);
    s_server->plainPort = QString::fromLatin1(both[1]);
  }

  static void TearDownTestSuite() {
    s_server->process.closeWriteChannel();
    s_server->process.waitForFinished(hangLimit);
    s_server.reset();
  }

  /// "own" is the server's, "other" is for the same name and not the server's.
  static QString certificate(const QString& name) {
    return s_server->folder.filePath(name + QStringLiteral(".pem"));
  }
  static QString secure(const char* path) {
    return QStringLiteral("https://localhost:%1%2").arg(s_server->securePort, QLatin1String(path));
  }
  /// The certificate does not hold for the bare number.
  static QString secureByNumber(const char* path) {
    return QStringLiteral("https://127.0.0.1:%1%2").arg(s_server->securePort, QLatin1String(path));
  }
  static QString plain(const char* path) {
    return QStringLiteral("http://localhost:%1%2").arg(s_server->plainPort, QLatin1String(path));
  }

private:
  struct Server {
    QTemporaryDir folder;
    QProcess process;
    QString securePort;
    QString plainPort;
  };

  static void makeCertificate(const QString& name) {
    const ProgramRun made =
        runProgram(QStringLiteral("openssl"),
                   {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
                    QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                    QStringLiteral("ec_paramgen_curve:prime256v1"), QStringLiteral("-nodes"),
                    QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                    QStringLiteral("/CN=localhost"), QStringLiteral("-addext"),
                    QStringLiteral("subjectAltName=DNS:localhost"), QStringLiteral("-keyout"),
                    s_server->folder.filePath(name + QStringLiteral(".key")),
                    QStringLiteral("-out"), certificate(name)});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  }

  static inline std::unique_ptr<Server> s_server;
};

} // namespace folivex::test
