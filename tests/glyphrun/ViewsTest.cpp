// Views: pages as pictures.

#include "Pages.h"

#include <gtest/gtest.h>

#include <future>

namespace glyphruntest {
namespace {

struct Pixel {
  int blue, green, red, alpha;
  bool operator==(const Pixel&) const = default;
};

Pixel pixelAt(const GlyphrunImage& image, int x, int y) {
  const unsigned char* p = image.pixels + (static_cast<std::ptrdiff_t>(y) * image.width + x) * 4;
  return {p[0], p[1], p[2], p[3]};
}

class Views : public testing::Test {
protected:
  void open(const PdfBuilder& pdf) {
    const std::string path = pathFor("view.pdf");
    pdf.write(path);
    view_ = OpenView(wide(path).c_str(), u"", &result_);
    ASSERT_NE(view_, nullptr);
  }
  ~Views() override {
    CloseView(view_);
    ReleaseImage(&image_);
  }

  GlyphrunView* view_ = nullptr;
  int32_t result_ = 1;
  GlyphrunImage image_{0, 0, nullptr};
};

TEST_F(Views, PagesAreDrawnAsShown) {
  PdfBuilder pdf;
  pdf.addPage("1 0 0 rg 0 0 100 100 re f", "", "/Rotate 90/UserUnit 2/CropBox[0 0 200 400]");
  pdf.claimPages(7);
  open(pdf);
  EXPECT_EQ(result_, GLYPHRUN_OK);
  EXPECT_EQ(GetViewPageCount(view_), 1);
  double width = 0;
  double height = 0;
  ASSERT_EQ(GetViewPageSize(view_, 1, &width, &height), GLYPHRUN_OK);
  EXPECT_EQ(width, 400);
  EXPECT_EQ(height, 200);
  ASSERT_EQ(RenderViewPage(view_, 1, 0.5, &image_), GLYPHRUN_OK);
  ASSERT_EQ(image_.width, 200);
  ASSERT_EQ(image_.height, 100);
  // The lower left corner of the page is the upper left one of the turned page.
  EXPECT_EQ(pixelAt(image_, 20, 20), (Pixel{0, 0, 255, 255}));
  EXPECT_EQ(pixelAt(image_, 20, 70), (Pixel{255, 255, 255, 255}));
  EXPECT_EQ(pixelAt(image_, 180, 20), (Pixel{255, 255, 255, 255}));
}

TEST_F(Views, RefusalsLeaveThePictureEmpty) {
  PdfBuilder pdf;
  pdf.addPage("", "");
  open(pdf);
  for (const auto& [page, scale] : {std::pair{0, 1.0},
                                    {2, 1.0},
                                    {1, 0.0},
                                    {1, -1.0},
                                    {1, 1e9},
                                    {1, std::numeric_limits<double>::quiet_NaN()}}) {
    EXPECT_LT(RenderViewPage(view_, page, scale, &image_), 0);
    EXPECT_EQ(image_.pixels, nullptr);
  }
  EXPECT_EQ(RenderViewPage(nullptr, 1, 1, &image_), GLYPHRUN_NOT_OPEN);
  EXPECT_EQ(OpenView(u"/nowhere.pdf", u"", &result_), nullptr);
  EXPECT_EQ(result_, GLYPHRUN_CANNOT_OPEN);
}

TEST_F(Views, AGlyphThatDrawsItselfEnds) {
  PdfBuilder pdf;
  const int font = pdf.reserve();
  std::string show = "1000 0 d0 BT /S 1 Tf ";
  for (int i = 0; i < 30; ++i) {
    show += "(AAAAAAAAAA) Tj ";
  }
  const int glyph = pdf.addStream(show + "ET");
  pdf.set(font, "<</Type/Font/Subtype/Type3/FontMatrix[1 0 0 1 0 0]/FontBBox[0 0 1 1]/FirstChar "
                "65/LastChar 65"
                "/Widths[1]/Encoding<</Differences[65/A]>>/CharProcs<</A " +
                    PdfBuilder::ref(glyph) + ">>/Resources<</Font<</S " + PdfBuilder::ref(font) +
                    ">>>>>>");
  pdf.addPage("BT /S 10 Tf 50 700 Td (AAA) Tj ET", "/Font<</S " + PdfBuilder::ref(font) + ">>");
  open(pdf);
  static_cast<void>(RenderViewPage(view_, 1, 1, &image_));
  const GlyphrunWord* words = nullptr;
  ASSERT_EQ(GetViewWords(view_, 1, &words), 1);
  EXPECT_EQ(narrow(words[0].text), "AAA");
}

TEST_F(Views, APageThatIsBeingDrawnIsGivenUp) {
  PdfBuilder pdf;
  int form = pdf.addStream(repeat("0 0 600 800 re f ", 100), "/Subtype/Form/BBox[0 0 600 800]");
  std::string resources;
  for (int depth = 0; depth < 8; ++depth) {
    resources = "/XObject<</N " + PdfBuilder::ref(form) + ">>";
    form = pdf.addStream(repeat("/N Do ", 10),
                         "/Subtype/Form/BBox[0 0 600 800]/Resources<<" + resources + ">>");
  }
  pdf.addPage("/N Do", "/XObject<</N " + PdfBuilder::ref(form) + ">>");
  open(pdf);
  auto reason = std::async(std::launch::async, [this] {
    EXPECT_LT(RenderViewPage(view_, 1, 1, &image_), 0);
    return narrow(GlyphrunLastErrorText());
  });
  AbortView(view_);
  EXPECT_EQ(reason.get(), "the drawing was given up");
  EXPECT_EQ(image_.pixels, nullptr);
}

TEST_F(Views, WordsAreThoseOfTheSession) {
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 50 600 Td (second) Tj 0 100 Td (first) Tj ET", plainFonts(pdf));
  const std::vector<Word> session = wordsOf(pdf);
  open(pdf);
  const GlyphrunWord* words = nullptr;
  ASSERT_EQ(GetViewWords(view_, 1, &words), static_cast<int>(session.size()));
  for (std::size_t i = 0; i < session.size(); ++i) {
    EXPECT_EQ((Word{narrow(words[i].text), words[i].h, words[i].v}), session[i]);
  }
  EXPECT_EQ(words[0].page, 1);
}

TEST_F(Views, WordsJoinAsTheViewIsTold) {
  PdfBuilder pdf;
  pdf.addPage("BT /F 10 Tf 50 600 Td [(two)-200(parts)] TJ ET", plainFonts(pdf));
  open(pdf);
  const GlyphrunWord* words = nullptr;
  for (const auto& [factor, count] : {std::pair{1.02, 2}, {1.3, 1}, {1.02, 2}}) {
    SetViewWordSpacing(view_, factor);
    EXPECT_EQ(GetViewWords(view_, 1, &words), count);
  }
}

} // namespace
} // namespace glyphruntest
