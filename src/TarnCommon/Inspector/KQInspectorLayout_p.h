#pragma once

#include <TarnCommon/TarnCommonExport.h>

#include <QtCore/QRectF>
#include <QtCore/QSizeF>

// The inspector's sizing rules, as plain functions.
namespace KQInspectorLayout {

// The window's content size clamped into a mode's limits: the window keeps
// its size as far as the mode allows.
QSizeF clampedContentSize(const QSizeF &content, const QSizeF &minSize, const QSizeF &maxSize);

// content (y-up screen space) resized to size with its top edge fixed: it
// grows or shrinks downward and to the right.
QRectF contentKeepingTopEdge(const QRectF &content, const QSizeF &size);

} // namespace KQInspectorLayout
