#include "export/picture_filter.h"

#include "base/byte_reader.h"
#include "base/error.h"

#include <QString>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace {
// Pictures are stored in some ten passes, each finer than the one before. What a pass costs grows with the
// pixels.
constexpr int mostPasses = 100;
constexpr qint64 mostPassedPixels = 10 * mostPicturePixels;
// A profile of colours in a JPEG comes in pieces of 64 kilobytes; those of cameras have one.
constexpr int mostProfilePieces = 16;
constexpr quint32 largestPackedProfile = 1 << 20;

[[noreturn]] void refuse()
{
    throw Error(QStringLiteral("The picture goes beyond its bounds."), ErrorKind::Damaged);
}

/// Collects the parts of a file that are kept.
class Kept
{
public:
    explicit Kept(QByteArrayView file) : m_file(file) {}

    void add(qsizetype begin, qsizetype end) { m_bytes.append(m_file.sliced(begin, end - begin)); }
    QByteArray take() { return std::move(m_bytes); }

private:
    QByteArrayView m_file;
    QByteArray m_bytes;
};

/// The parts of a JPEG are marked by FF and a byte that tells the kind.
class JpegFilter
{
public:
    explicit JpegFilter(QByteArrayView file) : m_file(file), m_in(file), m_kept(file) {}

    FilteredPicture run()
    {
        m_in.skip(2);
        m_kept.add(0, 2);
        while (m_in.remaining() > 1 && addPart()) {
        }
        if (m_passes == 0)
            refuse();
        return {"jpeg", m_size, m_kept.take()};
    }

private:
    enum Marker : std::uint8_t {
        BaselineFrame = 0xC0,
        ProgressiveFrame = 0xC2,
        HuffmanTables = 0xC4,
        LastFrame = 0xCF,
        FirstRestart = 0xD0,
        LastRestart = 0xD7,
        EndOfPicture = 0xD9,
        Pass = 0xDA,
        QuantTables = 0xDB,
        RestartInterval = 0xDD,
        Jfif = 0xE0,
        Exif = 0xE1,
        Profile = 0xE2,
        Adobe = 0xEE,
    };

    QByteArrayView m_file;
    ByteReader m_in;
    Kept m_kept;
    QSize m_size;
    int m_passes = 0;
    int m_profilePieces = 0;
    bool m_hasExif = false;

    bool addPart()
    {
        const qsizetype begin = m_in.position();
        std::uint8_t marker = m_in.u8();
        if (marker != 0xFF)
            refuse();
        while (marker == 0xFF)
            marker = m_in.u8();
        if (marker == EndOfPicture)
            return m_kept.add(begin, m_in.position()), false;
        const std::uint16_t length = m_in.u16be();
        if (length < 2)
            refuse();
        const QByteArrayView content = m_in.slice(length - 2);
        if (isFrame(marker))
            readFrame(marker, content);
        if (isNeeded(marker, content))
            m_kept.add(begin, m_in.position());
        if (marker == Pass)
            addPass();
        return true;
    }

    static bool isFrame(std::uint8_t marker)
    {
        // Three of the range are something else: tables and what nobody has ever used.
        return marker >= BaselineFrame && marker <= LastFrame && marker != HuffmanTables && marker != 0xC8 &&
               marker != 0xCC;
    }

    void readFrame(std::uint8_t marker, QByteArrayView content)
    {
        // The kinds behind need other decoders, and no camera writes them.
        if (marker > ProgressiveFrame || !m_size.isEmpty())
            refuse();
        ByteReader in(content);
        in.skip(1);
        const int height = in.u16be();
        m_size = {in.u16be(), height};
        if (!isPictureSize(m_size))
            refuse();
    }

    bool isNeeded(std::uint8_t marker, QByteArrayView content)
    {
        switch (marker) {
        case HuffmanTables:
        case QuantTables:
        case RestartInterval:
        case Pass:
            return true;
        case Jfif:
            return content.startsWith("JFIF");
        case Adobe:
            return content.startsWith("Adobe");
        case Exif: // tells how the picture is to be turned
            return content.startsWith("Exif") && !std::exchange(m_hasExif, true);
        case Profile:
            return content.startsWith("ICC_PROFILE") && ++m_profilePieces <= mostProfilePieces;
        default:
            return isFrame(marker);
        }
    }

    /// The pixels behind a pass's head end at the next mark.
    void addPass()
    {
        const qint64 pixels = qint64{m_size.width()} * m_size.height();
        if (++m_passes > mostPasses || m_size.isEmpty() || m_passes * pixels > mostPassedPixels)
            refuse();
        const qsizetype begin = m_in.position();
        qsizetype end = m_file.indexOf('\xFF', begin);
        while (end >= 0 && end + 1 < m_file.size() &&
               belongsToPixels(static_cast<std::uint8_t>(m_file[end + 1])))
            end = m_file.indexOf('\xFF', end + 2);
        if (end < 0)
            end = m_file.size();
        m_in.seek(end);
        m_kept.add(begin, end);
    }

    static bool belongsToPixels(std::uint8_t after)
    {
        return after == 0 || (after >= FirstRestart && after <= LastRestart);
    }
};

bool isNeededChunk(QByteArrayView type, quint32 length, bool &hasProfile)
{
    if (type == "iCCP")
        return length <= largestPackedProfile && !std::exchange(hasProfile, true);
    static constexpr QByteArrayView needed[] = {"IHDR", "PLTE", "IDAT", "IEND",
                                                "tRNS", "gAMA", "sRGB", "cHRM"};
    return std::find(std::begin(needed), std::end(needed), type) != std::end(needed);
}

/// The chunks of a PNG: length, type, content, check sum.
FilteredPicture filteredPng(QByteArrayView file)
{
    constexpr qsizetype signature = 8;
    constexpr qsizetype checkSum = 4;
    Kept kept(file);
    kept.add(0, signature);
    ByteReader in(file);
    in.skip(signature);
    QSize size;
    bool hasProfile = false;
    while (in.remaining() > 0) {
        const qsizetype begin = in.position();
        const quint32 length = in.u32be();
        const QByteArrayView type = in.slice(4);
        ByteReader content(in.slice(length));
        in.skip(checkSum);
        if (size.isEmpty()) {
            if (type != "IHDR")
                refuse();
            const quint32 width = content.u32be();
            const quint32 height = content.u32be();
            if (std::max(width, height) > quint32{longestPictureSide})
                refuse();
            size = {static_cast<int>(width), static_cast<int>(height)};
            if (!isPictureSize(size))
                refuse();
        }
        if (isNeededChunk(type, length, hasProfile))
            kept.add(begin, in.position());
        if (type == "IEND")
            break;
    }
    if (size.isEmpty())
        refuse();
    return {"png", size, kept.take()};
}

void skipGifBlocks(ByteReader &in)
{
    while (const std::uint8_t length = in.u8())
        in.skip(length);
}

/// What a byte of flags says about the colours that follow.
qsizetype gifColoursBytes(std::uint8_t flags)
{
    return (flags & 0x80) != 0 ? qsizetype{3} << ((flags & 7) + 1) : 0;
}

/// The first picture alone: the head, what says which of its colours is to be seen through, the picture.
FilteredPicture filteredGif(QByteArrayView file)
{
    enum : std::uint8_t { Extension = 0x21, Picture = 0x2C, SeenThrough = 0xF9 };
    Kept kept(file);
    ByteReader in(file);
    in.skip(6);
    const int width = in.u16le();
    const QSize size(width, in.u16le());
    if (!isPictureSize(size))
        refuse();
    const std::uint8_t flags = in.u8();
    in.skip(2 + gifColoursBytes(flags));
    kept.add(0, in.position());
    std::pair<qsizetype, qsizetype> seenThrough{0, 0};
    for (;;) {
        const qsizetype begin = in.position();
        const std::uint8_t kind = in.u8();
        if (kind == Picture) {
            in.skip(8);
            in.skip(gifColoursBytes(in.u8()) + 1);
            skipGifBlocks(in);
            kept.add(seenThrough.first, seenThrough.second);
            kept.add(begin, in.position());
            return {"gif", size, kept.take() + ';'};
        }
        if (kind != Extension)
            refuse();
        const std::uint8_t label = in.u8();
        skipGifBlocks(in);
        if (label == SeenThrough)
            seenThrough = {begin, in.position()};
    }
}

FilteredPicture filteredBmp(QByteArrayView file)
{
    constexpr quint32 oldHead = 12;
    ByteReader in(file);
    in.skip(14);
    const bool isOld = in.u32le() == oldHead;
    const qint64 width = isOld ? in.u16le() : static_cast<qint32>(in.u32le());
    // A negative height says that the first line is the uppermost.
    const qint64 height = std::abs(isOld ? qint64{in.u16le()} : qint64{static_cast<qint32>(in.u32le())});
    if (std::max(width, height) > longestPictureSide)
        refuse();
    const QSize size(static_cast<int>(width), static_cast<int>(height));
    if (!isPictureSize(size))
        refuse();
    return {"bmp", size, file.toByteArray()};
}

bool isHeif(QByteArrayView file)
{
    static constexpr QByteArrayView brands[] = {"heic", "heix", "heim", "heis", "mif1", "avif"};
    return file.size() > 12 && file.sliced(4, 4) == "ftyp" &&
           std::find(std::begin(brands), std::end(brands), file.sliced(8, 4)) != std::end(brands);
}

QByteArray formatOf(QByteArrayView file)
{
    if (file.startsWith("\xFF\xD8\xFF"))
        return "jpeg";
    if (file.startsWith("\x89PNG\r\n\x1A\n"))
        return "png";
    if (file.startsWith("GIF87a") || file.startsWith("GIF89a"))
        return "gif";
    if (file.startsWith("BM"))
        return "bmp";
    return isHeif(file) ? "heif" : "";
}
} // namespace

bool isPictureSize(QSize size)
{
    return !size.isEmpty() && std::max(size.width(), size.height()) <= longestPictureSide &&
           qint64{size.width()} * size.height() <= mostPicturePixels;
}

FilteredPicture filteredPicture(QByteArrayView file)
{
    const QByteArray format = formatOf(file);
    try {
        if (format == "jpeg")
            return JpegFilter(file).run();
        if (format == "png")
            return filteredPng(file);
        if (format == "gif")
            return filteredGif(file);
        if (format == "bmp")
            return filteredBmp(file);
        if (format == "heif")
            return {format, {}, file.toByteArray()};
    } catch (const Error &) {
        // Cut off, or refused: either way nothing is decoded.
    }
    return {format, {}, {}};
}
