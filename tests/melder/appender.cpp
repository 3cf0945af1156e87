// Appends one file to another again and again: melder_appender EXISTING ADDITION TIMES [wait|leave]
// After each append it prints the size of the file; with "wait" it then stays until it is killed,
// with "leave" it ends without a word to the library.
#include "melder/melder.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

int main(int count, char** words) {
  if (count < 4) {
    return 2;
  }
  const std::filesystem::path existing(words[1]);
  const std::filesystem::path addition(words[2]);
  for (int left = std::atoi(words[3]); left > 0; --left) {
    if (getAppendPDFToFile(addition.u16string().c_str(), existing.u16string().c_str(), u"") == 0) {
      return 1;
    }
    std::printf("%ju\n", static_cast<uintmax_t>(std::filesystem::file_size(existing)));
    std::fflush(stdout);
  }
  const std::string ending = count > 4 ? words[4] : "";
  if (ending == "wait") {
    pause();
  }
  if (ending != "leave") {
    FinishAppends();
  }
  return 0;
}
