#include <TarnCommon/KQTranslations.h>

#include <TarnCommon/KQLog.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QPointer>
#include <QtCore/QTranslator>

namespace {

// The one translator the library installed, so a second call replaces it.
QPointer<QTranslator> s_installed;

} // namespace

QStringList KQTranslationDirectories()
{
    QStringList directories;
#ifdef TARNCOMMON_TRANSLATIONS_INSTALL_DIR
    directories << QStringLiteral(TARNCOMMON_TRANSLATIONS_INSTALL_DIR);
#endif
#ifdef TARNCOMMON_TRANSLATIONS_BUILD_DIR
    directories << QStringLiteral(TARNCOMMON_TRANSLATIONS_BUILD_DIR);
#endif
    return directories;
}

bool KQInstallTranslations(const QLocale &locale, const QString &directory)
{
    QCoreApplication *application = QCoreApplication::instance();
    if (!application) {
        ZLLogError("Translations need an application object; create it first");
        return false;
    }
    if (s_installed) {
        QCoreApplication::removeTranslator(s_installed);
        delete s_installed.data();
    }

    QStringList directories = KQTranslationDirectories();
    if (!directory.isEmpty())
        directories.prepend(directory);
    auto *translator = new QTranslator(application);
    for (const QString &candidate : std::as_const(directories)) {
        // QTranslator walks the locale's UI languages (de_CH, de, ...).
        if (translator->load(locale, QStringLiteral("tarncommon"), QStringLiteral("_"), candidate)) {
            QCoreApplication::installTranslator(translator);
            s_installed = translator;
            return true;
        }
    }
    delete translator;
    return false;
}
