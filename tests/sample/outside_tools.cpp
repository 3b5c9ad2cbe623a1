#include "outside_tools.h"

#include <QFile>
#include <QProcess>
#include <QXmlStreamReader>

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

QByteArray runTool(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw std::runtime_error(qPrintable(program + u": "_s + process.errorString() + u' ' +
                                            QString::fromUtf8(process.readAllStandardError())));
    return process.readAllStandardOutput();
}

static QVariant readElement(QXmlStreamReader &xml)
{
    const QString kind = xml.name().toString();
    if (kind == u"dict") {
        QVariantMap map;
        QString key;
        while (xml.readNextStartElement()) {
            if (xml.name() == u"key")
                key = xml.readElementText();
            else
                map[key] = readElement(xml);
        }
        return map;
    }
    if (kind == u"array") {
        QVariantList list;
        while (xml.readNextStartElement())
            list << readElement(xml);
        return list;
    }
    const QString text = xml.readElementText();
    if (kind == u"data")
        return QByteArray::fromBase64(text.toLatin1());
    if (kind == u"integer")
        return text.toLongLong();
    if (kind == u"real")
        return text.toDouble();
    return kind == u"true" || kind == u"false" ? QVariant(kind == u"true") : QVariant(text);
}

QVariant readPlist(const QByteArray &bytes)
{
    QXmlStreamReader xml(runTool(u"plistutil"_s, {u"-f"_s, u"xml"_s, u"-i"_s, u"-"_s}, bytes));
    xml.readNextStartElement();
    xml.readNextStartElement();
    return readElement(xml);
}

static QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QByteArray opensslDecrypt(const QByteArray &key, const QByteArray &encrypted, bool padded)
{
    QStringList arguments = {u"enc"_s, u"-d"_s,  u"-aes-256-cbc"_s,  u"-K"_s,
                             hex(key), u"-iv"_s, u"0"_s.repeated(32)};
    if (!padded)
        arguments << u"-nopad"_s;
    return runTool(u"openssl"_s, arguments, encrypted);
}

QByteArray opensslUnwrap(const QByteArray &kek, const QByteArray &wrapped)
{
    try {
        return runTool(
            u"openssl"_s,
            {u"enc"_s, u"-d"_s, u"-id-aes256-wrap"_s, u"-K"_s, hex(kek), u"-iv"_s, u"A6"_s.repeated(8)},
            wrapped);
    } catch (const std::runtime_error &) {
        return {};
    }
}

QByteArray opensslPbkdf2(const char *digest, const QByteArray &password, const QByteArray &salt, int rounds)
{
    const QByteArray printed = runTool(
        u"openssl"_s, {u"kdf"_s, u"-keylen"_s, u"32"_s, u"-kdfopt"_s, u"digest:"_s + QLatin1String(digest),
                       u"-kdfopt"_s, u"hexpass:"_s + hex(password), u"-kdfopt"_s, u"hexsalt:"_s + hex(salt),
                       u"-kdfopt"_s, u"iter:%1"_s.arg(rounds), u"PBKDF2"_s});
    return QByteArray::fromHex(printed);
}

namespace {

struct Closer
{
    void operator()(sqlite3 *database) const { sqlite3_close(database); }
    void operator()(sqlite3_stmt *statement) const { sqlite3_finalize(statement); }
};

/// Calls `take` with the statement standing on each row.
template <typename Take>
void eachRow(const QString &path, const QString &sql, Take take)
{
    sqlite3 *handle = nullptr;
    const QByteArray uri = "file:" + path.toUtf8() + "?immutable=1";
    int result = sqlite3_open_v2(uri.constData(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    const std::unique_ptr<sqlite3, Closer> database(handle);
    sqlite3_stmt *prepared = nullptr;
    if (result == SQLITE_OK)
        result = sqlite3_prepare_v2(handle, sql.toUtf8().constData(), -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, Closer> statement(prepared);
    if (result == SQLITE_OK) {
        while ((result = sqlite3_step(prepared)) == SQLITE_ROW)
            take(prepared);
    }
    if (result != SQLITE_DONE)
        throw std::runtime_error(sqlite3_errmsg(handle) + std::string(" in ") + qPrintable(path));
}

} // namespace

QStringList column(const QString &database, const QString &sql)
{
    QStringList values;
    eachRow(database, sql, [&](sqlite3_stmt *row) {
        values << QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(row, 0)));
    });
    return values;
}

QByteArray blob(const QString &database, const QString &sql)
{
    QByteArray value;
    eachRow(database, sql, [&](sqlite3_stmt *row) {
        value =
            QByteArray(static_cast<const char *>(sqlite3_column_blob(row, 0)), sqlite3_column_bytes(row, 0));
    });
    return value;
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(path + u": "_s + file.errorString()));
    return file.readAll();
}

QString storedPath(const SampleOptions &options, const SampleFile &file)
{
    const QString folder = options.layout == SampleOptions::Layout::Mbdb
                               ? options.folder
                               : options.folder + u'/' + file.fileId.left(2);
    return folder + u'/' + file.fileId;
}
