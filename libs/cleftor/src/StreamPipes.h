#pragma once

#include "DocumentWriter.h"

#include <qpdf/QPDFObjectHandle.hh>

#include <string>

namespace cleftor {

/// Takes a stream's data as stored, only decrypted. What a damaged file does not hold is missing,
/// as it is for every reader of the source.
std::string storedData(QPDFObjectHandle stream);

/// Hands a stream's data as stored on to the output, without ever holding all of it.
void writeStoredData(QPDFObjectHandle stream, DocumentWriter& writer);

/// Decodes a stream into content; false when it cannot be decoded to its end, or is larger than any
/// honest content.
bool decodeContent(QPDFObjectHandle stream, std::string& content);

} // namespace cleftor
