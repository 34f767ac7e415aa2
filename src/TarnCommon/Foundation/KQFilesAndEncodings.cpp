#include <TarnCommon/KQFilesAndEncodings.h>

#include <TarnCommon/KQAssert.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>

#include <array>
#include <cerrno>
#include <cstring>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

extern "C" {
const char kSecBase64Encoding[] = "base64";
}

namespace {

bool isOneFileName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(u'/') && !name.contains(QChar(0));
}

bool isExtension(const QString &extension)
{
    return !extension.contains(u'/') && !extension.contains(QChar(0));
}

QString withExtension(QString path, const QString &extension)
{
    if (!extension.isEmpty())
        path += u'.' + extension;
    return path;
}

// Qt gives an empty path when TMPDIR names no folder; nothing may then be
// made relative to the root.
QString temporaryDirectory()
{
    const QString folder = QDir::tempPath();
    if (folder.isEmpty())
        ZLLogWarning("no temporary directory: TMPDIR names no folder");
    return folder;
}

bool exists(const QString &path)
{
    struct stat info;
    return ::lstat(QFile::encodeName(path).constData(), &info) == 0 || errno != ENOENT;
}

QString joined(const QString &folder, const QString &name)
{
    if (name.isEmpty())
        return folder;
    return folder.endsWith(u'/') ? folder + name : folder + u'/' + name;
}

QByteArray emptyBytes()
{
    return QByteArray("", 0);
}

// RFC 4648 base 64 with padding, refusing anything else.
QByteArray decodeStrict(const QByteArray &text)
{
    if (text.isEmpty())
        return emptyBytes();
    if (text.size() % 4 != 0)
        return QByteArray();
    static const auto table = [] {
        std::array<signed char, 256> t;
        t.fill(-1);
        const char *alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
        for (int i = 0; i < 64; ++i)
            t[static_cast<unsigned char>(alphabet[i])] = static_cast<signed char>(i);
        return t;
    }();
    const qsizetype n = text.size();
    const int padding = text.endsWith("==") ? 2 : text.endsWith('=') ? 1 : 0;
    QByteArray out;
    out.resize(n / 4 * 3 - padding);
    char *o = out.data();
    const auto *in = reinterpret_cast<const unsigned char *>(text.constData());
    for (qsizetype i = 0; i < n; i += 4) {
        const bool last = i + 4 == n;
        const int a = table[in[i]], b = table[in[i + 1]];
        const int c = (last && padding == 2) ? 0 : table[in[i + 2]];
        const int d = (last && padding >= 1) ? 0 : table[in[i + 3]];
        if ((a | b | c | d) < 0)
            return QByteArray();
        const quint32 v = quint32(a) << 18 | quint32(b) << 12 | quint32(c) << 6 | quint32(d);
        *o++ = char(v >> 16);
        if (last && padding == 2) {
            if (v & 0xFFFF)
                return QByteArray();
            break;
        }
        *o++ = char(v >> 8);
        if (last && padding == 1) {
            if (v & 0xFF)
                return QByteArray();
            break;
        }
        *o++ = char(v);
    }
    return out;
}

} // namespace

QString KQTemporaryFile(const QString &name, const QString &extension)
{
    KQAssertText("name is one file name", isOneFileName(name), QString());
    KQAssertText("extension holds no slash", isExtension(extension), QString());
    const QString folder = temporaryDirectory();
    if (folder.isEmpty())
        return QString();
    const QString base = folder + u'/' + name;
    unsigned attemptNumber = 0;
    for (; attemptNumber < 20000; ++attemptNumber) {
        QString path = base;
        if (attemptNumber > 0)
            path += QString::asprintf("_%u", attemptNumber);
        if (!extension.isNull())
            path += u'.' + extension;
        const QByteArray native = QFile::encodeName(path);
        const int fd = ::open(native.constData(), O_CREAT | O_EXCL | O_RDONLY | O_CLOEXEC, 0700);
        if (fd >= 0) {
            // The umask may have taken bits away; the file is the caller's alone.
            ::fchmod(fd, 0700);
            ::close(fd);
            return path;
        }
        if (errno != EEXIST) {
            ZLLogWarning("KQTemporaryFile: cannot create %s: %s", native.constData(), std::strerror(errno));
            return QString();
        }
    }
    KQAssertText("attemptNumber < 20000", attemptNumber < 20000, QString());
    return QString();
}

QString temporaryPathWithExtension(const QString &extension)
{
    KQAssertText("extension holds no slash", isExtension(extension), QString());
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    const QString temp = temporaryDirectory();
    if (temp.isEmpty())
        return QString();
    const QString folder = temp + QStringLiteral("/QN64_");
    for (;;) {
        QString path = folder;
        for (int i = 0; i < 6; ++i)
            path += QLatin1Char(alphabet[QRandomGenerator::global()->bounded(62)]);
        path = withExtension(path, extension);
        if (!exists(path))
            return path;
    }
}

QUrl kq_URLFromFSRef(const KQFileReference *ref)
{
    KQAssertText("fsref", ref != nullptr, QUrl());
    if (ref->inode == 0)
        return QUrl();
    const QString recorded = joined(ref->folder, ref->fileName);
    struct stat info;
    if (::lstat(QFile::encodeName(recorded).constData(), &info) == 0 && info.st_dev == ref->device
        && info.st_ino == ref->inode)
        return QUrl::fromLocalFile(recorded);
    if (ref->fileName.isEmpty())
        return QUrl();
    // Renamed inside its folder: find the entry with the same identity.
    const QByteArray folder = QFile::encodeName(ref->folder);
    DIR *dir = ::opendir(folder.constData());
    if (!dir)
        return QUrl();
    QUrl found;
    while (const dirent *entry = ::readdir(dir)) {
        if (entry->d_ino != ref->inode)
            continue;
        const QByteArray path = QFile::encodeName(joined(ref->folder, QFile::decodeName(entry->d_name)));
        if (::lstat(path.constData(), &info) == 0 && info.st_dev == ref->device && info.st_ino == ref->inode) {
            found = QUrl::fromLocalFile(QFile::decodeName(path));
            break;
        }
    }
    ::closedir(dir);
    return found;
}

bool kq_fillFSRef(const QUrl &url, KQFileReference *ref)
{
    KQAssertText("fsref", ref != nullptr, false);
    if (!url.isLocalFile())
        return false;
    const QString path = QDir::cleanPath(QFileInfo(url.toLocalFile()).absoluteFilePath());
    struct stat info;
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
        return false;
    const qsizetype slash = path.lastIndexOf(u'/');
    if (path == QLatin1String("/")) {
        ref->folder = path;
        ref->fileName.clear();
    } else {
        ref->folder = slash == 0 ? QStringLiteral("/") : path.left(slash);
        ref->fileName = path.mid(slash + 1);
    }
    ref->device = info.st_dev;
    ref->inode = info.st_ino;
    return true;
}

QByteArray KQSecTransform(const QByteArray &data, const char *encodingType, bool encode)
{
    const bool known = encodingType && std::strcmp(encodingType, kSecBase64Encoding) == 0;
    KQAssertText("transform", known, QByteArray());
    if (data.isNull())
        KQAssertNeverExecuted(QByteArray());
    if (encode)
        return data.isEmpty() ? emptyBytes() : data.toBase64();
    return decodeStrict(data);
}

QByteArray kq_base64Decode(const QString &base64)
{
    if (base64.isNull())
        return QByteArray();
    QByteArray ascii;
    {
        bool allAscii = true;
        for (QChar c : base64)
            allAscii = allAscii && c.unicode() < 128;
        if (allAscii)
            ascii = base64.isEmpty() ? emptyBytes() : base64.toLatin1();
    }
    return KQSecTransform(ascii, kSecBase64Encoding, false);
}

QString kq_base64Encode(const QByteArray &data)
{
    const QByteArray encoded = KQSecTransform(data.isNull() ? emptyBytes() : data, kSecBase64Encoding, true);
    return QString::fromLatin1(encoded);
}
