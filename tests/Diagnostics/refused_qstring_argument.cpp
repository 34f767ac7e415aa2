// Built twice: a number passes a QString format's varargs; a QString (REFUSED) must not compile.
#include <TarnCommon/KQLog.h>

void logName(const QString &name)
{
#ifdef REFUSED
    ZLLogWarning(QStringLiteral("name %s"), name);
#else
    ZLLogWarning(QStringLiteral("name of %d characters"), int(name.size()));
#endif
}
