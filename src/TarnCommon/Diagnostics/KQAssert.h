#pragma once

#include <TarnCommon/KQLog.h>

// Prints an assertion report to standard error and returns: it neither breaks
// nor aborts, and does not consult g_breakOnWarningsAndErrors. A null file is
// printed as "NULL".
TARNCOMMON_EXTERN_C TARNCOMMON_EXPORT void KQAssertionFailed(const char *condition, const char *file,
                                                             int64_t line, const char *function);

// Contract checks. After a report the calling function returns at once with
// the neutral result given after the condition, or with nothing in a
// function returning void:
//
//     KQAssert(tab != nullptr);                  // void function
//     KQAssert(view != nullptr, nullptr);        // pointer result
//     KQAssert(minSize.width() <= maxSize.width(), false);
//     KQAssert(count >= 0, {});                  // any default-constructible result
//
// KQAssertText() reports a given condition text instead of the source text.
#define KQAssertText(...) KQ_ASSERT_SELECT_4TH(__VA_ARGS__, KQ_ASSERT_TEXT_3, KQ_ASSERT_TEXT_2, unused)(__VA_ARGS__)
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

// Marks code that must never run; reports and returns the neutral result.
#define KQAssertNeverExecuted(...)                                                            \
    do {                                                                                      \
        KQAssertionFailed("KQAssertNeverExecuted was executed", __FILE__, __LINE__,          \
                          KQ_FUNCTION_NAME);                                                  \
        return __VA_ARGS__;                                                                   \
    } while (false)

// An expression form for places that must go on after the report (a
// constructor, a loop): true when the condition holds.
#define KQVerify(condition)                                                                   \
    ((condition) ? true                                                                       \
                 : (KQAssertionFailed(#condition, __FILE__, __LINE__, KQ_FUNCTION_NAME), false))

// Reported by constructors that must not be used.
#define KQReportInvalidInitializer()                                                          \
    KQAssertionFailed("Invalid initializer method called", __FILE__, __LINE__, KQ_FUNCTION_NAME)
