#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QString>
#include <QtCore/QVariantMap>

// The domain of every error the library makes: "KQErrorDomain".
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQErrorDomain[];

// User-information keys, spelt as on the platform the errors come from.
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQLocalizedDescriptionKey[];
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQLocalizedRecoverySuggestionErrorKey[];
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQRecoveryAttempterErrorKey[];

// An error value: a domain, a code and a user-information map.
class TARNCOMMON_EXPORT KQError
{
public:
    KQError() = default;
    KQError(const QString &domain, int code, const QVariantMap &userInfo = {});

    static KQError errorWithDomain(const QString &domain, int code, const QVariantMap &userInfo);

    // An error of KQErrorDomain with code 0; a null text leaves its key out.
    static KQError kq_errorWithDescription(const QString &description, const QString &longDescription);
    static KQError kq_errorWithDescription(const QString &description);

    // Stores such an error through error when it is not null. Always answers
    // true, so a caller that returns it reports success; callers that fail
    // return false themselves.
    static bool kq_putErrorInto(KQError *error, const QString &description, const QString &longDescription);
    static bool kq_putErrorInto(KQError *error, const QString &description);

    bool isNull() const { return m_domain.isNull(); }
    QString domain() const { return m_domain; }
    int code() const { return m_code; }
    QVariantMap userInfo() const { return m_userInfo; }

    // The description key, else the platform's generic text naming domain and code.
    QString localizedDescription() const;
    // The recovery-suggestion key; a null string without one.
    QString localizedRecoverySuggestion() const;

    friend bool operator==(const KQError &a, const KQError &b)
    {
        return a.m_domain == b.m_domain && a.m_code == b.m_code && a.m_userInfo == b.m_userInfo;
    }
    friend bool operator!=(const KQError &a, const KQError &b) { return !(a == b); }

private:
    QString m_domain;
    int m_code = 0;
    QVariantMap m_userInfo;
};

Q_DECLARE_METATYPE(KQError)
