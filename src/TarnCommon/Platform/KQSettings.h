#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QSettings>

#include <memory>

/*!
    \file KQSettings.h
    \brief The user defaults, and a test mode that keeps tests away from the real ones.
*/

/*!
    \brief The user defaults: QSettings of the application's organisation and
    name.
*/
namespace KQSettings {

/*!
    A new QSettings for the application's organisation and name (falling
    back to "TarnCommon" for both when the application has set neither, and
    to the application's name for a missing organisation).
    The caller owns it.
*/
TARNCOMMON_EXPORT std::unique_ptr<QSettings> userDefaults();

/*!
    For tests: settings go to Qt's test locations (~/.qttest) instead of the
    user's own, so a test never reads or spoils real preferences. Call it
    before the first settings are read. With \a clear (the default), the
    test's settings start empty.
*/
TARNCOMMON_EXPORT void enableTestMode(bool clear = true);

} // namespace KQSettings
