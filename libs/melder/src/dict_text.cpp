#include "dict_text.h"

namespace melder {

DictText dictText(QPDFObjectHandle dictionary) {
  DictText result;
  if (dictionary.isDictionary()) {
    for (auto& [key, value] : dictionary.getDictAsMap()) {
      result[key] = value.unparse();
    }
  }
  return result;
}

std::string written(const DictText& dictionary) {
  std::string text = "<<";
  for (const auto& [key, value] : dictionary) {
    text += QPDFObjectHandle::newName(key).unparse() + ' ' + value + ' ';
  }
  return text + ">>";
}

std::string referenceTo(QPDFObjGen id) {
  return std::to_string(id.getObj()) + ' ' + std::to_string(id.getGen()) + " R";
}

std::string stringText(const std::string& bytes) {
  return QPDFObjectHandle::newString(bytes).unparse();
}

} // namespace melder
