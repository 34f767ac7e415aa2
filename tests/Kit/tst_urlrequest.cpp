#include <TarnCommon/KQURLRequest.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QtTest>

using Pairs = QList<QPair<QString, QString>>;

namespace {

const QByteArray Boundary = "---------------------------14737809831466499882746641449";

// Every character whose UTF-8 bytes, together, take every byte value that
// UTF-8 text can hold, NUL aside.
QString everyByteText()
{
    QString text;
    for (char16_t c = 1; c < 0x100; ++c)
        text += QChar(c);
    for (char32_t c = 0x100; c < 0x800; c += 0x40)
        text += QString::fromUcs4(&c, 1);
    for (char32_t c = 0x800; c < 0x10000; c = (c & ~0xFFFu) + 0x1000) // lead bytes E0 to EF
        text += QString::fromUcs4(&c, 1);
    for (char32_t c : {0x10000u, 0x40000u, 0x100000u, 0x10FFFFu})
        text += QString::fromUcs4(&c, 1);
    return text;
}

} // namespace

class tst_URLRequest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void formBody_data();
    void formBody();
    void multipartBody();
    void multipartAddsItsContentType();
    void formReceivedByPython_data();
    void formReceivedByPython();
    void multipartReceivedByPython_data();
    void multipartReceivedByPython();

private:
    QJsonObject post(const KQURLRequest &request);

    QProcess m_server;
    QUrl m_url;
    QNetworkAccessManager m_manager;
};

void tst_URLRequest::initTestCase()
{
    m_server.start(QStringLiteral(PYTHON3), {QStringLiteral(POST_ECHO_SERVER)});
    QVERIFY(m_server.waitForStarted());
    QVERIFY(m_server.waitForReadyRead(30000));
    const int port = m_server.readLine().trimmed().toInt();
    QVERIFY(port > 0);
    m_url = QUrl(QStringLiteral("http://127.0.0.1:%1/post").arg(port));
}

void tst_URLRequest::cleanupTestCase()
{
    m_server.kill();
    m_server.waitForFinished();
}

QJsonObject tst_URLRequest::post(const KQURLRequest &request)
{
    QNetworkReply *reply = request.send(&m_manager);
    if (!reply)
        return {};
    QSignalSpy finished(reply, &QNetworkReply::finished);
    if (!reply->isFinished() && !finished.wait(30000))
        return {};
    reply->deleteLater();
    return QJsonDocument::fromJson(reply->readAll()).object();
}

void tst_URLRequest::formBody_data()
{
    QTest::addColumn<Pairs>("parameters");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QByteArray>("contentLength");

    QTest::newRow("empty") << Pairs() << QByteArray("") << QByteArray("0");
    QTest::newRow("blank and ampersand") << Pairs{{"a b", "x&y"}} << QByteArray("a+b=x%26y") << QByteArray("3");
    QTest::newRow("length counts characters before encoding")
        << Pairs{{"k", QString::fromUtf8("caf\xC3\xA9")}} << QByteArray("k=caf%C3%A9") << QByteArray("4");
    QTest::newRow("marks") << Pairs{{"m", "~_*+-./%="}} << QByteArray("m=~_%2A%2B-.%2F%25%3D") << QByteArray("9");
    QTest::newRow("order kept, pair counts two") << Pairs{{"z", "1"}, {"a", QString::fromUtf8("\xF0\x9F\x98\x80")}}
                                                 << QByteArray("z=1&a=%F0%9F%98%80") << QByteArray("3");
    QTest::newRow("stops at NUL") << Pairs{{"n", QString::fromUtf16(u"a\0b", 3)}} << QByteArray("n=a")
                                  << QByteArray("3");
}

void tst_URLRequest::formBody()
{
    QFETCH(Pairs, parameters);
    QFETCH(QByteArray, body);
    QFETCH(QByteArray, contentLength);
    KQURLRequest request(QUrl(QStringLiteral("http://example.invalid/")));
    request.setValue("text/plain", "content-type");
    request.setValue("999", "Content-Length");
    kq_setHTTPPostParameters(request, parameters);
    QCOMPARE(request.HTTPBody(), body);
    QCOMPARE(request.HTTPMethod(), QByteArray("POST"));
    QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), contentLength);
    QCOMPARE(request.valueForHTTPHeaderField("Content-Type"), QByteArray("application/x-www-form-urlencoded"));
    QCOMPARE(request.allHTTPHeaderFields().size(), 2);
}

void tst_URLRequest::multipartBody()
{
    KQURLRequest request;
    kq_setHTTPPostFile(request, QStringLiteral("<a>1234</a>"), QStringLiteral("f.xml"), QStringLiteral("up"));
    QCOMPARE(request.HTTPBody(),
             "--" + Boundary + "\r\n"
             "Content-Disposition: attachment; name=\"up\"; filename=\"f.xml\"\r\n"
             "Content-Type: text/xml\r\n\r\n"
             "<a>1234</a>\r\n"
             "--" + Boundary + "--\r\n");
    QCOMPARE(request.valueForHTTPHeaderField("Content-Length"), QByteArray("11"));
    QCOMPARE(request.HTTPMethod(), QByteArray("POST"));

    const KQURLRequest before = request;
    kq_setHTTPPostFile(request, QString(), QStringLiteral("g"), QStringLiteral("k"));
    QVERIFY(request == before);
}

void tst_URLRequest::multipartAddsItsContentType()
{
    KQURLRequest request;
    request.setValue("text/plain", "Content-Type");
    kq_setHTTPPostFile(request, QStringLiteral("x"), QStringLiteral("f"), QStringLiteral("k"));
    QCOMPARE(request.valueForHTTPHeaderField("content-type"),
             "text/plain,multipart/form-data; boundary=" + Boundary);
}

void tst_URLRequest::formReceivedByPython_data()
{
    QTest::addColumn<Pairs>("parameters");

    QTest::newRow("plain") << Pairs{{"name", "Ada"}, {"lang", "en"}};
    QTest::newRow("every byte value") << Pairs{{everyByteText(), everyByteText()}, {"second", "&=+%"}};
    QTest::newRow("empty value and key") << Pairs{{"", ""}, {"k", ""}};
}

void tst_URLRequest::formReceivedByPython()
{
    QFETCH(Pairs, parameters);
    KQURLRequest request(m_url);
    kq_setHTTPPostParameters(request, parameters);
    const QJsonObject answer = post(request);
    QVERIFY(!answer.isEmpty());
    // The whole body arrives, whatever the stored Content-Length says.
    QCOMPARE(answer.value(QLatin1String("body")).toString().toLatin1(), request.HTTPBody());
    Pairs received;
    for (const QJsonValue &field : answer.value(QLatin1String("fields")).toArray())
        received.append({field.toArray().at(0).toString(), field.toArray().at(1).toString()});
    QCOMPARE(received, parameters);
    // Python's own form encoding of the same fields is byte for byte ours.
    QCOMPARE(answer.value(QLatin1String("requoted")).toString().toLatin1(), request.HTTPBody());
}

void tst_URLRequest::multipartReceivedByPython_data()
{
    QTest::addColumn<QString>("contents");
    QTest::addColumn<QString>("filename");
    QTest::addColumn<QString>("key");

    QTest::newRow("xml") << QStringLiteral("<?xml version=\"1.0\"?>\n<doc/>") << "doc.xml" << "file";
    QTest::newRow("non-ASCII") << QString::fromUtf8("<t>caf\xC3\xA9 \xF0\x9F\x98\x80</t>")
                               << QString::fromUtf8("r\xC3\xA9sum\xC3\xA9.xml") << QString::fromUtf8("pi\xC3\xA8""ce");
    QTest::newRow("empty file") << QStringLiteral("") << "empty.xml" << "f";
}

void tst_URLRequest::multipartReceivedByPython()
{
    QFETCH(QString, contents);
    QFETCH(QString, filename);
    QFETCH(QString, key);
    KQURLRequest request(m_url);
    kq_setHTTPPostFile(request, contents, filename, key);
    const QJsonObject answer = post(request);
    QVERIFY(!answer.isEmpty());
    QCOMPARE(answer.value(QLatin1String("defects")).toArray().size(), 0);
    const QJsonArray parts = answer.value(QLatin1String("parts")).toArray();
    QCOMPARE(parts.size(), 1);
    const QJsonObject part = parts.at(0).toObject();
    QCOMPARE(part.value(QLatin1String("name")).toString(), key);
    QCOMPARE(part.value(QLatin1String("filename")).toString(), filename);
    QCOMPARE(part.value(QLatin1String("type")).toString(), QStringLiteral("text/xml"));
    QCOMPARE(part.value(QLatin1String("content")).toString(), contents);
}

QTEST_GUILESS_MAIN(tst_URLRequest)
#include "tst_urlrequest.moc"
