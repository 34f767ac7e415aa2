#include <TarnCommon/KQError.h>

#include <QtTest/QtTest>

class tst_Error : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errorWithDescription_data();
    void errorWithDescription();
    void localizedDescriptionFallsBack();
    void putErrorInto();
    void putErrorIntoNullPointerStillSucceeds();
};

void tst_Error::errorWithDescription_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("longDescription");
    QTest::addColumn<QStringList>("keys");

    QTest::newRow("both") << QStringLiteral("Short") << QStringLiteral("Long") << QStringList{
        QStringLiteral("NSLocalizedDescription"), QStringLiteral("NSLocalizedRecoverySuggestion")};
    QTest::newRow("short only") << QStringLiteral("Short") << QString()
                                << QStringList{QStringLiteral("NSLocalizedDescription")};
    QTest::newRow("long only") << QString() << QStringLiteral("Long")
                               << QStringList{QStringLiteral("NSLocalizedRecoverySuggestion")};
    QTest::newRow("neither: empty map") << QString() << QString() << QStringList();
    // Empty (not null) texts are texts: their keys are present.
    QTest::newRow("empty texts count") << QStringLiteral("") << QStringLiteral("") << QStringList{
        QStringLiteral("NSLocalizedDescription"), QStringLiteral("NSLocalizedRecoverySuggestion")};
}

void tst_Error::errorWithDescription()
{
    QFETCH(QString, description);
    QFETCH(QString, longDescription);
    QFETCH(QStringList, keys);

    const KQError error = KQError::kq_errorWithDescription(description, longDescription);
    QCOMPARE(error.domain(), QStringLiteral("KQErrorDomain"));
    QCOMPARE(error.domain(), QString::fromLatin1(KQErrorDomain));
    QCOMPARE(error.code(), 0);
    QCOMPARE(error.userInfo().keys(), keys);
    if (!description.isNull())
        QCOMPARE(error.userInfo().value(QLatin1String(KQLocalizedDescriptionKey)).toString(), description);
    if (!longDescription.isNull())
        QCOMPARE(error.localizedRecoverySuggestion(), longDescription);
    else
        QVERIFY(error.localizedRecoverySuggestion().isNull());
}

void tst_Error::localizedDescriptionFallsBack()
{
    QCOMPARE(KQError::kq_errorWithDescription(QStringLiteral("Disk full")).localizedDescription(),
             QStringLiteral("Disk full"));
    const KQError onlyLong = KQError::kq_errorWithDescription(QString(), QStringLiteral("Free some space."));
    QCOMPARE(onlyLong.localizedDescription(),
             QStringLiteral("The operation couldn\u2019t be completed. (KQErrorDomain error 0.)"));
}

void tst_Error::putErrorInto()
{
    KQError error(QStringLiteral("Other"), 99, {{QStringLiteral("k"), 1}});
    QVERIFY(KQError::kq_putErrorInto(&error, QStringLiteral("A"), QStringLiteral("B")));
    QCOMPARE(error, KQError::kq_errorWithDescription(QStringLiteral("A"), QStringLiteral("B")));

    QVERIFY(KQError::kq_putErrorInto(&error, QStringLiteral("C")));
    QCOMPARE(error.userInfo().size(), 1);
    QCOMPARE(error.localizedDescription(), QStringLiteral("C"));
}

void tst_Error::putErrorIntoNullPointerStillSucceeds()
{
    QVERIFY(KQError::kq_putErrorInto(nullptr, QStringLiteral("A"), QStringLiteral("B")));
    QVERIFY(KQError::kq_putErrorInto(nullptr, QStringLiteral("A")));
    QVERIFY(KQError().isNull());
}

QTEST_GUILESS_MAIN(tst_Error)
#include "tst_error.moc"
