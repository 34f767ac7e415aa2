#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QStringList>

/*!
    \file KQTranslations.h
    \brief Loading the translations of the library's own texts.
*/

/*!
    Installs the translation of the library's own texts (the empty inspector
    mode's text, window titles, accessibility names and descriptions, error
    descriptions) for \a locale into the application, in place of the one an
    earlier call installed. One line in main() after the application object
    exists:

    \code
    KQApplication app(argc, argv);
    KQInstallTranslations(QLocale());  // the user's language
    \endcode

    The file `tarncommon_<language>.qm` is looked for in \a directory when it
    is given, then in the folder the library installs its translations to
    (`<prefix>/share/TarnCommon/translations`), then in the build tree. Qt
    then sends QEvent::LanguageChange, on which the library's widgets show
    their texts anew. Answers whether a translation was installed: for
    English, or a language without a translation, none is (the previous one
    is removed) and the texts stay in English. Without a QCoreApplication
    nothing happens and the answer is false, with a report.
*/
TARNCOMMON_EXPORT bool KQInstallTranslations(const QLocale &locale, const QString &directory = QString());

/*!
    The folders KQInstallTranslations() searches when not given one, in
    order.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT QStringList KQTranslationDirectories();
