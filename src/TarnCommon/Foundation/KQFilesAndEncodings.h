/*! \file KQFilesAndEncodings.h
    \brief Temporary files and paths, file references that find a file again,
    and strict base 64. */
#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QUrl>

/*! \brief Creates a new empty file in the temporary directory and gives its path.

    The names tried are \a name, \a name_1, \a name_2, … each followed by "."
    and \a extension when \a extension is not null (no dot without one). Each is
    created exclusively, so two callers never get the same file; the file has
    the permission bits 0700 and belongs to the caller. After 20000 names that
    all exist, "attemptNumber < 20000" is reported and the result is a null
    string.

    \a name must be one file name and \a extension hold no "/" (else reported,
    null result): nothing is ever created outside the temporary directory
    (QDir::tempPath(), which follows TMPDIR). A TMPDIR that names no folder,
    and any error other than an existing name (a directory that cannot be
    written, for instance), is logged as a warning and gives a null string at
    once. */
TARNCOMMON_EXPORT QString KQTemporaryFile(const QString &name, const QString &extension = QString());

/*! \brief A path in the temporary directory that names nothing at the time of
    the call: "QN64_" and six random characters, then "." and \a extension
    unless \a extension is empty. No file is created. An extension holding "/"
    is reported and gives a null string, as does a TMPDIR that names no folder
    (logged). */
TARNCOMMON_EXPORT QString temporaryPathWithExtension(const QString &extension);

/*! \brief A record that finds a file again, the library's own file reference.

    kq_fillFSRef() records where the file is and its identity (device and
    inode); kq_URLFromFSRef() gives the file's URL while the file exists, also
    after it has been renamed inside its folder. Copyable; an empty record finds
    nothing. */
struct KQFileReference
{
    QString folder;     //!< Absolute path of the file's folder when recorded.
    QString fileName;   //!< The file's name when recorded.
    quint64 device = 0; //!< The file system the file lives on.
    quint64 inode = 0;  //!< The file's number on that file system; 0 in an empty record.
};

/*! \brief The file URL of the file \a ref refers to, or an empty QUrl.

    The recorded path while it is still the same file; else the entry of the
    recorded folder that is that file (it was renamed); else (the file was
    deleted or moved away) an empty URL. A null \a ref is reported ("fsref"). */
TARNCOMMON_EXPORT QUrl kq_URLFromFSRef(const KQFileReference *ref);

/*! \brief Fills \a ref with a reference to the existing local file or folder
    \a url names; false (and \a ref untouched) when there is none. A null \a ref
    is reported ("fsref"). */
TARNCOMMON_EXPORT bool kq_fillFSRef(const QUrl &url, KQFileReference *ref);

/*! \brief The encoding name of base 64 (RFC 4648, standard alphabet, padded,
    no line breaks), for KQSecTransform(). */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char kSecBase64Encoding[];

/*! \brief Encodes (\a encode true) or decodes \a data with the encoding named
    \a encodingType.

    An unknown encoding name is reported ("transform"); null \a data is reported
    ("KQAssertNeverExecuted was executed"); both give a null QByteArray.
    Decoding is strict: input that is not exactly padded base 64 of the standard
    alphabet (white space, a missing or inner "=", nonzero bits after the last
    byte) gives a null QByteArray without a report. Empty input gives an empty,
    non-null result. */
TARNCOMMON_EXPORT QByteArray KQSecTransform(const QByteArray &data, const char *encodingType, bool encode);

/*! \brief The bytes \a base64 encodes, or a null QByteArray.

    A string with a character outside ASCII has no bytes to decode: it is
    reported as KQSecTransform() reports null data. */
TARNCOMMON_EXPORT QByteArray kq_base64Decode(const QString &base64);

/*! \brief The base-64 text of \a data (empty for empty data). */
TARNCOMMON_EXPORT QString kq_base64Encode(const QByteArray &data);
