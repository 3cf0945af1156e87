// KeptInMemory: a memory of settings that ends with the test.
#pragma once

#include "updates/UpdateSettings.h"

#include <map>

namespace folivex::test {

class KeptInMemory : public UpdateMemory {
public:
  QString text(const QString& key) const override {
    const auto at = texts.find(key);
    return at == texts.end() ? QString() : at->second;
  }
  void setText(const QString& key, const QString& value) override { texts[key] = value; }

  std::map<QString, QString> texts;
};

} // namespace folivex::test
