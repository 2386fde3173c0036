#include "transfer/MakeraFilename.h"

#include <QCoreApplication>

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

} // namespace

Result<QByteArray> uploadCommand(const QString& name) {
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
