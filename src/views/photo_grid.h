#pragma once

#include "views/photo_grid_layout.h"

#include <QAbstractItemView>

/// Shows an ItemModelPhotoIcon as a grid of pictures with a heading above each month. Only what is on the
/// screen is looked at.
class PhotoGrid : public QAbstractItemView
{
    Q_OBJECT

public:
    explicit PhotoGrid(QWidget *parent = nullptr);

    /// The least width and height of the place of one picture.
    void setCellSide(int side);
    int cellSide() const { return m_cellSide; }
    /// The longest side that a picture needs to have there, in pixels of the screen.
    int pictureSide() const;

    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint &place) const override;
    void setModel(QAbstractItemModel *model) override;
    void doItemsLayout() override;

signals:
    /// Other rows are on the screen than before, or at another size.
    void shownRowsChanged(int firstRow, int endRow);

protected:
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex &) const override { return false; }
    void setSelection(const QRect &rect, QItemSelectionModel::SelectionFlags command) override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void updateGeometries() override;
    void changeEvent(QEvent *event) override;

private:
    PhotoGridLayout m_layout;
    int m_cellSide = 160;
    PhotoGridLayout::Range m_shown;

    int headingHeight() const;
    int rowCount() const;
    void readGroups();
    void arrange();
    void tellShownRows();
    void paintHeading(QPainter &painter, int group, QPoint offset) const;
    void paintItem(QPainter &painter, int row, const QRect &cell) const;
    QRect paintPicture(QPainter &painter, const QModelIndex &index, const QRect &inside) const;
};
