// Appends one file to another again and again: melder_appender EXISTING ADDITION TIMES
#include "melder/melder.h"

#include <cstdlib>
#include <filesystem>

int main(int count, char** words) {
  if (count != 4) {
    return 2;
  }
  const std::filesystem::path existing(words[1]);
  const std::filesystem::path addition(words[2]);
  for (int left = std::atoi(words[3]); left > 0; --left) {
    if (getAppendPDFToFile(addition.u16string().c_str(), existing.u16string().c_str(), u"") == 0) {
      return 1;
    }
  }
  return 0;
}
