#include "views/photo_grid.h"

#include "views/fonts.h"
#include "views/item_model_photo_icon.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>

namespace {
constexpr int space = 4; // around a picture within its cell
constexpr int selectionWidth = 3;
constexpr int headingSpace = 20;
constexpr int lineStep = 60;

void paintPlaySign(QPainter &painter, const QRect &picture)
{
    constexpr int largest = 40;
    const int side = std::min({largest, picture.width() / 2, picture.height() / 2});
    const QRectF circle(picture.center().x() - side / 2.0, picture.center().y() - side / 2.0, side, side);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 140));
    painter.drawEllipse(circle);
    QPainterPath triangle;
    triangle.moveTo(circle.left() + side * 0.38, circle.top() + side * 0.28);
    triangle.lineTo(circle.left() + side * 0.74, circle.center().y());
    triangle.lineTo(circle.left() + side * 0.38, circle.bottom() - side * 0.28);
    triangle.closeSubpath();
    painter.setBrush(Qt::white);
    painter.drawPath(triangle);
}
} // namespace

PhotoGrid::PhotoGrid(QWidget *parent) : QAbstractItemView(parent)
{
    setSelectionMode(ExtendedSelection);
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setEditTriggers(NoEditTriggers);
    setMouseTracking(false);
}

int PhotoGrid::headingHeight() const
{
    return QFontMetrics(strongFont(font())).height() + headingSpace;
}

int PhotoGrid::rowCount() const
{
    return model() ? model()->rowCount() : 0;
}

int PhotoGrid::pictureSide() const
{
    // In steps, so that a window that is made wider does not ask for every picture again and again.
    constexpr int step = 48;
    const int side = static_cast<int>((m_layout.cellSide() - 2 * space) * devicePixelRatioF());
    return (side + step - 1) / step * step;
}

// The picture at the top of the screen stays there.
void PhotoGrid::setCellSide(int side)
{
    if (side == m_cellSide)
        return;
    const int anchor = m_layout.itemsBetween(verticalOffset(), verticalOffset() + 1).first;
    m_cellSide = side;
    arrange();
    if (anchor > 0)
        verticalScrollBar()->setValue(m_layout.itemRect(anchor).top() - headingHeight());
    viewport()->update();
}

void PhotoGrid::setModel(QAbstractItemModel *model)
{
    QAbstractItemView::setModel(model);
    doItemsLayout();
}

void PhotoGrid::doItemsLayout()
{
    readGroups();
    arrange();
    QAbstractItemView::doItemsLayout();
}

void PhotoGrid::readGroups()
{
    std::vector<int> sizes;
    int previous = 0;
    for (int row = 0; row < rowCount(); ++row) {
        const int group = model()->index(row, 0).data(ItemModelPhotoIcon::Group).toInt();
        if (sizes.empty() || group != previous)
            sizes.push_back(0);
        ++sizes.back();
        previous = group;
    }
    m_layout.setGroups(sizes);
}

void PhotoGrid::arrange()
{
    m_layout.arrange(viewport()->width(), m_cellSide, headingHeight());
    updateGeometries();
    m_shown = {};
}

void PhotoGrid::updateGeometries()
{
    verticalScrollBar()->setPageStep(viewport()->height());
    verticalScrollBar()->setSingleStep(lineStep);
    verticalScrollBar()->setRange(0, std::max(0, m_layout.contentHeight() - viewport()->height()));
    QAbstractItemView::updateGeometries();
}

void PhotoGrid::resizeEvent(QResizeEvent *event)
{
    arrange();
    QAbstractItemView::resizeEvent(event);
}

void PhotoGrid::changeEvent(QEvent *event)
{
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        arrange();
}

int PhotoGrid::verticalOffset() const
{
    return verticalScrollBar()->value();
}

QRect PhotoGrid::visualRect(const QModelIndex &index) const
{
    return index.isValid() ? m_layout.itemRect(index.row()).translated(0, -verticalOffset()) : QRect();
}

QModelIndex PhotoGrid::indexAt(const QPoint &place) const
{
    const int row = m_layout.itemAt(place + QPoint(0, verticalOffset()));
    return row < 0 || !model() ? QModelIndex() : model()->index(row, 0);
}

void PhotoGrid::scrollTo(const QModelIndex &index, ScrollHint hint)
{
    const QRect rect = m_layout.itemRect(index.row());
    if (!index.isValid() || rect.isEmpty())
        return;
    const int height = viewport()->height();
    int value = verticalOffset();
    if (hint == PositionAtTop || rect.top() < value)
        value = rect.top();
    else if (hint == PositionAtBottom || rect.bottom() >= value + height)
        value = rect.bottom() + 1 - height;
    if (hint == PositionAtCenter)
        value = rect.center().y() - height / 2;
    verticalScrollBar()->setValue(value);
}

QModelIndex PhotoGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers)
{
    const int count = rowCount();
    if (count == 0)
        return {};
    int row = std::max(0, currentIndex().row());
    const auto byScreen = [this](int from, int pixels) {
        const QRect rect = m_layout.itemRect(from);
        const int reached = m_layout.itemBefore(rect.center() + QPoint(0, pixels));
        return reached < 0 ? (pixels < 0 ? 0 : m_layout.itemCount() - 1) : reached;
    };
    switch (action) {
    case MoveLeft:
    case MovePrevious:
        row -= 1;
        break;
    case MoveRight:
    case MoveNext:
        row += 1;
        break;
    case MoveUp:
        row = m_layout.itemAbove(row);
        break;
    case MoveDown:
        row = m_layout.itemBelow(row);
        break;
    case MovePageUp:
        row = byScreen(row, -viewport()->height());
        break;
    case MovePageDown:
        row = byScreen(row, viewport()->height());
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = count - 1;
        break;
    }
    return model()->index(std::clamp(row, 0, count - 1), 0);
}

// As text is selected: all between two places in reading order.
void PhotoGrid::setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command)
{
    if (!model())
        return;
    const QPoint offset(0, verticalOffset());
    const QPoint one = rect.topLeft() + offset;
    const QPoint other(rect.x() + rect.width() - 1 + offset.x(), rect.y() + rect.height() - 1 + offset.y());
    int first = m_layout.itemAt(one);
    int last = m_layout.itemAt(other);
    const int before = m_layout.itemBefore(one);
    const int beforeOther = m_layout.itemBefore(other);
    if (first < 0)
        first = before <= beforeOther ? before + 1 : before;
    if (last < 0)
        last = beforeOther < before ? beforeOther + 1 : beforeOther;
    if (first > last)
        std::swap(first, last);
    const bool touchesNone = before == beforeOther && m_layout.itemAt(one) < 0 && m_layout.itemAt(other) < 0;
    QItemSelection selection;
    if (!touchesNone && first >= 0 && last < rowCount())
        selection.select(model()->index(first, 0), model()->index(last, 0));
    selectionModel()->select(selection, command);
}

QRegion PhotoGrid::visualRegionForSelection(const QItemSelection &selection) const
{
    const PhotoGridLayout::Range shown =
        m_layout.itemsBetween(verticalOffset(), verticalOffset() + viewport()->height());
    QRegion region;
    for (const QItemSelectionRange &range : selection)
        for (int row = std::max(range.top(), shown.first); row <= std::min(range.bottom(), shown.end - 1);
             ++row)
            region += m_layout.itemRect(row).translated(0, -verticalOffset());
    return region;
}

void PhotoGrid::tellShownRows()
{
    const PhotoGridLayout::Range shown =
        m_layout.itemsBetween(verticalOffset(), verticalOffset() + viewport()->height() - 1);
    if (shown == m_shown)
        return;
    m_shown = shown;
    emit shownRowsChanged(shown.first, shown.end);
}

void PhotoGrid::paintEvent(QPaintEvent *event)
{
    tellShownRows();
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(event->rect(), palette().base());
    const int top = event->rect().top() + verticalOffset();
    const int bottom = event->rect().bottom() + verticalOffset();
    const QPoint offset(0, -verticalOffset());
    const PhotoGridLayout::Range groups = m_layout.groupsBetween(top, bottom);
    for (int group = groups.first; group < groups.end; ++group)
        paintHeading(painter, group, offset);
    const PhotoGridLayout::Range items = m_layout.itemsBetween(top, bottom);
    for (int row = items.first; row < items.end; ++row)
        paintItem(painter, row, m_layout.itemRect(row).translated(offset));
}

void PhotoGrid::paintHeading(QPainter &painter, int group, QPoint offset) const
{
    const QRect rect = m_layout.headingRect(group).translated(offset).adjusted(space, 0, 0, -space);
    painter.setFont(strongFont(font()));
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(
        rect, Qt::AlignLeft | Qt::AlignBottom,
        model()->index(m_layout.firstItemOf(group), 0).data(ItemModelPhotoIcon::GroupTitle).toString());
}

void PhotoGrid::paintItem(QPainter &painter, int row, const QRect &cell) const
{
    const QModelIndex index = model()->index(row, 0);
    const QRect picture = paintPicture(painter, index, cell.adjusted(space, space, -space, -space));
    if (index.data(ItemModelPhotoIcon::IsVideo).toBool())
        paintPlaySign(painter, picture);
    const bool isSelected = selectionModel()->isSelected(index);
    if (isSelected) {
        QColor veil = palette().color(QPalette::Highlight);
        constexpr int veilAlpha = 70;
        veil.setAlpha(veilAlpha);
        painter.fillRect(picture, veil);
    }
    if (isSelected || (hasFocus() && index == currentIndex())) {
        QPen pen(palette().color(isSelected ? QPalette::Highlight : QPalette::Text),
                 isSelected ? selectionWidth : 1);
        pen.setJoinStyle(Qt::MiterJoin);
        if (!isSelected)
            pen.setStyle(Qt::DotLine);
        painter.setPen(pen);
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(picture).adjusted(0.5, 0.5, -0.5, -0.5));
    }
    if (isSelected && hasFocus() && index == currentIndex()) {
        painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
        painter.drawRect(QRectF(picture).adjusted(-3, -3, 3, 3));
    }
}

/// The picture in the middle of its place, or a sheet that names the kind of file. Gives where it stands.
QRect PhotoGrid::paintPicture(QPainter &painter, const QModelIndex &index, const QRect &inside) const
{
    const auto pixmap = index.data(ItemModelPhotoIcon::Thumbnail).value<QPixmap>();
    if (pixmap.isNull()) {
        painter.fillRect(inside, palette().alternateBase());
        painter.setFont(font());
        painter.setPen(palette().color(QPalette::PlaceholderText));
        if (!index.data(ItemModelPhotoIcon::IsVideo).toBool())
            painter.drawText(inside, Qt::AlignCenter, index.data(ItemModelPhotoIcon::Badge).toString());
        return inside;
    }
    const QSizeF logical = QSizeF(pixmap.size()) / devicePixelRatioF();
    QSizeF size = logical;
    if (size.width() > inside.width() || size.height() > inside.height() ||
        std::max(size.width(), size.height()) < std::max(inside.width(), inside.height()) * 0.75)
        size.scale(inside.size(), Qt::KeepAspectRatio);
    QRect target(QPoint(), size.toSize());
    target.moveCenter(inside.center());
    painter.drawPixmap(target, pixmap);
    return target;
}
