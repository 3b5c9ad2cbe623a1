#pragma once

#include "backup/file_catalogue.h"

#include <QImage>
#include <QMutex>

#include <optional>
#include <vector>

/// What the view wants thumbnails of, and those that are made and not yet fetched. Shared by the view's model
/// and its worker; every operation may be called from any thread.
class ThumbnailQueue
{
public:
    using Index = FileCatalogue::Index;

    struct Wanted
    {
        Index item;
        int side; // the longest side of the picture, in pixels
    };
    struct Made
    {
        Index item;
        int side;
        QImage image; // null: there is none to be had
    };

    /// Replaces what was wanted before: what has left the screen need not be made any more.
    void want(std::vector<Wanted> items);
    bool isEmpty() const;
    /// The first of the wanted ones, which is taken out.
    std::optional<Wanted> next();
    void put(Made made);
    std::vector<Made> takeMade();

private:
    mutable QMutex m_mutex;
    std::vector<Wanted> m_wanted; // the last is the first to be made
    std::vector<Made> m_made;
};
