#include "views/photo_grid_layout.h"

#include <algorithm>

namespace {
constexpr int margin = 16;
constexpr int spaceBelowGroup = 8;
} // namespace

void PhotoGridLayout::setGroups(const std::vector<int> &groupSizes)
{
    m_groups.clear();
    m_items = 0;
    for (const int size : groupSizes) {
        m_groups.push_back({m_items, size, 0});
        m_items += size;
    }
}

void PhotoGridLayout::arrange(int width, int cellSide, int headingHeight)
{
    const int usable = width - 2 * margin;
    m_width = width;
    m_heading = headingHeight;
    m_columns = std::max(1, usable / std::max(cellSide, 1));
    m_cell = std::max(usable / m_columns, 1);
    m_height = 0;
    for (Group &group : m_groups) {
        group.top = m_height;
        m_height += m_heading + linesOf(group) * m_cell + spaceBelowGroup;
    }
}

int PhotoGridLayout::groupOfItem(int item) const
{
    const auto after =
        std::upper_bound(m_groups.begin(), m_groups.end(), item,
                         [](int wanted, const Group &group) { return wanted < group.firstItem; });
    return static_cast<int>(after - m_groups.begin()) - 1;
}

/// The last group that begins above a height; the first one for what lies above them all.
int PhotoGridLayout::groupAtHeight(int y) const
{
    const auto after = std::upper_bound(m_groups.begin(), m_groups.end(), y,
                                        [](int wanted, const Group &group) { return wanted < group.top; });
    return std::max(0, static_cast<int>(after - m_groups.begin()) - 1);
}

QRect PhotoGridLayout::itemRect(int item) const
{
    if (item < 0 || item >= m_items)
        return {};
    const Group &group = m_groups[static_cast<std::size_t>(groupOfItem(item))];
    const int place = item - group.firstItem;
    return {margin + place % m_columns * m_cell, group.top + m_heading + place / m_columns * m_cell, m_cell,
            m_cell};
}

QRect PhotoGridLayout::headingRect(int group) const
{
    return {margin, m_groups[static_cast<std::size_t>(group)].top, std::max(0, m_width - 2 * margin),
            m_heading};
}

int PhotoGridLayout::firstItemOf(int group) const
{
    return m_groups[static_cast<std::size_t>(group)].firstItem;
}

int PhotoGridLayout::itemAt(QPoint place) const
{
    const int item = itemBefore(place);
    return itemRect(item).contains(place) ? item : -1;
}

int PhotoGridLayout::itemInLine(const Group &group, int line, int column) const
{
    return group.firstItem + std::clamp(line * m_columns + column, 0, group.items - 1);
}

int PhotoGridLayout::itemBefore(QPoint place) const
{
    if (m_groups.empty() || place.y() < 0)
        return -1;
    const Group &group = m_groups[static_cast<std::size_t>(groupAtHeight(place.y()))];
    const int inside = place.y() - group.top - m_heading;
    if (inside < 0)
        return group.firstItem - 1;
    const int column = (place.x() - margin) / m_cell;
    if (place.x() < margin)
        return itemInLine(group, inside / m_cell, 0) - 1;
    return itemInLine(group, inside / m_cell, std::min(column, m_columns - 1));
}

PhotoGridLayout::Range PhotoGridLayout::itemsBetween(int top, int bottom) const
{
    if (m_groups.empty() || bottom < top || bottom < 0)
        return {};
    const Group &first = m_groups[static_cast<std::size_t>(groupAtHeight(top))];
    const int line = std::max(0, (top - first.top - m_heading) / m_cell);
    const int from = first.firstItem + std::min(line * m_columns, first.items);
    const int end = itemBefore({m_width, bottom}) + 1;
    return {std::min(from, end), end};
}

PhotoGridLayout::Range PhotoGridLayout::groupsBetween(int top, int bottom) const
{
    if (m_groups.empty() || bottom < top || bottom < 0)
        return {};
    return {groupAtHeight(top), groupAtHeight(bottom) + 1};
}

int PhotoGridLayout::itemAbove(int item) const
{
    const int number = groupOfItem(item);
    const Group &group = m_groups[static_cast<std::size_t>(number)];
    const int place = item - group.firstItem;
    if (place >= m_columns)
        return item - m_columns;
    if (number == 0)
        return item;
    const Group &above = m_groups[static_cast<std::size_t>(number) - 1];
    return itemInLine(above, linesOf(above) - 1, place);
}

int PhotoGridLayout::itemBelow(int item) const
{
    const int number = groupOfItem(item);
    const Group &group = m_groups[static_cast<std::size_t>(number)];
    const int place = item - group.firstItem;
    const int line = place / m_columns;
    if (line + 1 < linesOf(group))
        return itemInLine(group, line + 1, place % m_columns);
    if (number + 1 == groupCount())
        return item;
    return itemInLine(m_groups[static_cast<std::size_t>(number) + 1], 0, place % m_columns);
}
