// CryptFilter: streams of a protected file, written where anybody may read them.
#pragma once

#include <qpdf/QPDFObjectHandle.hh>

#include <map>
#include <string>

namespace pages {

/// Whether the dictionary of a document's encryption leaves its strings and streams as they are:
/// then its attachments alone are encrypted.
bool hasPlainPages(QPDFObjectHandle encryption);

/// Whether a stream names a key of its own, whatever the document's is (PDF 32000-1, 7.4.10).
bool hasKeyOfItsOwn(QPDFObjectHandle streamDictionary);

/// Takes "/Crypt" out of the filters of a stream's entries.
void dropCryptFilter(std::map<std::string, QPDFObjectHandle>& entries);

} // namespace pages
