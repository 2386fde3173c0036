#include "app/IniText.h"

#include <QDataStream>
#include <QIODevice>
#include <QStringDecoder>

#include <algorithm>

namespace tarnwick::settings {

namespace {

constexpr QLatin1StringView byteArrayPrefix{"@ByteArray("};
constexpr QLatin1StringView variantPrefix{"@Variant("};
constexpr QLatin1StringView invalidValue{"@Invalid()"};
constexpr QLatin1StringView rootSection{"General"};

bool isHexDigit(char16_t ch) {
    return (ch >= u'0' && ch <= u'9') || (ch >= u'a' && ch <= u'f') || (ch >= u'A' && ch <= u'F');
}

QByteArray hexEscape(char16_t ch) {
    return "\\x" + QByteArray::number(ch, 16);
}

QByteArray escapedKey(QStringView key) {
    QByteArray out;
    for (const QChar c : key) {
        const char16_t ch = c.unicode();
        if (ch == u'/')
            out += '\\';
        else if ((ch < 0x80 && QChar::isLetterOrNumber(ch)) || ch == u'_' || ch == u'-' ||
                 ch == u'.')
            out += char(ch);
        else if (ch <= 0xFF)
            out += '%' + QByteArray::number(ch, 16).toUpper().rightJustified(2, '0');
        else
            out += "%U" + QByteArray::number(ch, 16).toUpper().rightJustified(4, '0');
    }
    return out;
}

std::optional<QString> unescapedKey(QStringView text) {
    QString key;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (ch == u'\\') {
            key += u'/';
        } else if (ch == u'%') {
            const qsizetype digits = text.mid(i + 1).startsWith(u'U') ? 4 : 2;
            const qsizetype start = i + 1 + (digits == 4 ? 1 : 0);
            bool ok = false;
            const uint code = text.mid(start, digits).toUInt(&ok, 16);
            if (!ok || start + digits > text.size())
                return std::nullopt;
            key += QChar(char16_t(code));
            i = start + digits - 1;
        } else {
            key += ch;
        }
    }
    return key;
}

QString valueText(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return invalidValue;
    case QMetaType::QByteArray:
        return byteArrayPrefix + QString::fromLatin1(value.toByteArray()) + u')';
    case QMetaType::QString: {
        const QString text = value.toString();
        return text.startsWith(u'@') ? u'@' + text : text;
    }
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return value.toString();
    default:
        break;
    }
    QByteArray data;
    QDataStream stream(&data, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_0);
    stream << value;
    return variantPrefix + QString::fromLatin1(data) + u')';
}

// A byte array's Latin-1 text escapes every byte beyond ASCII, other texts are UTF-8; a numeric
// escape reads every hex digit that follows, so a digit after one is escaped too.
QByteArray escapedValue(const QString& text) {
    const bool latin1 = text.startsWith(byteArrayPrefix) || text.startsWith(variantPrefix);
    bool quoted = text.startsWith(u' ') || text.endsWith(u' ');
    bool afterNumericEscape = false;
    QByteArray out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t ch = text[i].unicode();
        quoted = quoted || ch == u';' || ch == u',' || ch == u'=';
        if (afterNumericEscape && isHexDigit(ch)) {
            out += hexEscape(ch);
            continue;
        }
        afterNumericEscape = false;
        switch (ch) {
        case u'\n':
            out += "\\n";
            continue;
        case u'\r':
            out += "\\r";
            continue;
        case u'\t':
            out += "\\t";
            continue;
        case u'"':
            out += "\\\"";
            continue;
        case u'\\':
            out += "\\\\";
            continue;
        default:
            break;
        }
        const bool pair =
            QChar::isHighSurrogate(ch) && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (ch < 0x20 || (latin1 && ch >= 0x7F) || (QChar::isSurrogate(ch) && !pair)) {
            out += hexEscape(ch);
            afterNumericEscape = true;
        } else if (ch < 0x80) {
            out += char(ch);
        } else {
            out += text.mid(i, pair ? 2 : 1).toUtf8();
            i += pair ? 1 : 0;
        }
    }
    return quoted ? '"' + out + '"' : out;
}

std::optional<QVariant> variantFromText(const QString& text) {
    if (text.startsWith(u"@@"))
        return text.mid(1);
    if (text == invalidValue)
        return QVariant();
    const bool bytes = text.startsWith(byteArrayPrefix);
    if (!bytes && !text.startsWith(variantPrefix))
        return text;
    if (!text.endsWith(u')'))
        return std::nullopt;
    const QStringView inner =
        QStringView(text).sliced(bytes ? byteArrayPrefix.size() : variantPrefix.size()).chopped(1);
    if (std::any_of(inner.begin(), inner.end(), [](QChar ch) { return ch.unicode() > 0xFF; }))
        return std::nullopt;
    const QByteArray data = inner.toLatin1();
    if (bytes)
        return data;
    QDataStream stream(data);
    stream.setVersion(QDataStream::Qt_4_0);
    QVariant value;
    stream >> value;
    if (stream.status() != QDataStream::Ok)
        return std::nullopt;
    return value;
}

// Quotes keep commas and semicolons; outside them a comma separates the items of a list and a
// semicolon starts a comment.
std::optional<QVariant> parseValue(QStringView text) {
    QStringList items;
    QString item;
    bool quoted = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (ch == u'"') {
            quoted = !quoted;
        } else if (ch == u',' && !quoted) {
            items.append(item.trimmed());
            item.clear();
        } else if (ch == u';' && !quoted) {
            break;
        } else if (ch != u'\\') {
            item += ch;
        } else if (++i == text.size()) {
            return std::nullopt;
        } else if (const qsizetype simple = QStringView(u"abfnrtv\"\\'?;,").indexOf(text[i]);
                   simple >= 0) {
            item += QStringView(u"\a\b\f\n\r\t\v\"\\'?;,")[simple];
        } else {
            const bool hex = text[i] == u'x';
            const auto isDigit = [hex](QChar c) {
                return hex ? isHexDigit(c.unicode()) : (c >= u'0' && c <= u'7');
            };
            const qsizetype start = hex ? i + 1 : i;
            qsizetype end = start;
            while (end < text.size() && isDigit(text[end]))
                ++end;
            if (end == start)
                return std::nullopt;
            item += QChar(char16_t(text.sliced(start, end - start).toUInt(nullptr, hex ? 16 : 8)));
            i = end - 1;
        }
    }
    if (quoted)
        return std::nullopt;
    if (!items.isEmpty()) {
        items.append(item.trimmed());
        return items;
    }
    return variantFromText(item);
}

} // namespace

QByteArray iniText(const QSettings::SettingsMap& values) {
    QByteArray out = '[' + QByteArray(rootSection.data(), rootSection.size()) + "]\n";
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        out += escapedKey(it.key()) + '=' + escapedValue(valueText(it.value())) + '\n';
    return out;
}

std::optional<QSettings::SettingsMap> parseIniText(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError())
        return std::nullopt;
    QSettings::SettingsMap values;
    QString section;
    for (QStringView line : QStringView(text).split(u'\n')) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#'))
            continue;
        if (line.startsWith(u'[')) {
            const QStringView escaped = line.sliced(1).chopped(1);
            // QSettings escapes a group of that name so that it is not the root.
            const std::optional<QString> name = !line.endsWith(u']') ? std::nullopt
                                                : escaped == u"%General"
                                                    ? std::optional<QString>(rootSection)
                                                    : unescapedKey(escaped);
            if (!name)
                return std::nullopt;
            section = escaped == rootSection ? QString() : *name + u'/';
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        const std::optional<QString> key =
            equals > 0 ? unescapedKey(line.first(equals).trimmed()) : std::nullopt;
        const std::optional<QVariant> value =
            key ? parseValue(line.sliced(equals + 1).trimmed()) : std::nullopt;
        if (!value)
            return std::nullopt;
        values.insert(section + *key, *value);
    }
    return values;
}

} // namespace tarnwick::settings
