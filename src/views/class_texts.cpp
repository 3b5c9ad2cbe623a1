#include "views/class_texts.h"

const ClassTexts &classTexts(DataClass dataClass)
{
    static const ClassTexts contacts{
        "IDS_CONTACTS",        "IDS_FILTER_CONTACTS",      "IDS_NO_CONTACTS",
        "IDS_SAVING_CONTACTS", "IDS_CONFIRM_DEL_CONTACTS", "IDS_SUC_DEL_CONTACTS"};
    static const ClassTexts calls{"IDS_CALLS",        "IDS_FILTER_CALLS",      "IDS_NO_CALLS",
                                  "IDS_SAVING_CALLS", "IDS_CONFIRM_DEL_CALLS", "IDS_SUC_DEL_CALLS"};
    static const ClassTexts notes{"IDS_NOTES",        "IDS_FILTER_NOTES",      "IDS_NO_NOTES",
                                  "IDS_SAVING_NOTES", "IDS_CONFIRM_DEL_NOTES", "IDS_SUC_DEL_NOTES"};
    static const ClassTexts calendar{
        "IDS_CALENDAR",        "IDS_FILTER_CALENDAR",      "IDS_NO_CALENDAR",
        "IDS_SAVING_CALENDAR", "IDS_CONFIRM_DEL_CALENDAR", "IDS_SUC_DEL_CALENDAR"};
    static const ClassTexts bookmarks{
        "IDS_BOOKMARKS",        "IDS_FILTER_BOOKMARKS",      "IDS_NO_BOOKMARKS",
        "IDS_SAVING_BOOKMARKS", "IDS_CONFIRM_DEL_BOOKMARKS", "IDS_SUC_DEL_BOOKMARKS"};
    switch (dataClass) {
    case DataClass::Contacts:
        return contacts;
    case DataClass::Calls:
        return calls;
    case DataClass::Notes:
        return notes;
    case DataClass::Calendar:
        return calendar;
    default:
        return bookmarks;
    }
}

const QList<ClassFormat> &classFormats(DataClass dataClass)
{
    static const QList<ClassFormat> contacts{{"vcard", "IDS_FILTER_VCARD_FILES", "vcf"},
                                             {"csv", "IDS_FILTER_CSV_FILES", "csv"},
                                             {"text", "IDS_FILTER_TEXT_FILES", "txt"},
                                             {"html", "IDS_FILTER_HTML_FILES", "html"}};
    static const QList<ClassFormat> calls{{"text", "IDS_FILTER_TEXT_FILES", "txt"},
                                          {"csv", "IDS_FILTER_CSV_FILES", "csv"}};
    static const QList<ClassFormat> notes{{"html", "IDS_FILTER_HTML_FILES", nullptr}};
    static const QList<ClassFormat> calendar{{"ical", "IDS_FILTER_ICAL_FILES", "ics"},
                                             {"csv", "IDS_FILTER_CSV_FILES", "csv"}};
    static const QList<ClassFormat> bookmarks{{"html", "IDS_FILTER_HTML_FILES", "html"}};
    switch (dataClass) {
    case DataClass::Contacts:
        return contacts;
    case DataClass::Calls:
        return calls;
    case DataClass::Notes:
        return notes;
    case DataClass::Calendar:
        return calendar;
    default:
        return bookmarks;
    }
}
