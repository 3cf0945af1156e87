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

  /// As extract() tells them.
  std::string words() {
    const int count = GetViewWords(view_, 1, &words_);
    std::string all;
    for (int i = 0; i < count; ++i) {
      all += (i > 0 ? " " : "") + narrow(words_[i].text) + "@" + std::to_string(words_[i].h) + "," +
             std::to_string(words_[i].v);
    }
    return all;
  }

  GlyphrunView* view_ = nullptr;
  int32_t result_ = 1;
  GlyphrunImage image_{0, 0, nullptr};
  const GlyphrunWord* words_ = nullptr;
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
  pdf.addText("glyph =  | 1000 0 d0 BT /S 1 Tf " + repeat("(AAAAAAAAAA) Tj ", 30) +
              "ET\nfont = <</Type/Font/Subtype/Type3/FontMatrix[1 0 0 1 0 0]/FontBBox[0 0 1 1]"
              "/FirstChar 65/LastChar 65/Widths[1]/Encoding<</Differences[65/A]>>"
              "/CharProcs<</A @glyph>>/Resources<</Font<</S @font>>>>>>\n"
              "page /Resources<</Font<</S @font>>>> | BT /S 10 Tf 50 700 Td (AAA) Tj ET");
  open(pdf);
  static_cast<void>(RenderViewPage(view_, 1, 1, &image_));
  EXPECT_EQ(words(), "AAA@50,100");
}

TEST_F(Views, APageThatIsBeingDrawnIsGivenUp) {
  PdfBuilder pdf;
  const std::string form = " = /Subtype/Form/BBox[0 0 600 800]";
  pdf.addText("form0" + form + " | " + repeat("0 0 600 800 re f ", 100));
  for (int depth = 1; depth <= 8; ++depth) {
    pdf.addText("form" + std::to_string(depth) + form + "/Resources<</XObject<</N @form" +
                std::to_string(depth - 1) + ">>>> | " + repeat("/N Do ", 10));
  }
  pdf.addText("page /Resources<</XObject<</N @form8>>>> | /N Do");
  open(pdf);
  auto reason = std::async(std::launch::async, [this] {
    EXPECT_LT(RenderViewPage(view_, 1, 1, &image_), 0);
    return narrow(GlyphrunLastErrorText());
  });
  AbortView(view_);
  EXPECT_EQ(reason.get(), "the drawing was given up");
  EXPECT_EQ(image_.pixels, nullptr);
}

TEST_F(Views, WordsAreThoseOfTheSessionWithTheirBoxes) {
  PdfBuilder pdf = newPdf();
  pdf.addPage("BT /F 10 Tf 50 600 Td (second) Tj 0 100 Td (Word) Tj ET", plainFonts);
  open(pdf);
  EXPECT_EQ(words(), wordsOf(pdf, 1, true));
  ASSERT_NE(words_, nullptr);
  EXPECT_EQ(words_->page, 1);
  EXPECT_NEAR(words_->left, 50, 0.01);
  EXPECT_NEAR(words_->right, 50 + 9.44 + 5.56 + 3.33 + 5.56, 0.01); // Helvetica's widths
  EXPECT_LT(words_->top, 94);
  EXPECT_GT(words_->bottom, 100);
}

TEST_F(Views, WordsJoinAsTheViewIsTold) {
  PdfBuilder pdf = newPdf();
  pdf.addPage("BT /F 10 Tf 50 600 Td [(two)-200(parts)] TJ ET", plainFonts);
  open(pdf);
  for (const auto& [factor, count] : {std::pair{1.02, 2}, {1.3, 1}, {1.02, 2}}) {
    SetViewWordSpacing(view_, factor);
    EXPECT_EQ(GetViewWords(view_, 1, &words_), count);
  }
}

} // namespace
} // namespace glyphruntest
