#pragma once

#include <QRect>

#include <vector>

/// Where the items of a grid stand that has a heading above each group: pure geometry, in the coordinates of
/// the content. Costs as much as there are groups, however many items they have.
class PhotoGridLayout
{
public:
    /// Numbers of items and groups, the end not included.
    struct Range
    {
        int first = 0;
        int end = 0;

        bool operator==(const Range &) const = default;
    };

    /// `groupSizes` are the numbers of items of the groups, in order; none of them is 0.
    void setGroups(const std::vector<int> &groupSizes);
    /// Places are at least `cellSide` wide and high, and fill the width.
    void arrange(int width, int cellSide, int headingHeight);

    int contentHeight() const { return m_height; }
    int columns() const { return m_columns; }
    int cellSide() const { return m_cell; }
    int itemCount() const { return m_items; }
    QRect itemRect(int item) const;
    int groupCount() const { return static_cast<int>(m_groups.size()); }
    QRect headingRect(int group) const;
    int firstItemOf(int group) const;
    /// The item at a place, or -1.
    int itemAt(QPoint place) const;
    /// The last item that stands before a place in reading order, or that contains it; -1 when there is none.
    int itemBefore(QPoint place) const;
    /// Those that touch the band between two heights.
    Range itemsBetween(int top, int bottom) const;
    Range groupsBetween(int top, int bottom) const;
    /// The item in the line above or below, as near to the same column as there is one; the item itself at
    /// the ends.
    int itemAbove(int item) const;
    int itemBelow(int item) const;

private:
    struct Group
    {
        int firstItem;
        int items;
        int top; // of the heading
    };

    std::vector<Group> m_groups;
    int m_items = 0;
    int m_width = 0;
    int m_cell = 1;
    int m_heading = 0;
    int m_columns = 1;
    int m_height = 0;

    int linesOf(const Group &group) const { return (group.items + m_columns - 1) / m_columns; }
    int groupOfItem(int item) const;
    int groupAtHeight(int y) const;
    int itemInLine(const Group &group, int line, int column) const;
};
