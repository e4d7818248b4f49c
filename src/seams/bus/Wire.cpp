// Wire: building and reading requests and replies.
#include "seams/bus/Wire.h"

#include <QStringDecoder>

namespace pelkor::bus::wire {

namespace {

constexpr char magic0 = 'P';
constexpr char magic1 = 'B';
constexpr char version = 1;

void appendLength(QByteArray& out, quint32 n)
{
    out.append(char((n >> 24) & 0xFF));
    out.append(char((n >> 16) & 0xFF));
    out.append(char((n >> 8) & 0xFF));
    out.append(char(n & 0xFF));
}

Parsed refuse(Refusal why)
{
    Parsed p;
    p.status = Parsed::Refused;
    p.refusal = why;
    return p;
}

} // namespace

quint32 readLength(const char* p)
{
    const auto b = [p](int i) { return quint32(quint8(p[i])); };
    return (b(0) << 24) | (b(1) << 16) | (b(2) << 8) | b(3);
}

QByteArray encodeRequest(Kind kind, const QString& text)
{
    const QByteArray payload = kind == Kind::Text ? text.toUtf8() : QByteArray();
    QByteArray out;
    out.reserve(headerBytes + payload.size());
    out.append(magic0).append(magic1).append(version).append(char(kind));
    appendLength(out, quint32(payload.size()));
    out.append(payload);
    return out;
}

QByteArray encodeDone(const QString& text)
{
    const QByteArray payload = text.toUtf8();
    QByteArray out;
    out.reserve(5 + payload.size());
    out.append(done);
    appendLength(out, quint32(payload.size()));
    out.append(payload);
    return out;
}

QByteArray encodeRefusal(Refusal why)
{
    QByteArray out;
    out.append(refused).append(char(why));
    return out;
}

Parsed parseRequest(const QByteArray& bytes)
{
    // Judge each header byte as soon as it is in.
    if (bytes.size() >= 1 && bytes[0] != magic0)
        return refuse(Refusal::BadHeader);
    if (bytes.size() >= 2 && bytes[1] != magic1)
        return refuse(Refusal::BadHeader);
    if (bytes.size() >= 3 && bytes[2] != version)
        return refuse(Refusal::BadHeader);
    if (bytes.size() >= 4 && bytes[3] != char(Kind::Text) && bytes[3] != char(Kind::Focus)
        && bytes[3] != char(Kind::Get))
        return refuse(Refusal::UnknownKind);
    if (bytes.size() < headerBytes)
        return {};

    const Kind kind = Kind(bytes[3]);
    const quint32 length = readLength(bytes.constData() + 4);
    if (kind != Kind::Text && length != 0)
        return refuse(Refusal::BadHeader);
    if (length > maxTextBytes)
        return refuse(Refusal::TooLong);
    if (quint32(bytes.size() - headerBytes) < length)
        return {};

    Parsed p;
    p.kind = kind;
    if (length > 0) {
        // ConvertInitialBom: a text that begins with U+FEFF keeps it.
        QStringDecoder utf8(QStringDecoder::Utf8,
                            QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
        p.text = utf8(QByteArrayView(bytes.constData() + headerBytes, qsizetype(length)));
        if (utf8.hasError())
            return refuse(Refusal::BadText);
    }
    p.status = Parsed::Complete;
    return p;
}

} // namespace pelkor::bus::wire
