#include "export/printed_text.h"

#include "export/emoji_picture.h"
#include "export/emoji_scan.h"
#include "export/softbank_emoji.h"

#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <vector>

namespace {
constexpr qsizetype pieceUnits = 8192;
constexpr std::size_t mostKeptPictures = 2000;
// Of the size of the text, as the colour fonts draw them.
constexpr qreal emojiSide = 1.17;
constexpr qreal emojiAdvance = 1.25;
constexpr qreal emojiMiddle = 0.35; // above the base line
constexpr qreal tabWidth = 2;
// No text has this, so no font does. A font of coloured pictures must not reach the document: Qt spoils it
// for the rest of the program by trying to take outlines from it.
constexpr QChar emojiPlace(0xFDD0);
// Letters of a font's own, such as one for "ffi", cannot be found again as the three that they stand for. A
// distance between letters, be it too small to see, keeps them apart.
constexpr qreal apart = 1.0 / 64;

/// True for the scripts whose letters have to join: Hebrew, Arabic, those of India and their neighbours.
bool mustJoin(QChar c)
{
    const char16_t unit = c.unicode();
    return (unit >= 0x0590 && unit < 0x1E00) || (unit >= 0xA800 && unit < 0xAC00) ||
           (unit >= 0xFB1D && unit < 0xFDD0) || (unit >= 0xFE70 && unit < 0xFF00);
}

/// Old telephones sent private characters for what everybody has now.
QString withModernEmoji(const QString &text)
{
    const auto isOld = [](QChar c) { return c.unicode() >= 0xE000 && c.unicode() <= 0xE537; };
    if (std::none_of(text.begin(), text.end(), isOld))
        return text;
    QString result;
    for (const QChar c : text) {
        const QString modern = isOld(c) ? modernEmojiOf(c.unicode()) : QString();
        result += modern.isEmpty() ? QString(c) : modern;
    }
    return result;
}

struct TextWithPlaces
{
    QString text;
    std::vector<EmojiPlace> places;
};

/// Emoji that have a picture become one character each; one that has none stays text, for what another font
/// makes of it.
TextWithPlaces withPlaces(const QString &text, EmojiPictures &pictures)
{
    TextWithPlaces result;
    qsizetype copied = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].unicode() < firstEmojiUnit && !isKeycapBase(text[i]))
            continue;
        const int units = emojiSequenceAt(text, i);
        const QImage picture = units > 0 ? pictures.of(text.mid(i, units)) : QImage();
        if (picture.isNull() && text[i] != emojiPlace)
            continue;
        result.text += QStringView(text).sliced(copied, i - copied);
        if (!picture.isNull()) {
            result.places.push_back({result.text.size(), picture});
            result.text += emojiPlace;
        }
        i += std::max(units, 1) - 1;
        copied = i + 1;
    }
    result.text += QStringView(text).sliced(copied);
    return result;
}

/// Makes the places of emoji as wide as their pictures, and shows nothing of what the font has for them.
QList<QTextLayout::FormatRange> blanksIn(const QString &text, const QFont &font)
{
    QList<QTextLayout::FormatRange> ranges;
    QTextCharFormat blank;
    for (qsizetype at = text.indexOf(emojiPlace); at >= 0; at = text.indexOf(emojiPlace, at + 1)) {
        if (ranges.isEmpty()) {
            QFont wide = font;
            wide.setStyleStrategy(QFont::NoFontMerging);
            wide.setLetterSpacing(QFont::AbsoluteSpacing, 0);
            const qreal narrow = QFontMetricsF(wide).horizontalAdvance(emojiPlace);
            wide.setLetterSpacing(QFont::AbsoluteSpacing, font.pixelSize() * emojiAdvance - narrow);
            blank.setFont(wide);
            blank.setForeground(Qt::transparent);
        }
        // Those that follow each other are one range: the layout asks for a range's look again and again.
        if (!ranges.isEmpty() && ranges.last().start + ranges.last().length == at)
            ++ranges.last().length;
        else
            ranges.append({static_cast<int>(at), 1, blank});
    }
    return ranges;
}

Qt::Alignment alignmentOf(LinePlace place, bool rightToLeft)
{
    switch (place) {
    case LinePlace::Left:
        return Qt::AlignLeft;
    case LinePlace::Centre:
        return Qt::AlignHCenter;
    case LinePlace::Right:
        return Qt::AlignRight;
    case LinePlace::Start:
        break;
    }
    return rightToLeft ? Qt::AlignRight : Qt::AlignLeft;
}
} // namespace

struct LaidOutText
{
    QTextLayout layout;
    std::shared_ptr<const std::vector<EmojiPlace>> emoji;
    qsizetype begin = 0; // in the whole text
    qreal width = 0;
    bool endsAtRight = false;
};

QImage EmojiPictures::of(const QString &emoji)
{
    const auto known = m_drawn.find(emoji);
    if (known != m_drawn.end())
        return known->second;
    if (m_drawn.size() >= mostKeptPictures)
        m_drawn.clear();
    return m_drawn.emplace(emoji, emojiPicture(emoji)).first->second;
}

PrintedLine::PrintedLine(std::shared_ptr<const LaidOutText> text, int index)
    : m_text(std::move(text)), m_index(index)
{
}

qreal PrintedLine::height() const
{
    return m_text->layout.lineAt(m_index).height();
}

qreal PrintedLine::width() const
{
    return m_text->layout.lineAt(m_index).naturalTextWidth();
}

void PrintedLine::draw(QPainter &painter, QPointF topLeft, qreal columnWidth) const
{
    const QTextLine line = m_text->layout.lineAt(m_index);
    if (m_text->endsAtRight)
        topLeft.rx() += columnWidth - m_text->width;
    line.draw(&painter, topLeft);

    const qsizetype first = m_text->begin + line.textStart();
    const qsizetype end = first + line.textLength();
    auto place = std::lower_bound(m_text->emoji->begin(), m_text->emoji->end(), first,
                                  [](const EmojiPlace &each, qsizetype at) { return each.at < at; });
    const qreal em = m_text->layout.font().pixelSize();
    for (; place != m_text->emoji->end() && place->at < end; ++place) {
        const int at = static_cast<int>(place->at - m_text->begin);
        const qreal middle = (line.cursorToX(at) + line.cursorToX(at + 1)) / 2;
        QRectF square(0, 0, em * emojiSide, em * emojiSide);
        square.moveCenter(topLeft + QPointF(middle, line.ascent() - em * emojiMiddle));
        painter.drawImage(square, place->picture);
    }
}

PrintedText::PrintedText(const QString &text, const QFont &font, qreal width, EmojiPictures &pictures,
                         LinePlace place)
    : m_font(font), m_width(width), m_place(place)
{
    TextWithPlaces found = withPlaces(withModernEmoji(text), pictures);
    m_text = std::move(found.text);
    m_emoji = std::make_shared<const std::vector<EmojiPlace>>(std::move(found.places));
}

std::optional<PrintedLine> PrintedText::next()
{
    while (m_lines.empty() && !m_ended)
        layOutMore();
    if (m_lines.empty())
        return std::nullopt;
    PrintedLine line = std::move(m_lines.front());
    m_lines.pop_front();
    return line;
}

void PrintedText::layOutMore()
{
    qsizetype paragraphEnd = m_text.indexOf(QLatin1Char('\n'), m_at);
    if (paragraphEnd < 0)
        paragraphEnd = m_text.size();
    QString piece = m_text.mid(m_at, std::min(paragraphEnd - m_at, pieceUnits));
    const bool isCut = m_at + piece.size() < paragraphEnd;
    if (isCut && piece.back().isHighSurrogate())
        piece.chop(1);
    if (!m_insideParagraph)
        m_rightToLeft = piece.isRightToLeft();
    m_insideParagraph = isCut;

    const std::shared_ptr<LaidOutText> text = laidOut(piece);
    int lines = text->layout.lineCount();
    if (isCut && lines > 1) {
        // The last line goes on in the next piece.
        --lines;
        m_at += text->layout.lineAt(lines).textStart();
    } else {
        m_at += piece.size() + (isCut ? 0 : 1);
    }
    m_ended = m_at > m_text.size();
    for (int i = 0; i < lines; ++i)
        m_lines.emplace_back(text, i);
}

std::shared_ptr<LaidOutText> PrintedText::laidOut(const QString &piece) const
{
    auto text = std::make_shared<LaidOutText>();
    text->emoji = m_emoji;
    text->begin = m_at;
    text->width = m_width;
    const Qt::Alignment alignment = alignmentOf(m_place, m_rightToLeft);
    text->endsAtRight = alignment == Qt::AlignRight;

    QFont font = m_font;
    if (std::none_of(piece.begin(), piece.end(), mustJoin))
        font.setLetterSpacing(QFont::AbsoluteSpacing, apart);
    QTextOption option(alignment);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(m_rightToLeft ? Qt::RightToLeft : Qt::LeftToRight);
    option.setTabStopDistance(font.pixelSize() * tabWidth);
    QTextLayout &layout = text->layout;
    layout.setText(piece.endsWith(QLatin1Char('\r')) ? piece.chopped(1) : piece);
    layout.setFont(font);
    layout.setTextOption(option);

    layout.setFormats(blanksIn(layout.text(), m_font));
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(m_width);
        line.setPosition({});
    }
    layout.endLayout();
    return text;
}
