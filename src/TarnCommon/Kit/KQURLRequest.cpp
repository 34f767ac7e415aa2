#include <TarnCommon/KQURLRequest.h>

#include <TarnCommon/KQAssert.h>

#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtNetwork/QNetworkRequest>

extern "C" {
const char KQMultipartBoundary[] = "---------------------------14737809831466499882746641449";
}

namespace {

const QByteArray ContentType = QByteArrayLiteral("Content-Type");
const QByteArray ContentLength = QByteArrayLiteral("Content-Length");

} // namespace

KQURLRequest::KQURLRequest(const QUrl &url)
    : m_url(url)
{
}

QByteArray KQURLRequest::valueForHTTPHeaderField(const QByteArray &field) const
{
    for (const auto &header : m_headers) {
        if (header.first.compare(field, Qt::CaseInsensitive) == 0)
            return header.second;
    }
    return QByteArray();
}

void KQURLRequest::setValue(const QByteArray &value, const QByteArray &field)
{
    for (qsizetype i = 0; i < m_headers.size(); ++i) {
        if (m_headers.at(i).first.compare(field, Qt::CaseInsensitive) == 0) {
            if (value.isNull())
                m_headers.removeAt(i);
            else
                m_headers[i].second = value;
            return;
        }
    }
    if (!value.isNull())
        m_headers.append({field, value});
}

void KQURLRequest::addValue(const QByteArray &value, const QByteArray &field)
{
    const QByteArray earlier = valueForHTTPHeaderField(field);
    setValue(earlier.isNull() ? value : earlier + ',' + value, field);
}

QNetworkRequest KQURLRequest::networkRequest() const
{
    QNetworkRequest request(m_url);
    for (const auto &header : m_headers)
        request.setRawHeader(header.first, header.second);
    return request;
}

QNetworkReply *KQURLRequest::send(QNetworkAccessManager *manager) const
{
    KQAssertText("manager", manager != nullptr, nullptr);
    QNetworkRequest request = networkRequest();
    // Qt sends only as many body bytes as Content-Length says.
    if (!m_body.isEmpty() || !valueForHTTPHeaderField(ContentLength).isNull())
        request.setRawHeader(ContentLength, QByteArray::number(m_body.size()));
    return manager->sendCustomRequest(request, m_method, m_body);
}

QString KQHTMLFormURLEncode(const QString &string)
{
    QByteArray utf8 = string.toUtf8();
    const qsizetype nul = utf8.indexOf('\0');
    if (nul >= 0)
        utf8.truncate(nul);
    static const char hex[] = "0123456789ABCDEF";
    QString out;
    out.reserve(utf8.size() * 3);
    for (const char c : std::as_const(utf8)) {
        const unsigned char b = static_cast<unsigned char>(c);
        if ((b >= 'A' && b <= 'Z') || (b >= 'a' && b <= 'z') || (b >= '0' && b <= '9') || b == '-' || b == '.'
            || b == '_' || b == '~') {
            out += QLatin1Char(char(b));
        } else if (b == ' ') {
            out += u'+';
        } else {
            out += u'%';
            out += QLatin1Char(hex[b >> 4]);
            out += QLatin1Char(hex[b & 15]);
        }
    }
    return out;
}

void kq_setHTTPPostParameters(KQURLRequest &request, const QList<QPair<QString, QString>> &parameters)
{
    QString body;
    quint64 length = 0;
    for (const auto &parameter : parameters) {
        if (!body.isEmpty())
            body += u'&';
        body += KQHTMLFormURLEncode(parameter.first);
        body += u'=';
        body += KQHTMLFormURLEncode(parameter.second);
        length += quint64(parameter.second.size());
    }
    request.setValue(QByteArray::number(length), ContentLength);
    request.setValue(QByteArrayLiteral("application/x-www-form-urlencoded"), ContentType);
    request.setHTTPMethod(QByteArrayLiteral("POST"));
    request.setHTTPBody(body.toUtf8());
}

void kq_setHTTPPostParameters(KQURLRequest &request, const QVariantMap &parameters)
{
    QList<QPair<QString, QString>> pairs;
    pairs.reserve(parameters.size());
    for (auto it = parameters.cbegin(); it != parameters.cend(); ++it)
        pairs.append({it.key(), it.value().toString()});
    kq_setHTTPPostParameters(request, pairs);
}

void kq_setHTTPPostFile(KQURLRequest &request, const QString &contents, const QString &filename, const QString &key)
{
    if (contents.isNull())
        return;
    const QByteArray data = contents.toUtf8();
    const QByteArray boundary(KQMultipartBoundary);
    request.addValue("multipart/form-data; boundary=" + boundary, ContentType);
    QByteArray body;
    body.reserve(data.size() + 256);
    body += "--" + boundary + "\r\n";
    body += "Content-Disposition: attachment; name=\"" + key.toUtf8() + "\"; filename=\"" + filename.toUtf8()
        + "\"\r\n";
    body += "Content-Type: text/xml\r\n\r\n";
    body += data;
    body += "\r\n";
    body += "--" + boundary + "--\r\n";
    request.setValue(QByteArray::number(data.size()), ContentLength);
    request.setHTTPMethod(QByteArrayLiteral("POST"));
    request.setHTTPBody(body);
}
