#include <TarnCommon/KQError.h>

#include <QtCore/QCoreApplication>

extern "C" {
const char KQErrorDomain[] = "KQErrorDomain";
const char KQLocalizedDescriptionKey[] = "NSLocalizedDescription";
const char KQLocalizedRecoverySuggestionErrorKey[] = "NSLocalizedRecoverySuggestion";
const char KQRecoveryAttempterErrorKey[] = "NSRecoveryAttempter";
}

KQError::KQError(const QString &domain, int code, const QVariantMap &userInfo)
    : m_domain(domain)
    , m_code(code)
    , m_userInfo(userInfo)
{
}

KQError KQError::errorWithDomain(const QString &domain, int code, const QVariantMap &userInfo)
{
    return KQError(domain, code, userInfo);
}

KQError KQError::kq_errorWithDescription(const QString &description, const QString &longDescription)
{
    QVariantMap userInfo;
    if (!description.isNull())
        userInfo.insert(QLatin1String(KQLocalizedDescriptionKey), description);
    if (!longDescription.isNull())
        userInfo.insert(QLatin1String(KQLocalizedRecoverySuggestionErrorKey), longDescription);
    return errorWithDomain(QLatin1String(KQErrorDomain), 0, userInfo);
}

KQError KQError::kq_errorWithDescription(const QString &description)
{
    return kq_errorWithDescription(description, QString());
}

bool KQError::kq_putErrorInto(KQError *error, const QString &description, const QString &longDescription)
{
    if (error)
        *error = kq_errorWithDescription(description, longDescription);
    return true;
}

bool KQError::kq_putErrorInto(KQError *error, const QString &description)
{
    return kq_putErrorInto(error, description, QString());
}

QString KQError::localizedDescription() const
{
    const QVariant description = m_userInfo.value(QLatin1String(KQLocalizedDescriptionKey));
    if (description.isValid())
        return description.toString();
    //: %1 is the error domain, %2 the error code
    return QCoreApplication::translate("TarnCommon", "The operation couldn\u2019t be completed. (%1 error %2.)")
        .arg(m_domain)
        .arg(m_code);
}

QString KQError::localizedRecoverySuggestion() const
{
    const QVariant suggestion = m_userInfo.value(QLatin1String(KQLocalizedRecoverySuggestionErrorKey));
    return suggestion.isValid() ? suggestion.toString() : QString();
}
