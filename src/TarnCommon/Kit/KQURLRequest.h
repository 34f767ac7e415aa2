/*! \file KQURLRequest.h
    \brief A URL request value (URL, method, headers, body) that can be sent, and
    the form-encoded and multipart POST bodies it can be given. */
#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMetaType>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtCore/QVariantMap>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

/*! \brief A request to send: a URL, an HTTP method, header fields and a body.

    Header names are compared without regard to case and kept in the order they
    were first set. Nothing is sent until send() is called. */
class TARNCOMMON_EXPORT KQURLRequest
{
public:
    /*! A GET request without a URL. */
    KQURLRequest() = default;
    /*! A GET request for \a url. */
    explicit KQURLRequest(const QUrl &url);

    /*! The request's URL. */
    QUrl URL() const { return m_url; }
    /*! Sets the URL. */
    void setURL(const QUrl &url) { m_url = url; }

    /*! The HTTP method, "GET" unless set. */
    QByteArray HTTPMethod() const { return m_method; }
    /*! Sets the HTTP method. */
    void setHTTPMethod(const QByteArray &method) { m_method = method; }

    /*! The body, empty unless set. */
    QByteArray HTTPBody() const { return m_body; }
    /*! Sets the body. */
    void setHTTPBody(const QByteArray &body) { m_body = body; }

    /*! The value of the header \a field, or a null QByteArray without one. */
    QByteArray valueForHTTPHeaderField(const QByteArray &field) const;
    /*! Sets the header \a field to \a value, replacing an earlier value; a null
        \a value removes the field. */
    void setValue(const QByteArray &value, const QByteArray &field);
    /*! Adds \a value to the header \a field: joined to an earlier value with
        ",", else set. */
    void addValue(const QByteArray &value, const QByteArray &field);
    /*! Every header field with its value, in order. */
    QList<QPair<QByteArray, QByteArray>> allHTTPHeaderFields() const { return m_headers; }

    /*! The request as Qt's network classes take it: URL and headers as stored. */
    QNetworkRequest networkRequest() const;

    /*! Sends the request through \a manager (QNetworkAccessManager::sendCustomRequest
        with the method and body) and returns the reply, which \a manager owns.

        The stored "Content-Length" may deliberately differ from the body's size
        (see kq_setHTTPPostParameters()); the request sent always carries the body's
        true byte length, so the whole body goes out. A null \a manager is
        reported ("manager") and gives nullptr. */
    QNetworkReply *send(QNetworkAccessManager *manager) const;

    /*! Same URL, method, headers and body. */
    friend bool operator==(const KQURLRequest &a, const KQURLRequest &b)
    {
        return a.m_url == b.m_url && a.m_method == b.m_method && a.m_headers == b.m_headers && a.m_body == b.m_body;
    }
    /*! Not operator==(). */
    friend bool operator!=(const KQURLRequest &a, const KQURLRequest &b) { return !(a == b); }

private:
    QUrl m_url;
    QByteArray m_method = QByteArrayLiteral("GET");
    QList<QPair<QByteArray, QByteArray>> m_headers;
    QByteArray m_body;
};

Q_DECLARE_METATYPE(KQURLRequest)

/*! \brief The form encoding of \a string's UTF-8 bytes, up to its first NUL.

    Letters, digits and "-._~" stay; a blank becomes "+"; every other byte
    becomes "%" and two upper-case hexadecimal digits. A null \a string gives an
    empty string. */
TARNCOMMON_EXPORT QString KQHTMLFormURLEncode(const QString &string);

/*! \brief Makes \a request a POST of \a parameters as an HTML form
    ("application/x-www-form-urlencoded"), the pairs in the order given.

    "Content-Length" is set to the sum of the values' lengths in UTF-16 units
    before encoding, not to the body's length; that is deliberate and kept.
    send() still sends the whole body. */
TARNCOMMON_EXPORT void kq_setHTTPPostParameters(KQURLRequest &request,
                                                const QList<QPair<QString, QString>> &parameters);
/*! \brief As above, with the map's keys in their sorted order; values are taken
    as their string form (QVariant::toString()). */
TARNCOMMON_EXPORT void kq_setHTTPPostParameters(KQURLRequest &request, const QVariantMap &parameters);

/*! \brief The fixed boundary of the multipart body of kq_setHTTPPostFile(). */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQMultipartBoundary[];

/*! \brief Makes \a request a POST of one file, \a contents named \a filename in
    the form field \a key, as a multipart body with the fixed boundary
    KQMultipartBoundary.

    The "Content-Type" value "multipart/form-data; boundary=…" is added (joined
    to an earlier content type, not replacing it); the part is declared
    "text/xml"; "Content-Length" is set to the UTF-8 length of \a contents alone,
    deliberately. Quotes in \a key and \a filename are not escaped. A null
    \a contents leaves the request untouched. */
TARNCOMMON_EXPORT void kq_setHTTPPostFile(KQURLRequest &request, const QString &contents, const QString &filename,
                                          const QString &key);
