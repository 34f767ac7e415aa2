#include <TarnCommon/KQSettings.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QStandardPaths>

namespace KQSettings {

std::unique_ptr<QSettings> userDefaults()
{
    const QString organization = QCoreApplication::organizationName();
    const QString application = QCoreApplication::applicationName();
    if (organization.isEmpty() && application.isEmpty())
        return std::make_unique<QSettings>(QStringLiteral("TarnCommon"), QStringLiteral("TarnCommon"));
    // Without an organisation QSettings() refuses every write (AccessError):
    // the application's name stands in for it.
    return std::make_unique<QSettings>(organization.isEmpty() ? application : organization, application);
}

void enableTestMode(bool clear)
{
    QStandardPaths::setTestModeEnabled(true);
    // QSettings caches its user path; point it at the test location explicitly.
    const QString path = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, path);
    if (clear)
        userDefaults()->clear();
}

} // namespace KQSettings
