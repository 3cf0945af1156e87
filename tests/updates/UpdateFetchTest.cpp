// The library that asks, against a real https server.
#include "tests/support/Rows.h"
#include "tests/updates/UpdateBench.h"
#include "updates/UpdateLibrary.h"

namespace folivex {

namespace {

class UpdateFetch : public test::UpdateBench {
protected:
  void SetUp() override { ASSERT_TRUE(library.loaded) << library.errorDetail.toStdString(); }

  struct Answer {
    int32_t code;
    QByteArray document;
    QString text;
  };

  Answer fetch(const QString& address, const QString& certificates = certificate("own"),
               int32_t seconds = 0, UpdatesStop stop = nullptr) const {
    const auto utf16 = [](const QString& text) {
      return reinterpret_cast<const char16_t*>(text.utf16());
    };
    const UpdatesRequest request = {utf16(address), u"4.9.2", utf16(certificates), seconds, seconds,
                                    stop,           nullptr};
    UpdatesDocument document = {};
    const int32_t code = library.UpdatesFetch(&request, &document);
    EXPECT_EQ(code, library.UpdatesLastError());
    return {code, QByteArray(document.bytes, document.size),
            QString::fromUtf16(library.UpdatesLastErrorText())};
  }

  UpdateLibrary library;
};

TEST_F(UpdateFetch, HandsBackTheDocumentAndSendsNothingThatTellsAPerson) {
  EXPECT_TRUE(fetch(secure("/to-newer")).document.contains("\"4.10.0\""));
  EXPECT_EQ(fetch(secure("/full")).document.size(), UPDATES_MOST_BYTES);
  fetch(secure("/seen")); // gives a cookie
  const QByteArray seen = fetch(secure("/seen")).document;
  EXPECT_TRUE(seen.contains("User-Agent: Folivex/4.9.2\\n")) << seen.toStdString();
  for (const char* header : {"Cookie", "Referer", "Authorization", "Accept-Language"}) {
    EXPECT_FALSE(seen.contains(header)) << seen.toStdString();
  }
}

TEST_F(UpdateFetch, RefusesWhatIsNotToBeTrusted) {
  test::forEachRow("updates/refusals.json", [this](const SplitSetup&, const QStringList& row) {
    const QString address = QString(row[0])
                                .replace("SECURE", secure(""))
                                .replace("NUMBER", secureByNumber(""))
                                .replace("PLAIN", plain(""));
    const Answer answer = fetch(address, row[1].isEmpty() ? QString() : certificate(row[1]));
    EXPECT_EQ(answer.code, row[2].toInt()) << answer.text.toStdString();
    EXPECT_EQ(answer.document, QByteArray());
    EXPECT_FALSE(answer.text.isEmpty());
  });
}

TEST_F(UpdateFetch, AServerThatHangsIsGivenUp) {
  const QString own = certificate("own");
  EXPECT_EQ(fetch(secure("/hang"), own, 1).code, UPDATES_TIMED_OUT);
  EXPECT_EQ(fetch(secure("/hang"), own, 0, [](void*) { return 1; }).code, UPDATES_STOPPED);
}

} // namespace

} // namespace folivex
