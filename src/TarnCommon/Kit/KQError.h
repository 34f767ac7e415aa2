#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QString>
#include <QtCore/QVariantMap>

/*!
    \file KQError.h
    \brief The error value the library reports failures with.
*/

/*! The domain of every error the library makes: "KQErrorDomain". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQErrorDomain[];

/*! The user-information key of an error's description: "NSLocalizedDescription". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQLocalizedDescriptionKey[];
/*! The user-information key of an error's recovery suggestion: "NSLocalizedRecoverySuggestion". */
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQLocalizedRecoverySuggestionErrorKey[];
/*!
    The user-information key of an object that can attempt recovery:
    "NSRecoveryAttempter". The library stores nothing under it.
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT const char KQRecoveryAttempterErrorKey[];

/*!
    \brief An error value: a domain, a code and a user-information map.

    A plain value, copied freely; a default-constructed error is null. The
    user-information keys are spelt as on the platform the errors come from.

    \code
    bool Document::save(const QString &path, KQError *error)
    {
        if (writeFile(path))
            return true;
        KQError::kq_putErrorInto(error, tr("Could not save."), tr("Check the folder's permissions."));
        return false;
    }
    \endcode
*/
class TARNCOMMON_EXPORT KQError
{
public:
    /*! A null error: a null domain, code 0 and no user information. */
    KQError() = default;
    /*! An error of \a domain with \a code and the user information \a userInfo. */
    KQError(const QString &domain, int code, const QVariantMap &userInfo = {});

    /*! The same as KQError(\a domain, \a code, \a userInfo). */
    static KQError errorWithDomain(const QString &domain, int code, const QVariantMap &userInfo);

    /*!
        An error of KQErrorDomain with code 0, with \a description under
        KQLocalizedDescriptionKey and \a longDescription under
        KQLocalizedRecoverySuggestionErrorKey; a null text leaves its key out.
    */
    static KQError kq_errorWithDescription(const QString &description, const QString &longDescription);
    /*! An error of KQErrorDomain with code 0 and only \a description (left out when null). */
    static KQError kq_errorWithDescription(const QString &description);

    /*!
        Stores kq_errorWithDescription(\a description, \a longDescription)
        through \a error when it is not null. Always answers true, so a
        caller that returns it reports success; callers that fail return
        false themselves.
    */
    static bool kq_putErrorInto(KQError *error, const QString &description, const QString &longDescription);
    /*! Stores kq_errorWithDescription(\a description) through \a error when it is not null; answers true. */
    static bool kq_putErrorInto(KQError *error, const QString &description);

    /*! True for a default-constructed error (its domain is a null string). */
    bool isNull() const { return m_domain.isNull(); }
    /*! The error's domain; a null string for a null error. */
    QString domain() const { return m_domain; }
    /*! The error's code within its domain; 0 for a null error. */
    int code() const { return m_code; }
    /*! The user-information map; empty for a null error. */
    QVariantMap userInfo() const { return m_userInfo; }

    /*!
        The text under KQLocalizedDescriptionKey, else the platform's generic
        text naming domain and code ("The operation couldn't be completed.
        (\<domain\> error \<code\>.)"), translated in the "TarnCommon" context.
    */
    QString localizedDescription() const;
    /*! The text under KQLocalizedRecoverySuggestionErrorKey; a null string without one. */
    QString localizedRecoverySuggestion() const;

    /*! True when \a a and \a b have the same domain, code and user information. */
    friend bool operator==(const KQError &a, const KQError &b)
    {
        return a.m_domain == b.m_domain && a.m_code == b.m_code && a.m_userInfo == b.m_userInfo;
    }
    /*! True when \a a and \a b differ in domain, code or user information. */
    friend bool operator!=(const KQError &a, const KQError &b) { return !(a == b); }

private:
    QString m_domain;
    int m_code = 0;
    QVariantMap m_userInfo;
};

Q_DECLARE_METATYPE(KQError)
