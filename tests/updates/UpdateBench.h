// UpdateBench: an https server of this machine's own, with a certificate made on the spot.
#pragma once

#include "tests/support/Programs.h"
#include "updates/UpdateCheck.h"

#include <QLibrary>
#include <QTemporaryDir>

namespace folivex::test {

class UpdateBench : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    // Loaded once by path, the library is then found by its bare name.
#ifdef Q_OS_WIN
    static QLibrary library(FOLIVEX_BIN_DIR "/UpdatesU.dll");
#else
    static QLibrary library(FOLIVEX_BIN_DIR "/libUpdatesU.so");
#endif
    ASSERT_TRUE(library.load()) << library.errorString().toStdString();
    qputenv("no_proxy", "localhost,127.0.0.1");
    s_server = std::make_unique<Server>();
    makeCertificate("own");
    makeCertificate("other");
    startProgram(s_server->process, "/usr/bin/python3",
                 {FOLIVEX_SOURCE_DIR "/tests/updates/update_server.py", certificate("own"),
                  s_server->folder.filePath("own.key")});
    QByteArray ports;
    while (!ports.endsWith('\n') && s_server->process.waitForReadyRead(hangLimit)) {
      ports += s_server->process.readAllStandardOutput();
    }
    const QList<QByteArray> both = ports.trimmed().split(' ');
    ASSERT_EQ(both.size(), 2) << s_server->process.readAllStandardError().toStdString();
    s_server->secure = "localhost:" + both[0];
    s_server->plain = "localhost:" + both[1];
  }

  static void TearDownTestSuite() {
    s_server->process.closeWriteChannel();
    s_server->process.waitForFinished(hangLimit);
    s_server.reset();
  }

  /// "own" is the server's, "other" is for the same name and not the server's.
  static QString certificate(const QString& name) {
    return s_server->folder.filePath(name + ".pem");
  }
  static QString secure(const char* path) {
    return "https://" + s_server->secure + path;
  }
  /// The certificate does not hold for the bare number.
  static QString secureByNumber(const char* path) {
    return secure(path).replace("localhost", "127.0.0.1");
  }
  static QString plain(const char* path) {
    return "http://" + s_server->plain + path;
  }

  UpdateSurroundings surroundings() const {
    return {"4.9.2", [this] { return clock; }, certificate("own")};
  }

  QDateTime clock = QDateTime::fromString("2026-03-04T12:00:00Z", Qt::ISODate);
  QTemporaryDir folder;
  QSettings memory{folder.filePath("window.ini"), QSettings::IniFormat};

private:
  struct Server {
    QTemporaryDir folder;
    QProcess process;
    QString secure;
    QString plain;
  };

  static void makeCertificate(const QString& name) {
    const QString options = "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes "
                            "-days 2 -subj /CN=localhost -addext subjectAltName=DNS:localhost";
    const ProgramRun made =
        runProgram("openssl", options.split(' ') +
                                  QStringList{"-keyout", s_server->folder.filePath(name + ".key"),
                                              "-out", certificate(name)});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
  }

  static inline std::unique_ptr<Server> s_server;
};

} // namespace folivex::test
