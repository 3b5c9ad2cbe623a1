#pragma once

#include <QString>

#include <memory>
#include <vector>

/// A bookmark, or a folder of them. A node owns its children; whoever holds the top-level list owns the tree.
struct BookmarkNode
{
    static constexpr int bookmark = 0;
    static constexpr int folder = 1;

    qint64 id = 0;
    int type = bookmark;
    QString title;
    QString url; // empty for folders
    int order_index = 0;
    QString src_id;
    BookmarkNode *parent = nullptr; // none at the top level
    std::vector<std::unique_ptr<BookmarkNode>> children;
};

using BookmarkTree = std::vector<std::unique_ptr<BookmarkNode>>;
