// The PDFs that the library is tested with.

#include "Splitting.h"

#include <tests/support/PdfBuilder.h>

#include <algorithm>
#include <array>
#include <random>

namespace tests::cleftor {

namespace {

using testpdf::PdfBuilder;

/// Bytes that no compression makes smaller.
std::string noise(std::size_t count) {
  static std::mt19937 random;
  std::string bytes(count, '\0');
  std::generate(bytes.begin(), bytes.end(), [] { return static_cast<char>(random()); });
  return bytes;
}

std::string replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
    text.replace(at, what.size(), by);
  }
  return text;
}

/// What a file of PdfBuilder::addText tells. Lines with {i} stand for six, of which {n} is the next
/// and {b} the one before; "image name size" is a square picture.
PdfBuilder fromText(const std::string& name) {
  constexpr int rounds = 6;
  PdfBuilder pdf;
  std::string text;
  std::istringstream lines(
      contentsOf(FOLIVEX_SOURCE_DIR "/tests/cleftor/sources/" + name + ".txt"));
  for (std::string line; std::getline(lines, line);) {
    for (int i = 0; i < (line.find("{i}") == std::string::npos ? 1 : rounds); ++i) {
      std::string one = replaced(line, "{i}", std::to_string(i + 1));
      one = replaced(one, "{n}", std::to_string((i + 1) % rounds + 1));
      one = replaced(one, "{b}", std::to_string((i + rounds - 1) % rounds + 1));
      std::istringstream words(one);
      std::string kind, object, size;
      words >> kind >> object >> size;
      if (kind != "image") {
        text += one + "\n";
        continue;
      }
      pdf.set(pdf.named(object),
              PdfBuilder::stream(noise(std::stoul(size) * std::stoul(size)),
                                 "/Subtype/Image/ColorSpace/DeviceGray/BitsPerComponent 8/Width " +
                                     size + "/Height " + size));
    }
  }
  pdf.addText(text);
  return pdf;
}

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
  for (const char* name : {"everything", "older", "looping", "clinging", "shared"}) {
    fromText(name).write(path(name));
  }
  const std::string plain = numbered(6).finish();
  writeFile(path("plain"), plain);
  writeFile(path("empty"), "");
  writeFile(path("garbage"), noise(5000));
  writeFile(path("headless"), "%PDF-1.4\n%%EOF\n");
  writeFile(path("truncated"), plain.substr(0, plain.size() * 2 / 3));
  writeFile(path("noxref"), replaced(plain, "startxref", "startxxxx"));
  PdfBuilder lying = numbered(3);
  lying.claimPages(1'400'000'000);
  lying.write(path("lying"));
  numbered(2, "/PieceInfo<</Deep " + std::string(400, '[') + std::string(400, ']') + ">>")
      .write(path("deep"));

  const std::string raw = path("raw");
  numbered(30).write(raw);
  run("qpdf --object-streams=generate " + raw + " " + path("compressed"));
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
