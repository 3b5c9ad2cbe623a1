#pragma once

#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QXmlStreamReader>

/// What programs that share no code with the writer see in a PDF file.

inline QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0)
        qWarning("%s: %s", qPrintable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

/// The text of all pages, without the marks that say in which direction it reads, any run of blanks and line
/// breaks as one blank.
inline QString pdfText(const QString &path)
{
    QString text = QString::fromUtf8(outputOf(QStringLiteral("pdftotext"), {path, QStringLiteral("-")}));
    text.remove(QRegularExpression(QStringLiteral("[\\x{202A}-\\x{202E}]")));
    return text.simplified();
}

/// One word and where it stands on its page, in points from the top left.
struct PdfWord
{
    QString text;
    int page;
    QRectF place;
};

inline QList<PdfWord> pdfWords(const QString &path)
{
    QList<PdfWord> words;
    QXmlStreamReader xml(
        outputOf(QStringLiteral("pdftotext"), {QStringLiteral("-bbox"), path, QStringLiteral("-")}));
    int page = 0;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("page"))
            ++page;
        if (xml.name() != QLatin1String("word"))
            continue;
        const auto edge = [&](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toDouble();
        };
        const QPointF first(edge("xMin"), edge("yMin"));
        const QPointF last(edge("xMax"), edge("yMax"));
        words.append({xml.readElementText(), page, QRectF(first, last)});
    }
    return words;
}

inline int pdfPageCount(const QString &path)
{
    const QString info = QString::fromUtf8(outputOf(QStringLiteral("pdfinfo"), {path}));
    return QRegularExpression(QStringLiteral("Pages:\\s+(\\d+)")).match(info).captured(1).toInt();
}

/// A page as it looks, one pixel a point.
inline QImage pdfPage(const QString &path, int page)
{
    const QString number = QString::number(page);
    return QImage::fromData(outputOf(QStringLiteral("pdftoppm"),
                                     {QStringLiteral("-r"), QStringLiteral("72"), QStringLiteral("-png"),
                                      QStringLiteral("-f"), number, QStringLiteral("-l"), number, path}));
}
