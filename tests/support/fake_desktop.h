#pragma once

#include <QFile>
#include <QTemporaryDir>

/// Stands in the place of the desktop's own: writes down what it was asked to open.
class FakeDesktop
{
public:
    FakeDesktop() : m_path(qgetenv("PATH"))
    {
        QFile script(m_folder.filePath(QStringLiteral("xdg-open")));
        if (script.open(QIODevice::WriteOnly))
            script.write("#!/bin/sh\nprintf %s \"$1\" > \"$0.tmp\" && mv \"$0.tmp\" \"$0.asked\"\n");
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        qputenv("PATH", m_folder.path().toLocal8Bit() + ':' + m_path);
    }
    ~FakeDesktop() { qputenv("PATH", m_path); }

    QString asked() const
    {
        QFile file(m_folder.filePath(QStringLiteral("xdg-open.asked")));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private:
    QTemporaryDir m_folder;
    QByteArray m_path;
};
