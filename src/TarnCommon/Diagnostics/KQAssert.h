#pragma once

#include <TarnCommon/KQLog.h>

/*!
    \file KQAssert.h
    \brief Contract checks that report and return a neutral result instead of aborting.

    After a report the calling function returns at once with the neutral
    result given after the condition, or with nothing in a function returning
    void:
    \code
    KQAssert(tab != nullptr);                  // void function
    KQAssert(view != nullptr, nullptr);        // pointer result
    KQAssert(minSize.width() <= maxSize.width(), false);
    KQAssert(count >= 0, {});                  // any default-constructible result
    \endcode
*/

/*!
    Prints an assertion report for \a condition at \a file, \a line and
    \a function (through the "tarn.common.assert" category; standard error
    by default) and returns: it neither breaks nor aborts, and does not
    consult g_breakOnWarningsAndErrors. A null argument is printed as "NULL".
*/
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT void KQAssertionFailed(const char *condition, const char *file,
                                                             int64_t line, const char *function);

/*!
    \def KQAssertText(...)
    KQAssertText(conditionText, condition [, neutral]): as KQAssert(), but
    the report shows \a conditionText instead of the condition's source text.
*/
#define KQAssertText(...) KQ_ASSERT_SELECT_4TH(__VA_ARGS__, KQ_ASSERT_TEXT_3, KQ_ASSERT_TEXT_2, unused)(__VA_ARGS__)
/*!
    \def KQAssert(...)
    KQAssert(condition [, neutral]): when \a condition is false, reports it
    with KQAssertionFailed() and returns from the calling function, with
    \a neutral when given. The condition is evaluated once.
*/
#define KQAssert(...) KQ_ASSERT_SELECT_3RD(__VA_ARGS__, KQ_ASSERT_2, KQ_ASSERT_1, unused)(__VA_ARGS__)

/*! \cond INTERNAL */
// C++17 wants at least one argument for a macro's "...", so the forms with
// and without a neutral result are chosen by counting the arguments.
#define KQ_ASSERT_SELECT_3RD(first, second, chosen, ...) chosen
#define KQ_ASSERT_SELECT_4TH(first, second, third, chosen, ...) chosen
#define KQ_ASSERT_1(condition) KQ_ASSERT_TEXT_2(#condition, condition)
#define KQ_ASSERT_2(condition, neutral) KQ_ASSERT_TEXT_3(#condition, condition, neutral)
#define KQ_ASSERT_TEXT_2(conditionText, condition)                                            \
    do {                                                                                      \
        if (!(condition)) {                                                                   \
            KQAssertionFailed(conditionText, __FILE__, __LINE__, KQ_FUNCTION_NAME);           \
            return;                                                                           \
        }                                                                                     \
    } while (false)
#define KQ_ASSERT_TEXT_3(conditionText, condition, neutral)                                   \
    do {                                                                                      \
        if (!(condition)) {                                                                   \
            KQAssertionFailed(conditionText, __FILE__, __LINE__, KQ_FUNCTION_NAME);           \
            return neutral;                                                                   \
        }                                                                                     \
    } while (false)
/*! \endcond */

/*!
    \def KQAssertNeverExecuted(...)
    KQAssertNeverExecuted([neutral]): marks code that must never run; if it
    does, reports and returns from the calling function (with \a neutral
    when given).
*/
#define KQAssertNeverExecuted(...)                                                            \
    do {                                                                                      \
        KQAssertionFailed("KQAssertNeverExecuted was executed", __FILE__, __LINE__,          \
                          KQ_FUNCTION_NAME);                                                  \
        return __VA_ARGS__;                                                                   \
    } while (false)

/*!
    \def KQVerify(condition)
    An expression form for places that must go on after the report (a
    constructor, a loop): true when \a condition holds, else reports it and
    gives false.
*/
#define KQVerify(condition)                                                                   \
    ((condition) ? true                                                                       \
                 : (KQAssertionFailed(#condition, __FILE__, __LINE__, KQ_FUNCTION_NAME), false))

/*!
    \def KQReportInvalidInitializer()
    Reported by constructors that must not be used; it does not return early.
*/
#define KQReportInvalidInitializer()                                                          \
    KQAssertionFailed("Invalid initializer method called", __FILE__, __LINE__, KQ_FUNCTION_NAME)
