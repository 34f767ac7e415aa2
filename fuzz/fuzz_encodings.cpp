// Base 64 and the form encoder on arbitrary bytes. Base 64 is strict, so a
// text decodes exactly when it is the encoding of what it decodes to; Qt's
// own codec is the second opinion on the bytes. The form encoding must
// decode back to the text's UTF-8 up to its first NUL.
#include <TarnCommon/KQFilesAndEncodings.h>
#include <TarnCommon/KQURLRequest.h>

#include "FuzzSupport.h"

using namespace FuzzSupport;

namespace {

void base64(FuzzedDataProvider &data)
{
    const bool asText = data.ConsumeBool();
    const std::string raw = data.ConsumeRemainingBytesAsString();
    const QByteArray bytes(raw.data(), qsizetype(raw.size()));

    // Any bytes survive the round trip, encoded as Qt encodes them.
    const QString encoded = kq_base64Encode(bytes);
    check(encoded == QString::fromLatin1(bytes.toBase64()), "encoding");
    const QByteArray back = kq_base64Decode(encoded);
    check(!back.isNull() && back == bytes, "round trip");

    // Any text: read as Latin-1 (all ASCII or not) or as UTF-8.
    const QString text = asText ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes);
    reportCount() = 0;
    const QByteArray decoded = kq_base64Decode(text);
    bool ascii = true;
    for (QChar c : text)
        ascii = ascii && c.unicode() < 128;
    if (!ascii) {
        check(decoded.isNull() && reportCount() == 1, "non-ASCII text");
        return;
    }
    check(reportCount() == 0, "no report for ASCII");
    const bool canonical = QString::fromLatin1(QByteArray::fromBase64(text.toLatin1()).toBase64()) == text;
    check(decoded.isNull() != canonical, "strictness", text);
    if (canonical) {
        const auto qt = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
        check(qt.decodingStatus == QByteArray::Base64DecodingStatus::Ok && decoded == qt.decoded, "decoded bytes", text);
    }
}

QByteArray formDecoded(const QString &encoded)
{
    QByteArray bytes = encoded.toLatin1();
    bytes.replace('+', ' ');
    return QByteArray::fromPercentEncoding(bytes);
}

void formEncode(FuzzedDataProvider &data)
{
    QList<QPair<QString, QString>> parameters;
    const int count = data.ConsumeIntegralInRange(0, 4);
    for (int i = 0; i < count; ++i) {
        const QString key = text(data, 20);
        parameters.append({key, text(data, 40)});
    }
    qsizetype valueUnits = 0;
    QByteArray body;
    for (const auto &[key, value] : std::as_const(parameters)) {
        for (const QString &s : {key, value}) {
            const QString encoded = KQHTMLFormURLEncode(s);
            // Only the unreserved marks, "+" and upper-case "%XX" triples.
            for (qsizetype i = 0; i < encoded.size(); ++i) {
                const char16_t c = encoded.at(i).unicode();
                const bool plain = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')
                    || c == '-' || c == '.' || c == '_' || c == '~' || c == '+';
                if (plain)
                    continue;
                check(c == '%' && i + 2 < encoded.size(), "form encoding mark", encoded);
                for (int k = 1; k <= 2; ++k) {
                    const char16_t h = encoded.at(i + k).unicode();
                    check((h >= '0' && h <= '9') || (h >= 'A' && h <= 'F'), "upper-case hex", encoded);
                }
                i += 2;
            }
            QByteArray utf8 = s.toUtf8();
            if (utf8.indexOf('\0') >= 0)
                utf8.truncate(utf8.indexOf('\0'));
            check(formDecoded(encoded) == utf8, "form decoding", s);
        }
        if (!body.isEmpty())
            body += '&';
        body += KQHTMLFormURLEncode(key).toLatin1() + '=' + KQHTMLFormURLEncode(value).toLatin1();
        valueUnits += value.size();
    }
    KQURLRequest request(QUrl(QStringLiteral("http://example.invalid/")));
    kq_setHTTPPostParameters(request, parameters);
    check(request.HTTPBody() == body, "form body");
    check(request.valueForHTTPHeaderField("Content-Length") == QByteArray::number(valueUnits), "form length");
    check(request.HTTPMethod() == "POST", "form method");
}

} // namespace

TARN_FUZZ_QUIET_INITIALIZE()

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *bytes, size_t size)
{
    FuzzedDataProvider data(bytes, size);
    if (data.ConsumeBool())
        base64(data);
    else
        formEncode(data);
    return 0;
}
