#include <TarnCommon/KQFilesAndEncodings.h>

#include "MessageCapture.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QThread>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace {

// Points the library's temporary directory at a fresh folder for one test.
class ScopedTempDir
{
public:
    ScopedTempDir()
        : m_saved(qgetenv("TMPDIR"))
    {
        qputenv("TMPDIR", QFile::encodeName(m_dir.path()));
    }
    ~ScopedTempDir() { qputenv("TMPDIR", m_saved); }
    QString path() const { return m_dir.path(); }
    QStringList entries() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); }

private:
    QTemporaryDir m_dir;
    QByteArray m_saved;
};

int permissions(const QString &path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 07777) : -1;
}

} // namespace

class tst_Files : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void temporaryFileNames_data();
    void temporaryFileNames();
    void temporaryFileRefusals_data();
    void temporaryFileRefusals();
    void temporaryFileGivesUpAfter20000();
    void temporaryFilesUnderContention();
    void temporaryPath();
    void fileReferenceFindsTheFileAgain();
    void base64_data();
    void base64();
    void transformReports_data();
    void transformReports();
};

void tst_Files::temporaryFileNames_data()
{
    QTest::addColumn<QStringList>("existing");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("expected");

    QTest::newRow("free") << QStringList() << "clip" << "mov" << "clip.mov";
    QTest::newRow("taken: number before the extension") << QStringList{"clip.mov"} << "clip" << "mov" << "clip_1.mov";
    QTest::newRow("two taken") << QStringList{"clip.mov", "clip_1.mov"} << "clip" << "mov" << "clip_2.mov";
    QTest::newRow("no extension, no dot") << QStringList{"clip"} << "clip" << QString() << "clip_1";
    QTest::newRow("empty extension keeps its dot") << QStringList() << "clip" << "" << "clip.";
    QTest::newRow("non-ASCII") << QStringList() << QString::fromUtf8("caf\xC3\xA9") << "txt"
                               << QString::fromUtf8("caf\xC3\xA9.txt");
}

void tst_Files::temporaryFileNames()
{
    QFETCH(QStringList, existing);
    QFETCH(QString, name);
    QFETCH(QString, extension);
    QFETCH(QString, expected);
    ScopedTempDir temp;
    for (const QString &file : existing) {
        QFile f(temp.path() + u'/' + file);
        QVERIFY(f.open(QIODevice::WriteOnly));
        f.write("keep");
    }
    const QString path = KQTemporaryFile(name, extension);
    QCOMPARE(path, temp.path() + u'/' + expected);
    QCOMPARE(QFileInfo(path).size(), 0);
    QCOMPARE(permissions(path), 0700);
    for (const QString &file : existing)
        QCOMPARE(QFileInfo(temp.path() + u'/' + file).size(), 4); // untouched
}

void tst_Files::temporaryFileRefusals_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("extension");
    QTest::addColumn<bool>("writable");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("null name") << QString() << "txt" << true << QByteArray("(name is one file name)");
    QTest::newRow("path in the name") << "../escape" << "txt" << true << QByteArray("(name is one file name)");
    QTest::newRow("dot dot") << ".." << QString() << true << QByteArray("(name is one file name)");
    QTest::newRow("slash in the extension") << "x" << "a/../../b" << true << QByteArray("(extension holds no slash)");
    QTest::newRow("temporary directory missing") << "x" << "txt" << false << QByteArray("no temporary directory");
}

void tst_Files::temporaryFileRefusals()
{
    QFETCH(QString, name);
    QFETCH(QString, extension);
    QFETCH(bool, writable);
    QFETCH(QByteArray, report);
    ScopedTempDir temp;
    if (!writable)
        qputenv("TMPDIR", QFile::encodeName(temp.path() + QStringLiteral("/missing")));
    MessageCapture capture;
    QVERIFY(KQTemporaryFile(name, extension).isNull());
    QVERIFY2(capture.text().contains(report), report.constData());
    QCOMPARE(temp.entries(), QStringList());
    QVERIFY(!QFileInfo::exists(QFileInfo(temp.path()).path() + QStringLiteral("/escape.txt")));
    QVERIFY(!QFileInfo::exists(QStringLiteral("/x.txt")));
}

void tst_Files::temporaryFileGivesUpAfter20000()
{
    ScopedTempDir temp;
    for (int i = 0; i < 20000; ++i) {
        const QString name = i == 0 ? QStringLiteral("full.tmp") : QStringLiteral("full_%1.tmp").arg(i);
        QFile f(temp.path() + u'/' + name);
        QVERIFY(f.open(QIODevice::WriteOnly));
    }
    MessageCapture capture;
    QVERIFY(KQTemporaryFile(QStringLiteral("full"), QStringLiteral("tmp")).isNull());
    QVERIFY(capture.text().contains("Assertion: (attemptNumber < 20000)"));
    QCOMPARE(temp.entries().size(), 20000);
}

void tst_Files::temporaryFilesUnderContention()
{
    // Eight processes released together all ask for the same name.
    ScopedTempDir temp;
    const QString go = temp.path() + QStringLiteral("/go");
    QList<QProcess *> children;
    for (int i = 0; i < 8; ++i) {
        auto *child = new QProcess(this);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("TARN_TEMPFILE_CHILD"), go);
        child->setProcessEnvironment(env);
        child->start(QCoreApplication::applicationFilePath(), {});
        children.append(child);
    }
    for (QProcess *child : children)
        QVERIFY(child->waitForStarted());
    QFile(go).open(QIODevice::WriteOnly);
    QStringList paths;
    for (QProcess *child : children) {
        QVERIFY(child->waitForFinished(60000));
        QCOMPARE(child->exitCode(), 0);
        paths += QString::fromUtf8(child->readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        delete child;
    }
    QCOMPARE(paths.size(), 8);
    QCOMPARE(QSet<QString>(paths.cbegin(), paths.cend()).size(), 8);
    for (const QString &path : std::as_const(paths))
        QCOMPARE(permissions(path), 0700);
    QStringList expected{QStringLiteral("go"), QStringLiteral("same.dat")};
    for (int i = 1; i < 8; ++i)
        expected += QStringLiteral("same_%1.dat").arg(i);
    expected.sort();
    QCOMPARE(temp.entries(), expected);
}

void tst_Files::temporaryPath()
{
    ScopedTempDir temp;
    const QString a = temporaryPathWithExtension(QStringLiteral("png"));
    const QString b = temporaryPathWithExtension(QStringLiteral("png"));
    QVERIFY(a != b);
    QVERIFY2(QRegularExpression(QRegularExpression::escape(temp.path()) + QStringLiteral("/QN64_\\w{6}\\.png"))
                 .match(a)
                 .hasMatch(),
             qPrintable(a));
    QVERIFY(QRegularExpression(QStringLiteral("/QN64_\\w{6}$")).match(temporaryPathWithExtension(QString())).hasMatch());
    QCOMPARE(temp.entries(), QStringList()); // nothing created
    MessageCapture capture;
    QVERIFY(temporaryPathWithExtension(QStringLiteral("a/b")).isNull());
    QVERIFY(capture.text().contains("(extension holds no slash)"));
}

void tst_Files::fileReferenceFindsTheFileAgain()
{
    ScopedTempDir temp;
    const QString path = KQTemporaryFile(QStringLiteral("ref"), QStringLiteral("txt"));
    KQFileReference ref;
    QVERIFY(kq_fillFSRef(QUrl::fromLocalFile(path), &ref));
    QCOMPARE(kq_URLFromFSRef(&ref), QUrl::fromLocalFile(path));

    const QString renamed = temp.path() + QStringLiteral("/renamed.txt");
    QVERIFY(QFile::rename(path, renamed));
    QCOMPARE(kq_URLFromFSRef(&ref), QUrl::fromLocalFile(renamed));

    // A new file under the old name is another file.
    QFile impostor(path);
    QVERIFY(impostor.open(QIODevice::WriteOnly));
    impostor.close();
    QCOMPARE(kq_URLFromFSRef(&ref), QUrl::fromLocalFile(renamed));

    QVERIFY(QFile::remove(renamed));
    QVERIFY(kq_URLFromFSRef(&ref).isEmpty());

    KQFileReference untouched;
    QVERIFY(!kq_fillFSRef(QUrl::fromLocalFile(renamed), &untouched));
    QVERIFY(!kq_fillFSRef(QUrl(QStringLiteral("https://example.org/a")), &untouched));
    QCOMPARE(untouched.inode, quint64(0));
    QVERIFY(kq_URLFromFSRef(&untouched).isEmpty());

    MessageCapture capture;
    QVERIFY(kq_URLFromFSRef(nullptr).isEmpty());
    QVERIFY(!kq_fillFSRef(QUrl::fromLocalFile(temp.path()), nullptr));
    QCOMPARE(capture.text().count("Assertion: (fsref)"), 2);
}

void tst_Files::base64_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    // RFC 4648, section 10, and the Part's own example.
    QTest::newRow("empty") << QByteArray("") << "";
    QTest::newRow("f") << QByteArray("f") << "Zg==";
    QTest::newRow("fo") << QByteArray("fo") << "Zm8=";
    QTest::newRow("foo") << QByteArray("foo") << "Zm9v";
    QTest::newRow("foob") << QByteArray("foob") << "Zm9vYg==";
    QTest::newRow("fooba") << QByteArray("fooba") << "Zm9vYmE=";
    QTest::newRow("foobar") << QByteArray("foobar") << "Zm9vYmFy";
    QTest::newRow("Man") << QByteArray("Man") << "TWFu";
    QTest::newRow("every byte, both alphabet ends") << QByteArray("\xfb\xff\0\x3e", 4) << "+/8APg==";
}

void tst_Files::base64()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, text);
    QCOMPARE(kq_base64Encode(bytes), text);
    const QByteArray decoded = kq_base64Decode(text);
    QCOMPARE(decoded, bytes);
    QVERIFY(!decoded.isNull());
}

void tst_Files::transformReports_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("report");

    QTest::newRow("padding in the middle") << "Zg==Zm8=" << QByteArray();
    QTest::newRow("missing padding") << "Zg" << QByteArray();
    QTest::newRow("line break") << "Zm9v\nYmFy" << QByteArray();
    QTest::newRow("other alphabet") << "Zm9v-_8A" << QByteArray();
    QTest::newRow("bits after the last byte") << "Zh==" << QByteArray();
    QTest::newRow("only padding") << "====" << QByteArray();
    QTest::newRow("non-ASCII") << QString::fromUtf8("Zm9\xC3\xA9") << QByteArray("(KQAssertNeverExecuted was executed)");
}

void tst_Files::transformReports()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, report);
    MessageCapture capture;
    QVERIFY(kq_base64Decode(text).isNull());
    const QByteArray messages = capture.text();
    if (report.isEmpty())
        QCOMPARE(messages, QByteArray());
    else
        QVERIFY(messages.contains(report));
    MessageCapture unknown;
    QVERIFY(KQSecTransform(QByteArray("x"), "base32", true).isNull());
    QVERIFY(unknown.text().contains("Assertion: (transform)"));
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet("TARN_TEMPFILE_CHILD")) {
        // A child of temporaryFilesUnderContention: wait for the start, then create.
        const QString go = qEnvironmentVariable("TARN_TEMPFILE_CHILD");
        while (!QFileInfo::exists(go))
            QThread::usleep(200);
        const QString path = KQTemporaryFile(QStringLiteral("same"), QStringLiteral("dat"));
        std::printf("%s\n", QFile::encodeName(path).constData());
        return path.isNull() ? 1 : 0;
    }
    QCoreApplication app(argc, argv);
    tst_Files test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}

#include "tst_files.moc"
