#include "transfer/MakeraCapability.h"

#include <QRegularExpression>

namespace tarnwick::MakeraCapability {

std::optional<QString> fileType(const QString& text) {
    static const QRegularExpression report(QStringLiteral("ftype[ \t]*=[ \t]*[A-Za-z0-9]+"));
    const QRegularExpressionMatch match = report.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QStringList pieces = match.captured().split(QLatin1Char('='), Qt::SkipEmptyParts);
    QString type = pieces.isEmpty() ? QString() : pieces.last();
    qsizetype begin = 0;
    qsizetype end = type.size();
    const auto isBlank = [&](qsizetype i) {
        return type[i] == QLatin1Char(' ') || type[i] == QLatin1Char('\t');
    };
    while (begin < end && isBlank(begin))
        ++begin;
    while (end > begin && isBlank(end - 1))
        --end;
    return type.mid(begin, end - begin);
}

} // namespace tarnwick::MakeraCapability
