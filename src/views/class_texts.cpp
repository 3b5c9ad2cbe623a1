#include "views/class_texts.h"

#include <QMap>

const ClassTexts &classTexts(DataClass dataClass)
{
    static const QMap<DataClass, ClassTexts> texts{
        {DataClass::Contacts,
         {"IDS_CONTACTS", "IDS_FILTER_CONTACTS", "IDS_NO_CONTACTS", "IDS_SAVING_CONTACTS",
          "IDS_CONFIRM_DEL_CONTACTS", "IDS_SUC_DEL_CONTACTS", "IDS_CONFIRM_DEL_ALL_CONTACTS",
          "IDS_SUC_DEL_ALL_CONTACTS"}},
        {DataClass::Calls,
         {"IDS_CALLS", "IDS_FILTER_CALLS", "IDS_NO_CALLS", "IDS_SAVING_CALLS", "IDS_CONFIRM_DEL_CALLS",
          "IDS_SUC_DEL_CALLS", "IDS_CONFIRM_DEL_ALL_CALLS", "IDS_SUC_DEL_ALL_CALLS"}},
        {DataClass::Notes,
         {"IDS_NOTES", "IDS_FILTER_NOTES", "IDS_NO_NOTES", "IDS_SAVING_NOTES", "IDS_CONFIRM_DEL_NOTES",
          "IDS_SUC_DEL_NOTES", "IDS_CONFIRM_DEL_ALL_NOTES", "IDS_SUC_DEL_ALL_NOTES"}},
        {DataClass::Calendar,
         {"IDS_CALENDAR", "IDS_FILTER_CALENDAR", "IDS_NO_CALENDAR", "IDS_SAVING_CALENDAR",
          "IDS_CONFIRM_DEL_CALENDAR", "IDS_SUC_DEL_CALENDAR", "IDS_CONFIRM_DEL_ALL_CALENDAR",
          "IDS_SUC_DEL_ALL_CALENDAR"}},
        {DataClass::Bookmarks,
         {"IDS_BOOKMARKS", "IDS_FILTER_BOOKMARKS", "IDS_NO_BOOKMARKS", "IDS_SAVING_BOOKMARKS",
          "IDS_CONFIRM_DEL_BOOKMARKS", "IDS_SUC_DEL_BOOKMARKS", "IDS_CONFIRM_DEL_ALL_BOOKMARKS",
          "IDS_SUC_DEL_ALL_BOOKMARKS"}},
    };
    return *texts.constFind(dataClass);
}

const QList<ClassFormat> &classFormats(DataClass dataClass)
{
    static const ClassFormat csv{"csv", "IDS_FILTER_CSV_FILES", "csv"};
    static const ClassFormat text{"text", "IDS_FILTER_TEXT_FILES", "txt"};
    static const ClassFormat html{"html", "IDS_FILTER_HTML_FILES", "html"};
    static const QMap<DataClass, QList<ClassFormat>> formats{
        {DataClass::Contacts, {{"vcard", "IDS_FILTER_VCARD_FILES", "vcf"}, csv, text, html}},
        {DataClass::Calls, {text, csv}},
        {DataClass::Notes, {{"html", "IDS_FILTER_HTML_FILES", nullptr}}},
        {DataClass::Calendar, {{"ical", "IDS_FILTER_ICAL_FILES", "ics"}, csv}},
        {DataClass::Bookmarks, {html}},
    };
    return *formats.constFind(dataClass);
}
