#ifndef MELDER_DICT_TEXT_H
#define MELDER_DICT_TEXT_H

#include <map>
#include <string>

#include <qpdf/QPDFObjGen.hh>
#include <qpdf/QPDFObjectHandle.hh>

namespace melder {

/**
 * A dictionary of the receiving file as key (with its slash) and written value. Kept as text so
 * that nothing of the parsed file has to stay in memory between two appends.
 */
using DictText = std::map<std::string, std::string>;

[[nodiscard]] DictText dictText(QPDFObjectHandle dictionary);
[[nodiscard]] std::string written(const DictText& dictionary);
[[nodiscard]] std::string referenceTo(QPDFObjGen id);
/** A string object; any bytes. */
[[nodiscard]] std::string stringText(const std::string& bytes);

} // namespace melder

#endif
