// A number passes through the C varargs of a QString format; a QString
// argument must be refused by the compiler (built with REFUSED defined).
#include <TarnCommon/KQLog.h>

void logName(const QString &name)
{
#ifdef REFUSED
    ZLLogWarning(QStringLiteral("name %s"), name);
#else
    ZLLogWarning(QStringLiteral("name of %d characters"), int(name.size()));
#endif
}
