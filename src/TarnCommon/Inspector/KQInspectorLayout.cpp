#include "KQInspectorLayout_p.h"

#include <algorithm>

namespace KQInspectorLayout {

QSizeF clampedContentSize(const QSizeF &content, const QSizeF &minSize, const QSizeF &maxSize)
{
    return QSizeF(std::min(std::max(content.width(), minSize.width()), maxSize.width()),
                  std::min(std::max(content.height(), minSize.height()), maxSize.height()));
}

QRectF contentKeepingTopEdge(const QRectF &content, const QSizeF &size)
{
    return QRectF(content.x(), content.y() + (content.height() - size.height()), size.width(), size.height());
}

} // namespace KQInspectorLayout
