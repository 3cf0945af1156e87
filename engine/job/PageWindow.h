// PageWindow: the pages of a source that a run looks at.
#pragma once

namespace folivex {

/// Page indexes from 0: `first` is taken, `end` is the one behind the last. Empty when end <=
/// first.
struct PageWindow {
  int first = 0;
  int end = 0;
};

/// The window of a file of `pageCount` pages for the settings `STARTFROMPAGE` (from 1; lower values
/// mean 1) and `STARTENDPAGE` (from 1; 0 means to the end, a negative value leaves that many pages
/// off the end).
PageWindow pageWindow(int startFromPage, int startEndPage, int pageCount);

} // namespace folivex
