// What a program needs to know of its terminal.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>

namespace folivex::platform {

/// True when the stream is shown to a person.
bool isTerminal(std::FILE* stream);

/// Text as it may be written to a terminal: text from a page or a file name can hold control
/// characters, which a terminal would obey. Line ends and tabs stay.
QByteArray terminalText(const QString& text);

/// True when a person can see a window: a display is there, and Qt was not told to draw elsewhere.
bool hasDisplay();

} // namespace folivex::platform
