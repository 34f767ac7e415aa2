#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QSettings>

#include <memory>

// The user defaults: QSettings of the application's organisation and name
// (falling back to "TarnCommon" when the application has set neither).
namespace KQSettings {

TARNCOMMON_EXPORT std::unique_ptr<QSettings> userDefaults();

// For tests: settings go to Qt's test locations (~/.qttest) instead of the
// user's own, so a test never reads or spoils real preferences. Call it
// before the first settings are read. With clear, the test's settings start
// empty.
TARNCOMMON_EXPORT void enableTestMode(bool clear = true);

} // namespace KQSettings
