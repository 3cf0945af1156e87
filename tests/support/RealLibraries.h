// RealLibraries: the three libraries of this build, for tests that run the engine.
#pragma once

#include "engine/job/JobDriver.h"
#include "engine/output/CAppendPdfInit.h"
#include "engine/output/CSplitPdfInit.h"
#include "engine/words/CPDFTextDumpInit.h"
#include "tests/support/BuiltLibraries.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <memory>

namespace folivex::test {

/// The three libraries of this build, loaded once for all tests of a program.
struct RealLibraries {
  static RealLibraries& get() {
    static RealLibraries libraries;
    return libraries;
  }
  JobDriver::Libraries all() { return {*text, *split, *append}; }

  std::unique_ptr<CPDFTextDumpInit> text;
  std::unique_ptr<CSplitPdfInit> split;
  std::unique_ptr<CAppendPdfInit> append;

private:
  /// Behind the last test: when the process takes its static objects down, a thread of the
  /// libraries that still frees a source would find some of them gone.
  class LetGo : public testing::EmptyTestEventListener {
    void OnTestProgramEnd(const testing::UnitTest& /*test*/) override {
      get().append.reset();
      get().split.reset();
      get().text.reset();
    }
  };

  RealLibraries() {
    needApplication();
    EXPECT_EQ(loadBuiltLibraries(), QString());
    text = std::make_unique<CPDFTextDumpInit>();
    split = std::make_unique<CSplitPdfInit>();
    append = std::make_unique<CAppendPdfInit>();
    EXPECT_TRUE(text->loaded && split->loaded && append->loaded);
    testing::UnitTest::GetInstance()->listeners().Append(new LetGo); // which owns it
  }

  /// QLibrary looks beside the application; a test of windows has one already.
  static void needApplication() {
    if (QCoreApplication::instance() == nullptr) {
      static int argumentCount = 1;
      static char name[] = "test";
      static char* arguments[] = {name, nullptr};
      static const QCoreApplication application(argumentCount, arguments);
    }
  }
};

} // namespace folivex::test
