#include "transfer/MakeraFilename.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick::MakeraFilename {

namespace {

// The machine's command parser reads these characters itself, so they travel as control bytes.
constexpr std::array<std::pair<char16_t, char16_t>, 5> escapes{{
    {u' ', u'\x01'},
    {u'?', u'\x02'},
    {u'*', u'\x03'},
    {u'!', u'\x04'},
    {u'~', u'\x05'},
}};

bool isControlCharacter(QChar c) {
    return c.unicode() < 0x20 || c.unicode() == 0x7F || c.unicode() == 0x2028 ||
           c.unicode() == 0x2029;
}

// The symbol that stands for a control character in the Control Pictures block, so that the
// user sees where it is instead of a broken line.
QChar visibleSymbol(QChar c) {
    if (c.unicode() < 0x20)
        return QChar(char16_t(0x2400 + c.unicode()));
    if (c.unicode() == 0x7F)
        return QChar(u'\u2421');
    return QChar(u'\u2424');
}

} // namespace

std::optional<JobFileError> controlCharacterRefusal(const QString& name) {
    if (std::none_of(name.cbegin(), name.cend(), isControlCharacter))
        return std::nullopt;
    QString shown = name;
    for (QChar& c : shown)
        if (isControlCharacter(c))
            c = visibleSymbol(c);
    return JobFileError::controlCharacterInName(shown);
}

Result<QByteArray> uploadCommand(const QString& name) {
    if (std::optional<JobFileError> refusal = controlCharacterRefusal(name))
        return *refusal;
    QString escaped = name;
    escaped.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (escaped.contains(QLatin1Char('/')) || escaped == QLatin1String(".") ||
        escaped == QLatin1String(".."))
        return UploadError::rejected(QCoreApplication::translate(
            "tarnwick::MakeraFilename", "The filename contains a path separator."));
    for (const auto& [plain, control] : escapes)
        escaped.replace(QChar(plain), QChar(control));
    return QByteArray(QByteArray("upload ") + machineJobFolder + escaped.toUtf8() + '\n');
}

} // namespace tarnwick::MakeraFilename
