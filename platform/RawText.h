// RawText: names of the system that need not be text.
#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>

namespace folivex::platform {

/// A name as text that keeps all of it: each byte that is no UTF-8 is half a character, U+DC00 and
/// the byte. Nothing can be opened by such a text, and shown it has U+FFFD there.
QString rawText(const std::filesystem::path::string_type& name);

/// An argument of the program in the same way.
QString rawArgument(const char* argument);

/// All that the program was started with, its own path first, where the system hands it over as one
/// text (Windows); empty elsewhere.
QString wholeCommandLine();

bool hasRawBytes(const QString& text);
/// The bytes that rawText() was made of.
QByteArray rawBytes(const QString& text);

/// With the current folder in front of a relative one, and without "." and "..".
QString absoluteRawPath(const QString& path);

} // namespace folivex::platform
