#pragma once

#include "personal/contact_record.h"

#include <QHash>
#include <QList>
#include <QString>

/// The page of contact cards and its folder of pictures. Text of lines ends with CR LF.
class ContactsHtml
{
public:
    /// Makes the folder "photos" beside the page, with the placeholder in it. Throws Error.
    explicit ContactsHtml(const QString &pagePath);

    QString head() const;
    /// The card of one contact; its picture is written into the folder.
    QString card(const ContactRecord &contact);
    QString tail() const;

    /// How many pictures were neither JPEG nor PNG.
    qint64 unreadablePictures() const { return m_unreadablePictures; }

private:
    QString m_photoFolder;
    QHash<QString, int> m_photos; // how many there are of an identifier
    qint64 m_unreadablePictures = 0;

    QString photoElement(const ContactRecord &contact);
};
