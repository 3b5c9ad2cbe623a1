#pragma once

#include <QFont>
#include <QImage>
#include <QPointF>
#include <QString>

#include <deque>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

class QPainter;

/// Draws each emoji once and keeps it, so that a document holds each picture once.
class EmojiPictures
{
public:
    /// Null when no colour font is there or it lacks the emoji.
    QImage of(const QString &emoji);

private:
    std::unordered_map<QString, QImage> m_drawn;
};

/// A character that stands in the text where an emoji is drawn.
struct EmojiPlace
{
    qsizetype at;
    QImage picture;
};

struct LaidOutText;

/// One line of text as it stands on paper, in units of the device. Keeps the paragraph that it belongs to.
class PrintedLine
{
public:
    PrintedLine(std::shared_ptr<const LaidOutText> text, int index);

    qreal height() const;
    qreal width() const;
    /// `topLeft` is that of a column of `columnWidth`, which may be narrower than the text was laid out for:
    /// a line that reads from the right then still ends at the column's right edge.
    void draw(QPainter &painter, QPointF topLeft, qreal columnWidth) const;

private:
    std::shared_ptr<const LaidOutText> m_text;
    int m_index;
};

/// Where the lines of a text stand in their column. Start is left or right as each paragraph reads.
enum class LinePlace { Start, Left, Centre, Right };

/// Breaks a text into lines, a bounded piece of it at a time, so that the length of a message does not decide
/// over the memory. Each paragraph reads in its own direction. Emoji are drawn as pictures, since a
/// document holds no colour fonts.
class PrintedText
{
public:
    /// The font's size is in pixels of the device, as is `width`.
    PrintedText(const QString &text, const QFont &font, qreal width, EmojiPictures &pictures,
                LinePlace place = LinePlace::Start);

    /// Nothing at the end. An empty text has one empty line.
    std::optional<PrintedLine> next();

private:
    QString m_text;
    std::shared_ptr<const std::vector<EmojiPlace>> m_emoji; // of the whole text
    QFont m_font;
    qreal m_width;
    LinePlace m_place;
    qsizetype m_at = 0;
    bool m_ended = false;
    bool m_insideParagraph = false;
    bool m_rightToLeft = false;
    std::deque<PrintedLine> m_lines;

    void layOutMore();
    std::shared_ptr<LaidOutText> laidOut(const QString &piece) const;
};
