#include "views/layout_memory.h"

#include <QByteArray>
#include <QHash>
#include <QHeaderView>
#include <QSplitter>

#include <algorithm>

namespace {
// The widths of the sections that the user can change, and the sizes on both sides of a border.
QHash<QByteArray, QList<int>> &memory()
{
    static QHash<QByteArray, QList<int>> sizes;
    return sizes;
}

QList<int> widths(const QHeaderView &header)
{
    QList<int> sizes;
    for (int section = 0; section < header.count(); ++section)
        sizes.append(header.sectionSize(section));
    return sizes;
}
} // namespace

void rememberColumns(QHeaderView *header, const char *kind)
{
    const QByteArray key = QByteArray("columns of ") + kind;
    const QList<int> known = memory().value(key);
    for (int section = 0; section < std::min<int>(header->count(), static_cast<int>(known.size())); ++section)
        if (header->sectionResizeMode(section) == QHeaderView::Interactive)
            header->resizeSection(section, known.at(section));
    QObject::connect(header, &QHeaderView::sectionResized, header, [header, key] {
        if (header->isVisible())
            memory().insert(key, widths(*header));
    });
}

void rememberSplitter(QSplitter *splitter, const char *kind)
{
    const QByteArray key = QByteArray("border in ") + kind;
    const QList<int> known = memory().value(key);
    if (known.size() == splitter->count())
        splitter->setSizes(known);
    QObject::connect(splitter, &QSplitter::splitterMoved, splitter,
                     [splitter, key] { memory().insert(key, splitter->sizes()); });
}
