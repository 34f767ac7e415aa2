#pragma once

/*!
    \file KQObjectExtensions.h
    \brief Deep copies through streaming, optional method calls by name,
    map and filter over lists, and a scope that deletes deferred deletions.
*/

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QByteArrayView>
#include <QtCore/QList>
#include <QtCore/QVariant>
#include <QtCore/QVariantList>

#include <functional>
#include <optional>
#include <type_traits>

class QObject;

/*!
    A deep copy of \a object made by writing it to a QDataStream and reading
    it back, so nested lists and maps are copied to the last element. An
    invalid variant gives an invalid one without streaming anything. A value
    whose type (or the type of any element inside it) cannot be streamed is
    reported with a warning and gives an invalid variant.
*/
TARNCOMMON_EXPORT QVariant KQCloneUsingCoding(const QVariant &object);

/*!
    Calls \a receiver's slot, signal or Q_INVOKABLE method named \a selector
    that takes no argument and returns its result (invalid for a method
    returning nothing). When there is no such method, or \a receiver is
    null, nothing is called and the result is invalid, without a report.
*/
TARNCOMMON_EXPORT QVariant kq_performSelectorIfResponds(QObject *receiver, QByteArrayView selector);

/*!
    As kq_performSelectorIfResponds(), for a method named \a selector that
    takes one argument, called with \a object converted to the parameter's
    type. A value that cannot be converted is reported with a warning, and
    nothing is called.
*/
TARNCOMMON_EXPORT QVariant kq_performSelectorIfResponds(QObject *receiver, QByteArrayView selector,
                                                        const QVariant &object);

/*!
    The block that kq_map(), kq_filter() and kq_mapAndFilter() call: the
    element, its index, and a flag the block sets to true to end the walk
    after this element.
*/
template<typename Result>
using KQListBlock = std::function<Result(const QVariant &element, qsizetype index, bool *stop)>;

/*!
    The results of \a block for each element of \a list, in order, as many as
    the elements visited. An invalid result is reported (the block must give
    a value) and replaced by the null object, <tt>QVariant::fromValue(nullptr)</tt>,
    so the result keeps its length. A block that sets the stop flag ends the
    walk; the result holds what was collected so far.
*/
TARNCOMMON_EXPORT QVariantList kq_map(const QVariantList &list, const KQListBlock<QVariant> &block);

/*! The elements of \a list for which \a block answers true, in order; the stop flag as for kq_map(). */
TARNCOMMON_EXPORT QVariantList kq_filter(const QVariantList &list, const KQListBlock<bool> &block);

/*!
    The valid results of \a block for the elements of \a list, in order;
    invalid results are left out silently. The stop flag as for kq_map().
*/
TARNCOMMON_EXPORT QVariantList kq_mapAndFilter(const QVariantList &list, const KQListBlock<QVariant> &block);

/*!
    \fn template<typename T, typename Block> auto kq_map(const QList<T> &list, Block block)
    The typed form of kq_map(): \a block is called as
    <tt>block(const T &element, qsizetype index, bool *stop)</tt> and its
    results are collected in a QList of their type.
*/
template<typename T, typename Block, typename = std::enable_if_t<!std::is_same_v<T, QVariant>>>
auto kq_map(const QList<T> &list, Block block)
{
    using Result = std::decay_t<std::invoke_result_t<Block &, const T &, qsizetype, bool *>>;
    QList<Result> result;
    result.reserve(list.size());
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i)
        result.append(block(list.at(i), i, &stop));
    return result;
}

/*!
    \fn template<typename T, typename Block> QList<T> kq_filter(const QList<T> &list, Block block)
    The typed form of kq_filter(): \a block is called as
    <tt>block(const T &element, qsizetype index, bool *stop)</tt> and answers
    whether to keep the element.
*/
template<typename T, typename Block, typename = std::enable_if_t<!std::is_same_v<T, QVariant>>>
QList<T> kq_filter(const QList<T> &list, Block block)
{
    QList<T> result;
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i) {
        if (block(list.at(i), i, &stop))
            result.append(list.at(i));
    }
    return result;
}

/*!
    \fn template<typename T, typename Block> auto kq_mapAndFilter(const QList<T> &list, Block block)
    The typed form of kq_mapAndFilter(): \a block returns a std::optional,
    and the values it holds are collected in order.
*/
template<typename T, typename Block, typename = std::enable_if_t<!std::is_same_v<T, QVariant>>>
auto kq_mapAndFilter(const QList<T> &list, Block block)
{
    using Optional = std::decay_t<std::invoke_result_t<Block &, const T &, qsizetype, bool *>>;
    QList<typename Optional::value_type> result;
    bool stop = false;
    for (qsizetype i = 0; i < list.size() && !stop; ++i) {
        if (Optional value = block(list.at(i), i, &stop))
            result.append(std::move(*value));
    }
    return result;
}

/*!
    Calls \a block; the objects handed to QObject::deleteLater() inside it
    (on this thread) are deleted when it returns, and no other event is
    processed. Scopes nest: an inner scope deletes only what was handed over
    inside it. Without a QCoreApplication the block just runs.
*/
TARNCOMMON_EXPORT void kq_subpool(const std::function<void()> &block);
