#include "app/DisplayName.h"

#include <optional>

namespace tarnwick {

namespace {

constexpr char16_t firstStrongIsolate = u'\u2068';
constexpr char16_t popDirectionalIsolate = u'\u2069';

// The Unicode symbol that stands for a character which would break or hide the line.
std::optional<char16_t> visibleSymbol(QChar c) {
    const char16_t code = c.unicode();
    if (code < 0x20)
        return char16_t(0x2400 + code); // ␀ … ␟
    if (code == 0x7F)
        return u'\u2421'; // ␡
    if (c.category() == QChar::Other_Control)
        return u'\uFFFD';
    if (c.category() == QChar::Separator_Line || c.category() == QChar::Separator_Paragraph)
        return u'\u2424'; // ␤
    return std::nullopt;
}

bool movesTheDirection(QChar c) {
    switch (c.direction()) {
    case QChar::DirR:
    case QChar::DirAL:
    case QChar::DirAN:
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

} // namespace

QString displayName(const QString& announcedName) {
    QString shown = announcedName;
    bool isolate = false;
    for (QChar& c : shown) {
        if (const std::optional<char16_t> symbol = visibleSymbol(c))
            c = *symbol;
        isolate = isolate || movesTheDirection(c);
    }
    return isolate ? firstStrongIsolate + shown + popDirectionalIsolate : shown;
}

} // namespace tarnwick
