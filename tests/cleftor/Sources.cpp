// The PDFs that the library is tested with.

#include "Splitting.h"

#include <array>

namespace tests::cleftor {

namespace {

PdfBuilder numbered(int count, const std::string& entries = "") {
  PdfBuilder pdf;
  pdf.addText("f = <</Type/Font/Subtype/Type1/BaseFont/Helvetica>>\nr = <</Font<</F1 @f>>>>");
  for (int i = 1; i <= count; ++i) {
    pdf.addText("page /Resources @r" + entries + " | BT /F1 12 Tf 72 700 Td (Page number " +
                std::to_string(i) + ") Tj ET");
  }
  return pdf;
}

} // namespace

void makeSources(const fs::path& folder) {
  const auto path = [&folder](const std::string& name) {
    return (folder / name).string() + ".pdf";
  };
  for (const auto& text : fs::directory_iterator(FOLIVEX_SOURCE_DIR "/tests/cleftor/sources")) {
    PdfBuilder pdf;
    pdf.addText(contentsOf(text));
    pdf.write(path(text.path().stem().string()));
  }
  const std::string plain = numbered(6).finish();
  PdfBuilder::writeFile(path("plain"), plain);
  PdfBuilder::writeFile(path("empty"), "");
  PdfBuilder::writeFile(path("garbage"), PdfBuilder::noise(5000));
  PdfBuilder::writeFile(path("headless"), "%PDF-1.4\n%%EOF\n");
  PdfBuilder::writeFile(path("truncated"), plain.substr(0, plain.size() * 2 / 3));
  PdfBuilder::writeFile(path("noxref"),
                        std::regex_replace(plain, std::regex("startxref"), "start"));
  PdfBuilder lying = numbered(3);
  lying.claimPages(1'400'000'000);
  lying.write(path("lying"));
  numbered(2, "/PieceInfo<</Deep " + std::string(400, '[') + std::string(400, ']') + ">>")
      .write(path("deep"));

  const std::string raw = path("raw");
  numbered(30).write(raw);
  run("qpdf --object-streams=generate " + raw + " " + path("compressed"));
  run("qpdf --object-streams=generate " + path("tagged") + " " + path("tagged-packed"));
  run("qpdf --encrypt '' owner 256 -- " + path("tagged") + " " + path("tagged-protected"));
  std::string torn = contentsOf(path("tagged"));
  torn.replace(torn.find("/S/Table/P"), 10, "/S/Table)P");
  PdfBuilder::writeFile(path("tagged-torn"), torn);
  PdfBuilder secret = numbered(4);
  secret.addText("trailer /Info<</Title(Geheimnis \\344)>>\n"
                 "page /Resources @r | BT /F1 12 Tf 72 700 Td (the last page) Tj ET");
  secret.write(raw);
  for (const auto& [name, user, kind] : {std::array{"latin", "grüße", "128 --use-aes=n"},
                                         {"aes", "grüße", "256"},
                                         {"open", "", "256"},
                                         {"blank", "word ", "256"}}) {
    run(std::string("qpdf --allow-weak-crypto --encrypt '") + user + "' owner " + kind + " -- " +
        raw + " " + path(std::string("protected-") + name));
  }
}

} // namespace tests::cleftor
