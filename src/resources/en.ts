<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en_US">
<context>
    <name></name>
    <message>
        <source>IDS_PRODUCT_NAME</source>
        <translation>Quillbarrow</translation>
    </message>
    <message>
        <source>IDS_OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>IDS_CANCEL</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>IDS_YES</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>IDS_NO</source>
        <translation>No</translation>
    </message>
    <message>
        <source>IDS_ERROR_OCCURRED_%1_%2</source>
        <translation>An Error Occurred. &lt;br/&gt;&lt;br/&gt;%1&lt;br/&gt;&lt;br/&gt; Or you can contact %2 for help.</translation>
    </message>
    <message>
        <source>IDS_NEW_VERSION_OF_%1</source>
        <translation>A new version of %1 is available. To support your phone, please download the latest version.</translation>
    </message>
    <message>
        <source>IDS_VERSION_OBSOLETE</source>
        <translation>This version of Quillbarrow software has become obsolete. Please download the latest version to install on your computer.</translation>
    </message>
    <message>
        <source>IDS_DOWNLOAD_NOW</source>
        <translation>Download now</translation>
    </message>
    <message>
        <source>IDS_DOWNLOAD_LATER</source>
        <translation>Download later</translation>
    </message>
    <message>
        <source>IDS_DOWNLOAD</source>
        <translation>Download</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_CANCEL</source>
        <translation>Are You Sure You Want To Cancel?</translation>
    </message>
    <message>
        <source>IDS_PROGRESS_%1</source>
        <translation>Progress:%1%</translation>
    </message>
    <message>
        <source>IDS_ACC_PROGRESS</source>
        <translation>Progress</translation>
    </message>
    <message>
        <source>IDS_ABOUT_%1_SECONDS_LEFT</source>
        <translation>About %1 seconds left</translation>
    </message>
    <message>
        <source>IDS_ABOUT_%1_MINUTES_LEFT</source>
        <translation>About %1 minutes left</translation>
    </message>
    <message>
        <source>IDS_ABOUT_%1_HOURS_LEFT</source>
        <translation>About %1 hours left</translation>
    </message>
    <message>
        <source>IDS_OUT_OF_MEMORY</source>
        <translation>There is not enough memory for this. Please close other programs and try again.</translation>
    </message>
    <message>
        <source>IDS_OPEN_RESULT</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_ATTACHMENTS</source>
        <translation>Extracting MMS attachment now.Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXTRACTED_%1_ATTACHMENTS_TO_%2</source>
        <translation>Successfully extacted %1 MMS attachment to %2.</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_BOOKMARKS</source>
        <translation>Backing up Bookmarks now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_BOOKMARKS</source>
        <translation>Successfully backup %1 Bookmarks</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_CALENDAR_ITEMS</source>
        <translation>Backing up Calendar events now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_CALENDAR_ITEMS</source>
        <translation>Successfully backup %1 Calendar events.</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_CALLS</source>
        <translation>Backing up Call History now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_CALLS</source>
        <translation>Successfully backup %1 Call History</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_CONTACTS</source>
        <translation>Backing up contacts now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_CONTACTS</source>
        <translation>Successfully backup %1 contacts.</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_CONTACTS_MERGED_%2</source>
        <translation>Successfully backup %1 contacts with %2  merged.</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_MESSAGES</source>
        <translation>Backing up Messages now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_MESSAGES</source>
        <translation>Successfully backup %1 messages.</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_NOTES</source>
        <translation>Backing up Notes. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_BACKUP_%1_NOTES</source>
        <translation>Successfully backup %1 notes.</translation>
    </message>
    <message>
        <source>IDS_INITIATING_ITUNES</source>
        <translation>Initiating iTunes...</translation>
    </message>
    <message>
        <source>IDS_DELETING_MESSAGES</source>
        <translation>Deleting Messages...</translation>
    </message>
    <message>
        <source>IDS_SUC_DELETED_%1_MESSAGES</source>
        <translation>Successfully Deleted %1 Messages.</translation>
    </message>
    <message>
        <source>IDS_COPYING_FILE_%1</source>
        <translation>Copying file %1 now. Please wait.</translation>
    </message>
    <message>
        <source>IDS_EXPORTING_BOOKMARKS</source>
        <translation>Extracting Bookmarks now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXPORT_%1_BOOKMARKS</source>
        <translation>Successfully extracted %1 Bookmarks.</translation>
    </message>
    <message>
        <source>IDS_EXPORTING_CALENDAR_ITEMS</source>
        <translation>Extracting Calendar events now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXPORT_%1_CALENDAR_ITEMS</source>
        <translation>Successfully extracted %1 Calendar events.</translation>
    </message>
    <message>
        <source>IDS_SUC_EXPORT_%1_CALLS</source>
        <translation>Successfully extracted %1 Call history.</translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_MESSAGES</source>
        <translation>Extracting Messages now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXTRACTED_%1_MESSAGES</source>
        <translation>Successfully extracted %1 Messages.</translation>
    </message>
    <message>
        <source>IDS_EXPORTING_NOTES</source>
        <translation>Extracting Notes now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXPORT_%1_NOTES</source>
        <translation>Successfully extracted %1 Notes.</translation>
    </message>
    <message>
        <source>IDS_EXPORTING_CONTACTS_TO_FILE</source>
        <translation>Extracting Contacts now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXPORT_%1_CONTACTS_TO_FILE</source>
        <translation>Successfully extracted %1 Contacts.</translation>
    </message>
    <message>
        <source>IDS_SAVING_MESSAGES_TO_DEVICE</source>
        <translation>Saving SMS to iPhone...</translation>
    </message>
    <message>
        <source>IDS_LOADING_CALENDAR_ITEMS_FROM_DEVICE</source>
        <translation>Loading Calendar Events from iPhone...</translation>
    </message>
    <message>
        <source>IDS_BACKUPING_DEVICE</source>
        <translation>Backing up iPhone...</translation>
    </message>
    <message>
        <source>IDS_RESTORING_DEVICE</source>
        <translation>Restoring iPhone...</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_CALENDAR_ITEMS</source>
        <translation>Successfully restored %1 Calendar events to Device.</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_CALENDAR_ITEMS_MERGED_%2</source>
        <translation>Successfully restored %1 Calendar events with %2 merged.</translation>
    </message>
    <message>
        <source>IDS_LOADING_BACKUP</source>
        <translation>Loading iTunes Backup now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SAVING_%1</source>
        <translation>Saving %1...</translation>
    </message>
    <message>
        <source>IDS_SAVING_CACHE_FILES_%1</source>
        <translation>Saving cache files %1. Please wait...</translation>
    </message>
    <message>
        <source>IDS_LOADING_BOOKMARKS_FROM_DEVICE</source>
        <translation>Loading Bookmarks from Device. Please wait...</translation>
    </message>
    <message>
        <source>IDS_MERGING_BOOKMARKS</source>
        <translation>Merging Bookmarks now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_RESTORING_BOOKMARKS</source>
        <translation>Restoring Bookmarks to Device now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_BOOKMARKS</source>
        <translation>Successfully restored %1 Boobmarks to Device.</translation>
    </message>
    <message>
        <source>IDS_MERGING_CALLS</source>
        <translation>Merging Call History...</translation>
    </message>
    <message>
        <source>IDS_LOADING_CONTACTS_FROM_DEVICE</source>
        <translation>Loading Contacts from Device. Please wait...</translation>
    </message>
    <message>
        <source>IDS_MERGING_CONTACTS</source>
        <translation>Merging Contacts now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_CONTACTS</source>
        <translation>Successfully restored %1 Contacts.</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_CONTACTS_MERGED_%2</source>
        <translation>Successfully restored %1 Contacts with %2 merged.</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_NOTES</source>
        <translation>Successfully restored %1 Notes to Device.</translation>
    </message>
    <message>
        <source>IDS_SUC_RESTORED_%1_NOTES_MERGED_%2</source>
        <translation>Successfully restored %1 Notes with %2 merged.</translation>
    </message>
    <message>
        <source>IDS_UPDATING_LOCAL_DB_%1_MESSAGES</source>
        <translation>Updating local database %1 messages...</translation>
    </message>
    <message>
        <source>IDS_UPDATING_LOCAL_DB_%1_CALENDAR_ITEMS</source>
        <translation>Updating local database %1 calendar events...</translation>
    </message>
    <message>
        <source>IDS_NO_MESSAGE_DB_IN_BACKUP</source>
        <translation>Found no message database file in this iTunes backup.</translation>
    </message>
    <message>
        <source>IDS_NO_CALLS_TO_RESTORE</source>
        <translation>Find no Call History to restore.</translation>
    </message>
    <message>
        <source>IDS_NO_CALENDAR_ON_DEVICE</source>
        <translation>No Calendar on iPhone. Please create one first.</translation>
    </message>
    <message>
        <source>IDS_NO_MESSAGE_TO_RECOVER_%1</source>
        <translation>No message for recovering. Only found %1 messages with unknown contact info. Please right click the messages to set contact info first and try again</translation>
    </message>
    <message>
        <source>IDS_ROOT_BK</source>
        <translation>iTunes Backup</translation>
    </message>
    <message>
        <source>IDS_ROOT_LOCALDB</source>
        <translation>Local Database</translation>
    </message>
    <message>
        <source>IDS_MI_MENU</source>
        <translation>Menu</translation>
    </message>
    <message>
        <source>IDS_MI_LOAD_BACKUP</source>
        <translation>Load iTunes Backup</translation>
    </message>
    <message>
        <source>IDS_MI_OPEN_LOCAL_DB_FOLDER</source>
        <translation>Open Database Folder</translation>
    </message>
    <message>
        <source>IDS_MI_EXIT</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>IDS_MI_TOOLS</source>
        <translation>Tools</translation>
    </message>
    <message>
        <source>IDS_MI_CHECK_UPDATE</source>
        <translation>Check for Update</translation>
    </message>
    <message>
        <source>IDS_MI_REGISTER</source>
        <translation>Registration</translation>
    </message>
    <message>
        <source>IDS_MI_CLEAR_CACHES</source>
        <translation>Clear Cache files</translation>
    </message>
    <message>
        <source>IDS_MI_HELP</source>
        <translation>Help</translation>
    </message>
    <message>
        <source>IDS_MI_FEEDBACKUP</source>
        <translation>Feedback and Support</translation>
    </message>
    <message>
        <source>IDS_MI_ABOUT_US</source>
        <translation>About</translation>
    </message>
    <message>
        <source>IDS_MI_HOME</source>
        <translation>Homepage</translation>
    </message>
    <message>
        <source>IDS_MI_UNMOUNT_BACKUP</source>
        <translation>Unlist this iTunes Backup</translation>
    </message>
    <message>
        <source>IDS_MI_REMVOE_LOCALDB</source>
        <translation>Delete local Database</translation>
    </message>
    <message>
        <source>IDS_CLEAR_CACHES_SUC</source>
        <translation>Successfully cleared cache files.</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_CLEAR_CACHES_%1</source>
        <translation>Clear the cache files of all backups? This frees %1. The backups themselves stay as they are.</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_CLEAR_CACHE_OF_BACKUP_%1</source>
        <translation>Clear the cache files of this backup? This frees %1. The backup itself stays as it is.</translation>
    </message>
    <message>
        <source>IDS_CLEARING_CACHES</source>
        <translation>Clearing cache files. Please wait...</translation>
    </message>
    <message>
        <source>IDS_MI_CLEAR_CACHE_OF_BACKUP</source>
        <translation>Clear Cache files of this Backup</translation>
    </message>
    <message>
        <source>IDS_MI_CACHE_MESSAGES</source>
        <translation>Keep Messages in the Cache</translation>
    </message>
    <message>
        <source>IDS_CACHE_MESSAGES_HINT</source>
        <translation>Copies the messages with all their pictures to this computer, for a backup on a slow disk.</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_REMOVE_LOCAL_DB_%1_%2</source>
        <translation>Delete the local database “%1” with all that it holds? It holds: %2. It goes to the trash, or for good where the desktop has none.</translation>
    </message>
    <message>
        <source>IDS_REMOVE_LOCALDB_SUC</source>
        <translation>Successfully deleted local Database.</translation>
    </message>
    <message>
        <source>IDS_CANT_DEL_LOCAL_DB</source>
        <translation>Failed to delete local Database.</translation>
    </message>
    <message>
        <source>IDS_SELECT_BACKUP</source>
        <translation>Please select an iTunes Backup to load.</translation>
    </message>
    <message>
        <source>IDS_ADD_OTHER_BACKUP</source>
        <translation>Can't find your iTunes Backup on the list? Please manually import it by clicking &lt;a href="#"&gt;HERE&lt;/a&gt;.</translation>
    </message>
    <message>
        <source>IDS_LOAD</source>
        <translation>Load</translation>
    </message>
    <message>
        <source>IDS_NEED_SELECT_BACKUP</source>
        <translation>Need to select an iTunes Backup to continue.</translation>
    </message>
    <message>
        <source>IDS_BACKUP_FOLDER_MISSING</source>
        <translation>folder not found</translation>
    </message>
    <message>
        <source>IDS_BACKUP_NOT_READABLE</source>
        <translation>cannot be read</translation>
    </message>
    <message>
        <source>IDS_BACKUP_ALREADY_LISTED</source>
        <translation>This iTunes Backup has been listed on the left.</translation>
    </message>
    <message>
        <source>IDS_BK_DEVICE</source>
        <translation>&lt;b style="font-style:italic;"&gt;Device:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_IOS_VERSION</source>
        <translation>&lt;b style="font-style:italic;"&gt;IOS Version:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_SERIAL</source>
        <translation>&lt;b style="font-style:italic;"&gt;Serial:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_DEVICE_ID</source>
        <translation>&lt;b style="font-style:italic;"&gt;Device ID:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_DATE</source>
        <translation>&lt;b style="font-style:italic;"&gt;Backup Date:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_STATUS</source>
        <translation>&lt;b style="font-style:italic;"&gt;Status:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_PATH</source>
        <translation>&lt;b style="font-style:italic;"&gt;Path:&lt;/b&gt;</translation>
    </message>
    <message>
        <source>IDS_BK_ENCRYPTED</source>
        <translation>Encrypted</translation>
    </message>
    <message>
        <source>IDS_BK_NORMAL</source>
        <translation>Normal</translation>
    </message>
    <message>
        <source>IDS_LOADING_DATA_FROM_DEVICE</source>
        <translation>Loading data from Device...</translation>
    </message>
    <message>
        <source>IDS_CANT_COPY_ITUNES_%1</source>
        <translation>Can not copy iTunes files. %1</translation>
    </message>
    <message>
        <source>IDS_BACKUP_ENCRYPTED_PROMPT</source>
        <translation>This iTunes Backup is encrypted. Please enter password:</translation>
    </message>
    <message>
        <source>IDS_ENTER_PASSWORD</source>
        <translation>Enter password</translation>
    </message>
    <message>
        <source>IDS_PASSWORD_REQUIRED</source>
        <translation>Password is required.</translation>
    </message>
    <message>
        <source>IDS_INVALID_PASSWORD</source>
        <translation>Invalid password.</translation>
    </message>
    <message>
        <source>IDS_%1_IN_%2</source>
        <translation>%1 in %2</translation>
    </message>
    <message>
        <source>IDS_NO_CONVERSATION</source>
        <translation>No conversation</translation>
    </message>
    <message numerus="yes">
        <source>IDS_CONVERSATION_COUNT</source>
        <translation>
            <numerusform>%Ln conversation</numerusform>
            <numerusform>%Ln conversations</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_FILE_COUNT</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_%1_MATCHES</source>
        <translation>%1 found</translation>
    </message>
    <message numerus="yes">
        <source>IDS_MESSAGE_COUNT</source>
        <translation>
            <numerusform>%Ln message</numerusform>
            <numerusform>%Ln messages</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_%1_SELECTED_%2</source>
        <translation>%1, %2 selected</translation>
    </message>
    <message>
        <source>IDS_ABOUT_TEXT</source>
        <translation>Opens the backups that iTunes and Finder make of iPhones and iPads, shows what is in them and copies it out. Reading a backup never changes its files; while an encrypted one is opened, a decrypted copy of its list of files lies beside them.&lt;br/&gt;&lt;br/&gt;Free software under the GNU General Public License, version 3 or later.</translation>
    </message>
    <message>
        <source>IDS_ACC_EXPORT_TARGET</source>
        <translation>Where the export goes</translation>
    </message>
    <message>
        <source>IDS_ACC_FIRST_DAY</source>
        <translation>First day</translation>
    </message>
    <message>
        <source>IDS_ACC_LAST_DAY</source>
        <translation>Last day</translation>
    </message>
    <message>
        <source>IDS_ACC_SOURCES</source>
        <translation>Backups and local databases</translation>
    </message>
    <message>
        <source>IDS_AND_%1_MORE</source>
        <translation>and %1 more</translation>
    </message>
    <message>
        <source>IDS_BROWSE</source>
        <translation>Browse...</translation>
    </message>
    <message numerus="yes">
        <source>IDS_CHECKING_PASSWORD_SECONDS</source>
        <translation>
            <numerusform>Checking the password: about %n second left</numerusform>
            <numerusform>Checking the password: about %n seconds left</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_CHECKING_PASSWORD</source>
        <translation>Checking the password...</translation>
    </message>
    <message>
        <source>IDS_CHOOSE_BACKUP_FOLDER</source>
        <translation>Choose the folder of an iTunes Backup</translation>
    </message>
    <message>
        <source>IDS_COL_CONVERSATION</source>
        <translation>Conversation</translation>
    </message>
    <message>
        <source>IDS_COL_FOLDER</source>
        <translation>Folder</translation>
    </message>
    <message>
        <source>IDS_COL_LAST</source>
        <translation>Last</translation>
    </message>
    <message>
        <source>IDS_COL_MESSAGES</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>IDS_COL_MODIFIED</source>
        <translation>Modified</translation>
    </message>
    <message>
        <source>IDS_COL_NAME</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>IDS_COL_SIZE</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>IDS_COMMAND_LINE_LINK</source>
        <translation>Quillbarrow for the command line</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_REPLACE_%1</source>
        <translation>%1 exists already. Do you want to replace it?</translation>
    </message>
    <message>
        <source>IDS_EXPORT</source>
        <translation>Export</translation>
    </message>
    <message numerus="yes">
        <source>IDS_EXPORT_ITEMS</source>
        <translation>
            <numerusform>Export %Ln item</numerusform>
            <numerusform>Export %Ln items</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_EXPORT_%1</source>
        <translation>Export %1</translation>
    </message>
    <message>
        <source>IDS_SAVE_%1</source>
        <translation>Save %1</translation>
    </message>
    <message>
        <source>IDS_DELETE_%1</source>
        <translation>Delete %1</translation>
    </message>
    <message>
        <source>IDS_PRINT_%1</source>
        <translation>Print %1</translation>
    </message>
    <message>
        <source>IDS_SAVE_ATTACHMENTS</source>
        <translation>Save attachments</translation>
    </message>
    <message>
        <source>IDS_SAVE_ATTACHMENTS_OF_%1</source>
        <translation>Save the attachments of %1</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_MESSAGES</source>
        <translation>Confirm to delete selected messages?</translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGES_OF_NO_CHAT</source>
        <translation>
            <numerusform>%n message of no conversation is left out</numerusform>
            <numerusform>%n messages of no conversation are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EQUAL_MESSAGES</source>
        <translation>
            <numerusform>%n message is equal to another in text, second, sender and direction and was stored once</numerusform>
            <numerusform>%n messages are equal to others in text, second, sender and direction and were stored once</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CHANGED_MESSAGES</source>
        <translation>
            <numerusform>%n message is there already with other content, which was kept (an update takes what is newer)</numerusform>
            <numerusform>%n messages are there already with other content, which was kept (an update takes what is newer)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_UPDATED_MESSAGES</source>
        <translation>
            <numerusform>%n message got the content of a newer version, and its former text is kept as its history</numerusform>
            <numerusform>%n messages got the content of a newer version, and their former text is kept as their history</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGES_THERE_ALREADY</source>
        <translation>
            <numerusform>%n message was there already</numerusform>
            <numerusform>%n messages were there already</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGE_DATABASE</source>
        <translation>
            <numerusform>%n message database is damaged, and only a part of it can be read: %1 (%2)</numerusform>
            <numerusform>%n message databases are damaged, and only a part of them can be read: %1 (%2)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGE_LISTINGS</source>
        <translation>
            <numerusform>%n table of %1 cannot be read to its end: %2</numerusform>
            <numerusform>%n tables of %1 cannot be read to their end: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGE_ROWS</source>
        <translation>
            <numerusform>%n row of %1 cannot be read</numerusform>
            <numerusform>%n rows of %1 cannot be read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGES_OF_MISSING_CHATS</source>
        <translation>
            <numerusform>%n message of %1 stands in a conversation that is missing</numerusform>
            <numerusform>%n messages of %1 stand in a conversation that is missing</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENT_ROWS</source>
        <translation>
            <numerusform>%n attachment of a message in %1 is not described there</numerusform>
            <numerusform>%n attachments of messages in %1 are not described there</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGE_DATES</source>
        <translation>
            <numerusform>%n message of %1 has a date that is none</numerusform>
            <numerusform>%n messages of %1 have a date that is none</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MESSAGE_BODIES</source>
        <translation>
            <numerusform>%n message of %1 has a text that is stored in a form that cannot be read</numerusform>
            <numerusform>%n messages of %1 have a text that is stored in a form that cannot be read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENT_LISTS</source>
        <translation>
            <numerusform>%n message of %1 has a list of attachments that cannot be read</numerusform>
            <numerusform>%n messages of %1 have a list of attachments that cannot be read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PARTICIPANT_LISTS</source>
        <translation>
            <numerusform>%n conversation of %1 has a list of participants that cannot be read</numerusform>
            <numerusform>%n conversations of %1 have a list of participants that cannot be read</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PARTS_NOT_WRITTEN</source>
        <translation>
            <numerusform>%n part of the messages in %1 cannot be unpacked: %2</numerusform>
            <numerusform>%n parts of the messages in %1 cannot be unpacked: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MISSING_TABLE</source>
        <translation>
            <numerusform>%n table is missing in %1: %2</numerusform>
            <numerusform>%n tables are missing in %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_MISSING_COLUMN</source>
        <translation>
            <numerusform>%n column is missing in %1: %2</numerusform>
            <numerusform>%n columns are missing in %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENTS_ABSENT</source>
        <translation>
            <numerusform>%n attachment is not in the backup: %1</numerusform>
            <numerusform>%n attachments are not in the backup: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENTS_LOST</source>
        <translation>
            <numerusform>%n attachment is listed by the backup, which has lost its content: %1</numerusform>
            <numerusform>%n attachments are listed by the backup, which has lost their content: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENTS_LOCKED</source>
        <translation>
            <numerusform>%n attachment stays encrypted, because the password does not unlock it: %1</numerusform>
            <numerusform>%n attachments stay encrypted, because the password does not unlock them: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENTS_NOT_READ</source>
        <translation>
            <numerusform>%n attachment cannot be read: %1 (%2)</numerusform>
            <numerusform>%n attachments cannot be read: %1 (%2)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_MESSAGES_WRITTEN</source>
        <translation>
            <numerusform>%n message written</numerusform>
            <numerusform>%n messages written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_WRITTEN_FILES</source>
        <translation>
            <numerusform>%n file</numerusform>
            <numerusform>%n files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_WRITTEN_ATTACHMENTS</source>
        <translation>
            <numerusform>%n attachment</numerusform>
            <numerusform>%n attachments</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_CONTACTS_WRITTEN</source>
        <translation>
            <numerusform>%n contact written</numerusform>
            <numerusform>%n contacts written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_CALLS_WRITTEN</source>
        <translation>
            <numerusform>%n call written</numerusform>
            <numerusform>%n calls written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_NOTES_WRITTEN</source>
        <translation>
            <numerusform>%n note written</numerusform>
            <numerusform>%n notes written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_EVENTS_WRITTEN</source>
        <translation>
            <numerusform>%n event written</numerusform>
            <numerusform>%n events written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_BOOKMARKS_WRITTEN</source>
        <translation>
            <numerusform>%n bookmark written</numerusform>
            <numerusform>%n bookmarks written</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTACHMENTS_NOT_WRITTEN</source>
        <translation>
            <numerusform>%n attachment could not be written: %1 (%2)</numerusform>
            <numerusform>%n attachments could not be written: %1 (%2)</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_NO_MESSAGES_HERE</source>
        <translation>There are no messages here.</translation>
    </message>
    <message>
        <source>IDS_SEARCHING</source>
        <translation>Searching...</translation>
    </message>
    <message>
        <source>IDS_OPENED_WITH_DAMAGE</source>
        <translation>The backup is open, but not all of it can be read.</translation>
    </message>
    <message>
        <source>IDS_SHOW_THEM</source>
        <translation>Show them</translation>
    </message>
    <message>
        <source>IDS_HIDE_THEM</source>
        <translation>Hide them</translation>
    </message>
    <message>
        <source>IDS_EVERYTHING_IS_SHOWN</source>
        <translation>What is usually left out stands in the list too.</translation>
    </message>
    <message>
        <source>IDS_DETAILS</source>
        <translation>Details</translation>
    </message>
    <message>
        <source>IDS_OPEN_MESSAGE_FILE</source>
        <translation>Messages of a Mac, or a message database by itself? Open chat.db or sms.db by clicking &lt;a href="#"&gt;HERE&lt;/a&gt;.</translation>
    </message>
    <message>
        <source>IDS_CHOOSE_MESSAGE_FILE</source>
        <translation>Choose a message database</translation>
    </message>
    <message>
        <source>IDS_FILTER_MESSAGE_FILES</source>
        <translation>Message databases(*.db);;All Files(*)</translation>
    </message>
    <message>
        <source>IDS_PREPARING_MESSAGES</source>
        <translation>Backing up Messages...</translation>
    </message>
    <message>
        <source>IDS_PRINTING_MESSAGES</source>
        <translation>Printing Messages now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_PRINTED_%1_MESSAGES</source>
        <translation>Successfully printed %1 Messages.</translation>
    </message>
    <message>
        <source>IDS_EXPORT_INTO_FILE</source>
        <translation>Save as this file:</translation>
    </message>
    <message>
        <source>IDS_EXPORT_INTO_FOLDER</source>
        <translation>Save into this folder:</translation>
    </message>
    <message>
        <source>IDS_EXPORT_NEEDS_TARGET</source>
        <translation>Please choose where the export goes.</translation>
    </message>
    <message>
        <source>IDS_EXPORT_TARGET_IS_FOLDER</source>
        <translation>There is a folder of this name. Please choose a file name.</translation>
    </message>
    <message>
        <source>IDS_FILE_SYSTEM</source>
        <translation>File System</translation>
    </message>
    <message>
        <source>IDS_FILTER_CONVERSATIONS</source>
        <translation>Filter names, numbers and messages</translation>
    </message>
    <message>
        <source>IDS_FILTER_FILES</source>
        <translation>Filter by name</translation>
    </message>
    <message>
        <source>IDS_FORMAT_CSV</source>
        <translation>Table (CSV)</translation>
    </message>
    <message>
        <source>IDS_FORMAT_CSV_HINT</source>
        <translation>One line a message, for a spreadsheet.</translation>
    </message>
    <message>
        <source>IDS_FORMAT_DATABASE</source>
        <translation>Message database</translation>
    </message>
    <message>
        <source>IDS_FORMAT_DATABASE_HINT</source>
        <translation>Everything, attachments too, to be opened with Quillbarrow again.</translation>
    </message>
    <message>
        <source>IDS_FORMAT_HTML</source>
        <translation>Web pages (HTML)</translation>
    </message>
    <message>
        <source>IDS_FORMAT_HTML_HINT</source>
        <translation>One page a conversation, with pictures. Opens in any browser.</translation>
    </message>
    <message>
        <source>IDS_FORMAT_PDF</source>
        <translation>Documents (PDF)</translation>
    </message>
    <message>
        <source>IDS_FORMAT_PDF_HINT</source>
        <translation>One document a conversation, with pictures, to print or to hand on.</translation>
    </message>
    <message>
        <source>IDS_FORMAT_TEXT</source>
        <translation>Plain text</translation>
    </message>
    <message>
        <source>IDS_FORMAT_TEXT_HINT</source>
        <translation>All messages in one file, in the order of their dates.</translation>
    </message>
    <message>
        <source>IDS_IOS_%1</source>
        <translation>iOS %1</translation>
    </message>
    <message>
        <source>IDS_WINDOW_USAGE</source>
        <translation>Usage: quillbarrow [OPTION]

Opens the window in which the backups of iPhones and iPads are looked at and copied out.

  -h, --help     print this help and end
  -v, --version  print the version and end

What the window does, quillbarrow-cli does without one: see quillbarrow-cli --help.</translation>
    </message>
    <message>
        <source>IDS_UNKNOWN_ARGUMENT_%1</source>
        <translation>quillbarrow: %1 is no option. See quillbarrow --help.</translation>
    </message>
    <message>
        <source>IDS_STATUS_LOCKED</source>
        <translation>Locked. Click or press Enter to open it with its password.</translation>
    </message>
    <message>
        <source>IDS_LOADING_MESSAGES</source>
        <translation>Loading messages...</translation>
    </message>
    <message numerus="yes">
        <source>IDS_INCOMPLETE_FILES</source>
        <translation>
            <numerusform>%n file of the backup is incomplete, and is copied as far as it goes:</numerusform>
            <numerusform>%n files of the backup are incomplete, and are copied as far as they go:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_LOCKED_FILES</source>
        <translation>
            <numerusform>%n file stays encrypted, since the password does not unlock it, and is copied as it is stored:</numerusform>
            <numerusform>%n files stay encrypted, since the password does not unlock them, and are copied as they are stored:</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_MAKE_SAMPLE</source>
        <translation>Make a sample backup</translation>
    </message>
    <message>
        <source>IDS_MAKING_SAMPLE</source>
        <translation>Making a sample backup...</translation>
    </message>
    <message>
        <source>IDS_MESSAGES</source>
        <translation>Messages</translation>
    </message>
    <message>
        <source>IDS_MESSAGES_FAILED</source>
        <translation>The messages could not be loaded.</translation>
    </message>
    <message>
        <source>IDS_NEWEST_MESSAGES</source>
        <translation>Newest messages</translation>
    </message>
    <message>
        <source>IDS_NODE_SMS_%1</source>
        <translation>SMS(%1)</translation>
    </message>
    <message>
        <source>IDS_NOTHING_MATCHES</source>
        <translation>Nothing matches.</translation>
    </message>
    <message>
        <source>IDS_NO_BACKUP_FOUND</source>
        <translation>No iTunes Backup was found.</translation>
    </message>
    <message>
        <source>IDS_NO_OTHER_BACKUP_FOUND</source>
        <translation>No other iTunes Backup was found.</translation>
    </message>
    <message>
        <source>IDS_NO_BACKUP_FOUND_HINT</source>
        <translation>If yours lies in another place, such as an external disk, import it by its folder. To see what Quillbarrow does, make a sample backup with invented people.</translation>
    </message>
    <message>
        <source>IDS_NO_BACKUP_IN_FOLDER</source>
        <translation>There is no iTunes Backup in this folder.</translation>
    </message>
    <message>
        <source>IDS_NO_FILES</source>
        <translation>This backup holds no files.</translation>
    </message>
    <message>
        <source>IDS_NO_FILES_HINT</source>
        <translation>Its list of files is empty. The backup may not have been finished.</translation>
    </message>
    <message>
        <source>IDS_NO_FILE_NAMED_%1</source>
        <translation>No file has "%1" in its name.</translation>
    </message>
    <message>
        <source>IDS_NO_MESSAGES</source>
        <translation>There are no messages in this backup.</translation>
    </message>
    <message>
        <source>IDS_NO_MESSAGES_HINT</source>
        <translation>Messages that are kept in iCloud are not part of a backup.</translation>
    </message>
    <message>
        <source>IDS_ONLY_FROM</source>
        <translation>Only from</translation>
    </message>
    <message>
        <source>IDS_RANGE_TO</source>
        <translation>to</translation>
    </message>
    <message>
        <source>IDS_PRINT</source>
        <translation>Print</translation>
    </message>
    <message>
        <source>IDS_RELOAD</source>
        <translation>Reload</translation>
    </message>
    <message>
        <source>IDS_SAMPLE_FOLDER_NAME</source>
        <translation>Sample backup</translation>
    </message>
    <message>
        <source>IDS_SAVE_TO_DATABASE</source>
        <translation>Save to Database</translation>
    </message>
    <message>
        <source>IDS_SEARCH</source>
        <translation>Search</translation>
    </message>
    <message>
        <source>IDS_SELECT_CONVERSATION</source>
        <translation>Select a conversation.</translation>
    </message>
    <message>
        <source>IDS_SHOW_ALL_FILES</source>
        <translation>Show all files</translation>
    </message>
    <message>
        <source>IDS_SHOW_PASSWORD</source>
        <translation>Show password</translation>
    </message>
    <message>
        <source>IDS_START_HINT</source>
        <translation>Load a backup to look at its messages and files. Quillbarrow reads backups and never changes them.</translation>
    </message>
    <message>
        <source>IDS_START_TITLE</source>
        <translation>What would you like to look at?</translation>
    </message>
    <message>
        <source>IDS_TOOL_BAR</source>
        <translation>Tool bar</translation>
    </message>
    <message>
        <source>IDS_TRY_AGAIN</source>
        <translation>Try again</translation>
    </message>
    <message>
        <source>IDS_UNKNOWN_SENDER</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>IDS_WHY_LOADING</source>
        <translation>The messages are still being loaded.</translation>
    </message>
    <message>
        <source>IDS_WHY_NOTHING_TO_EXPORT</source>
        <translation>Select messages or files of a backup first.</translation>
    </message>
    <message>
        <source>IDS_WHY_NOTHING_TO_SEARCH</source>
        <translation>There is nothing to search here.</translation>
    </message>
    <message>
        <source>IDS_WHY_NO_PRINT</source>
        <translation>Select messages first.</translation>
    </message>
    <message>
        <source>IDS_WHY_NO_REGISTRATION</source>
        <translation>Quillbarrow is free and needs no registration.</translation>
    </message>
    <message>
        <source>IDS_WHY_NO_SAVE</source>
        <translation>Select data of a backup first.</translation>
    </message>
    <message>
        <source>IDS_WHY_NO_UPDATE_CHECK</source>
        <translation>This version does not look for updates.</translation>
    </message>
    <message>
        <source>IDS_WHY_SELECT_CONVERSATIONS</source>
        <translation>Select one or more conversations first.</translation>
    </message>
    <message>
        <source>IDS_WHY_SELECT_FILES</source>
        <translation>Select one or more files first.</translation>
    </message>
    <message>
        <source>IDS_SUC_EXTRACTED_%1_FILES</source>
        <translation>Successfully extracted %1 files.</translation>
    </message>
    <message numerus="yes">
        <source>IDS_WITHOUT_FILE</source>
        <translation>
            <numerusform>%n has no file in this backup:</numerusform>
            <numerusform>%n have no file in this backup:</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_FILES</source>
        <translation>Extracting files. Please wait...</translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_NOW</source>
        <translation>Extracting now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_RECORDING</source>
        <translation>Extracting Recording now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_EXTRACTING_VOICEMAIL</source>
        <translation>Extracting Voicemail now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SUC_EXTRACTED_%1_RECORDINGS</source>
        <translation>Successfully extracted %1 Recordings.</translation>
    </message>
    <message>
        <source>IDS_SUC_EXTRACTED_%1_VOICEMAIL</source>
        <translation>Successfully extracted %1 Voicemail.</translation>
    </message>
    <message>
        <source>IDS_CANT_FIND_ITEM_%1</source>
        <translation>Can't find %1.</translation>
    </message>
    <message>
        <source>IDS_NO_RECORDING_FILE</source>
        <translation>The recording file is not existed.</translation>
    </message>
    <message>
        <source>IDS_NO_VOICEMAIL_FILE</source>
        <translation>This Voicemail does not exist.</translation>
    </message>
    <message>
        <source>IDS_NOT_OPENED_%1</source>
        <translation>“%1” is not opened from here, since it is no picture, sound or film by its name. Export it to look at it with a program of your choice.</translation>
    </message>
    <message>
        <source>IDS_TOO_LARGE_FILE</source>
        <translation>Too large file. Please open it yourself after extracting.</translation>
    </message>
    <message>
        <source>IDS_TOTAL_%1</source>
        <translation>Total:%1</translation>
    </message>
    <message>
        <source>IDS_NODE_PHOTOS_%1</source>
        <translation>Photos(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_VIDEOS_%1</source>
        <translation>Videos(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_VOICEMAIL_%1</source>
        <translation>Voicemail(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_RECORDINGS_%1</source>
        <translation>Recordings(%1)</translation>
    </message>
    <message>
        <source>IDS_VOICEMAIL</source>
        <translation>Voicemail</translation>
    </message>
    <message>
        <source>IDS_RECORDINGS</source>
        <translation>Recordings</translation>
    </message>
    <message>
        <source>IDS_FILTER_VOICEMAIL</source>
        <translation>Filter by number, name or date</translation>
    </message>
    <message>
        <source>IDS_FILTER_RECORDINGS</source>
        <translation>Filter by date or file</translation>
    </message>
    <message>
        <source>IDS_NO_VOICEMAIL</source>
        <translation>There is no voicemail in this backup.</translation>
    </message>
    <message>
        <source>IDS_NO_RECORDINGS</source>
        <translation>There are no recordings in this backup.</translation>
    </message>
    <message>
        <source>IDS_NO_SOUNDS_HINT</source>
        <translation>The device had none when it was backed up.</translation>
    </message>
    <message>
        <source>IDS_SOUNDS_FAILED</source>
        <translation>The list could not be loaded.</translation>
    </message>
    <message>
        <source>IDS_OPEN_ITEM</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>IDS_WHY_SELECT_ONE</source>
        <translation>Select one first.</translation>
    </message>
    <message>
        <source>IDS_PLAY</source>
        <translation>Play</translation>
    </message>
    <message>
        <source>IDS_PAUSE</source>
        <translation>Pause</translation>
    </message>
    <message>
        <source>IDS_ACC_POSITION</source>
        <translation>Position</translation>
    </message>
    <message>
        <source>IDS_CANT_PLAY</source>
        <translation>This sound cannot be played here. Press Enter to open it with another program.</translation>
    </message>
    <message>
        <source>IDS_UNKNOWN_CALLER</source>
        <translation>Unknown caller</translation>
    </message>
    <message>
        <source>IDS_COL_SENDER</source>
        <translation>Sender</translation>
    </message>
    <message>
        <source>IDS_COL_FILE</source>
        <translation>File</translation>
    </message>
    <message>
        <source>IDS_NOT_IN_BACKUP</source>
        <translation>not in this backup</translation>
    </message>
    <message>
        <source>IDS_PHOTOS</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>IDS_VIDEOS</source>
        <translation>Videos</translation>
    </message>
    <message>
        <source>IDS_PICTURE_SIZE</source>
        <translation>Size</translation>
    </message>
    <message>
        <source>IDS_NO_PHOTOS</source>
        <translation>There are no photos in this backup.</translation>
    </message>
    <message>
        <source>IDS_NO_VIDEOS</source>
        <translation>There are no videos in this backup.</translation>
    </message>
    <message>
        <source>IDS_NO_PHOTOS_HINT</source>
        <translation>The device had none when it was backed up, or it keeps them in iCloud.</translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CATALOGUE_DAMAGED</source>
        <translation>
            <numerusform>%n list of files, %1, is damaged, and entries of it may be missing: %2</numerusform>
            <numerusform>%n lists of files, %1, are damaged, and entries of them may be missing: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CATALOGUE_ROWS_DAMAGED</source>
        <translation>
            <numerusform>%n entry of %1 cannot be read and is left out. %2</numerusform>
            <numerusform>%n entries of %1 cannot be read and are left out. %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ENTRIES_WITHOUT_DOMAIN</source>
        <translation>
            <numerusform>%n entry of %1 names no domain for its file and is left out</numerusform>
            <numerusform>%n entries of %1 name no domain for their files and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILE_RECORDS_DAMAGED</source>
        <translation>
            <numerusform>%n entry of %1 is damaged: of its file nothing but the name is known</numerusform>
            <numerusform>%n entries of %1 are damaged: of their files nothing but the names are known</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PATHS_TOO_LONG</source>
        <translation>
            <numerusform>%n entry of %1 is left out, since its path is longer or deeper than any device allows</numerusform>
            <numerusform>%n entries of %1 are left out, since their paths are longer or deeper than any device allows</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_DATABASE_LOG</source>
        <translation>
            <numerusform>%n log of a database, %1, cannot be read whole, and the last changes of the database are missing: %2</numerusform>
            <numerusform>%n logs of databases, %1, cannot be read whole, and the last changes of the databases are missing: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BACKUP_UNREADABLE</source>
        <translation>
            <numerusform>%n backup cannot be read: %1: %2</numerusform>
            <numerusform>%n backups cannot be read: %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_DESCRIPTION_DAMAGED</source>
        <translation>
            <numerusform>%n file that describes the backup is damaged, and what it says is missing: %1</numerusform>
            <numerusform>%n files that describe the backup are damaged, and what they say is missing: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_FAILED</source>
        <translation>
            <numerusform>%n file cannot be copied: %1: %2</numerusform>
            <numerusform>%n files cannot be copied: %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_CUT_OFF</source>
        <translation>
            <numerusform>%n file of the backup is incomplete, and only its beginning can be had: %1 (%2)</numerusform>
            <numerusform>%n files of the backup are incomplete, and only their beginnings can be had: %1 (%2)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_LOCKED</source>
        <translation>
            <numerusform>%n file stays encrypted, since the password does not unlock it, and is copied as it is stored: %1</numerusform>
            <numerusform>%n files stay encrypted, since the password does not unlock them, and are copied as they are stored: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_RENAMED</source>
        <translation>
            <numerusform>%n file gets another name: %1 is written as %2</numerusform>
            <numerusform>%n files get another name: %1 are written as %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_LINKS_LEFT_OUT</source>
        <translation>
            <numerusform>%n symbolic link is not made: %1</numerusform>
            <numerusform>%n symbolic links are not made: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_REPLACED</source>
        <translation>
            <numerusform>%n file that was there with other content was replaced: %1</numerusform>
            <numerusform>%n files that were there with other content were replaced: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FILES_THERE</source>
        <translation>
            <numerusform>%n file was there already</numerusform>
            <numerusform>%n files were there already</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_FILES_EXTRACTED</source>
        <translation>
            <numerusform>%n file extracted</numerusform>
            <numerusform>%n files extracted</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_WERE_THERE</source>
        <translation>
            <numerusform>%n was there already</numerusform>
            <numerusform>%n were there already</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_FAILED_FILES</source>
        <translation>
            <numerusform>%n file could not be copied:</numerusform>
            <numerusform>%n files could not be copied:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_SKIPPED_FILES</source>
        <translation>
            <numerusform>%n symbolic link is not made:</numerusform>
            <numerusform>%n symbolic links are not made:</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_RENAMED_FILES</source>
        <translation>
            <numerusform>%n file got another name:</numerusform>
            <numerusform>%n files got other names:</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_FILTER_TEXT_FILES</source>
        <translation>Text Files(*.txt)</translation>
    </message>
    <message>
        <source>IDS_FILTER_CSV_FILES</source>
        <translation>CSV Files(*.csv)</translation>
    </message>
    <message>
        <source>IDS_FILTER_PDF_FILES</source>
        <translation>PDF Files(*.pdf)</translation>
    </message>
    <message>
        <source>IDS_FILTER_HTML_FILES</source>
        <translation>HTML Files(*.html)</translation>
    </message>
    <message>
        <source>IDS_YOU</source>
        <translation>You</translation>
    </message>
    <message>
        <source>IDS_SYS_REMOVED_%1_%2_%3</source>
        <translation>%1 Removed %2 from the conversation.
%3</translation>
    </message>
    <message>
        <source>IDS_UPDATE_CHANGED_MESSAGES</source>
        <translation>&amp;Take the newer version of messages that have changed</translation>
    </message>
    <message>
        <source>IDS_UPDATE_CHANGED_MESSAGES_TIP</source>
        <translation>What such a message said before is kept as its history.</translation>
    </message>
    <message>
        <source>IDS_SYS_ADDED_%1_%2_%3</source>
        <translation>%1 Added %2 to the conversation.
%3</translation>
    </message>
    <message>
        <source>IDS_SYS_NAMED_%1_%2_%3</source>
        <translation>%1 named the conversation "%2".
%3</translation>
    </message>
    <message>
        <source>IDS_SYS_LEFT_%1_%2</source>
        <translation>%1 left the conversation.
%2</translation>
    </message>
    <message>
        <source>IDS_SYS_LOCATION_%1_%2_%3_%4</source>
        <translation>%1 %2 sharing location with %3.
%4</translation>
    </message>
    <message>
        <source>IDS_SYS_LOCATION_STARTED</source>
        <translation>started</translation>
    </message>
    <message>
        <source>IDS_SYS_LOCATION_STOPPED</source>
        <translation>stopped</translation>
    </message>
    <message>
        <source>IDS_SYS_INFORMATION_%1</source>
        <translation>System Information.
%1</translation>
    </message>
    <message>
        <source>IDS_PREVIOUS_PAGE</source>
        <translation>&lt;&lt;Previous Page</translation>
    </message>
    <message>
        <source>IDS_NEXT_PAGE</source>
        <translation>&gt;&gt;Next Page</translation>
    </message>
    <message>
        <source>IDS_ACC_CONVERSATION</source>
        <translation>The conversation</translation>
    </message>
    <message>
        <source>IDS_LOOK_BUBBLES</source>
        <translation>Bubbles</translation>
    </message>
    <message>
        <source>IDS_LOOK_BUBBLES_HINT</source>
        <translation>Read the conversation page by page</translation>
    </message>
    <message>
        <source>IDS_LOOK_LIST</source>
        <translation>List</translation>
    </message>
    <message>
        <source>IDS_LOOK_LIST_HINT</source>
        <translation>Choose single messages</translation>
    </message>
    <message>
        <source>IDS_FIRST_PAGE</source>
        <translation>« First</translation>
    </message>
    <message>
        <source>IDS_PAGE_BACK</source>
        <translation>‹ Back</translation>
    </message>
    <message>
        <source>IDS_PAGE_%1_OF_%2</source>
        <translation>Page %1 of %2</translation>
    </message>
    <message>
        <source>IDS_PAGE_ON</source>
        <translation>Next ›</translation>
    </message>
    <message>
        <source>IDS_LAST_PAGE</source>
        <translation>Last »</translation>
    </message>
    <message>
        <source>IDS_SAVE_ATTACHMENT</source>
        <translation>Save Attachment</translation>
    </message>
    <message>
        <source>IDS_SUC_SAVE_ATTACHMENT</source>
        <translation>Attachment saved successfully.</translation>
    </message>
    <message>
        <source>IDS_CANT_SAVE_ATTACHMENT</source>
        <translation>Failed to save attachment.</translation>
    </message>
    <message>
        <source>IDS_CANT_FIND_%1</source>
        <translation>can not find %1.</translation>
    </message>
    <message>
        <source>IDS_NO_NAME</source>
        <translation>No name</translation>
    </message>
    <message>
        <source>IDS_NO_TITLE</source>
        <translation>Without a title</translation>
    </message>
    <message>
        <source>IDS_NUMBER_HIDDEN</source>
        <translation>Number hidden</translation>
    </message>
    <message>
        <source>IDS_NOTE_TOO_LONG</source>
        <translation>This note is very long. Only its beginning is shown here; an export holds all of it.</translation>
    </message>
    <message>
        <source>IDS_CALL_INCOMING</source>
        <translation>Incoming</translation>
    </message>
    <message>
        <source>IDS_CALL_OUTGOING</source>
        <translation>Outgoing</translation>
    </message>
    <message>
        <source>IDS_CALL_MISSED</source>
        <translation>Missed</translation>
    </message>
    <message>
        <source>IDS_CALL_UNKNOWN</source>
        <translation>Unknown</translation>
    </message>
    <message>
        <source>IDS_COL_PHONE</source>
        <translation>Phone</translation>
    </message>
    <message>
        <source>IDS_COL_CONTACT</source>
        <translation>Contact</translation>
    </message>
    <message>
        <source>IDS_COL_KIND</source>
        <translation>Kind</translation>
    </message>
    <message>
        <source>IDS_COL_DATE</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>IDS_COL_DURATION</source>
        <translation>Duration</translation>
    </message>
    <message>
        <source>IDS_COL_NUMBER</source>
        <translation>Number</translation>
    </message>
    <message>
        <source>IDS_COL_TITLE</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>IDS_COL_SUMMARY</source>
        <translation>Summary</translation>
    </message>
    <message>
        <source>IDS_COL_CALENDAR</source>
        <translation>Calendar</translation>
    </message>
    <message>
        <source>IDS_COL_START</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>IDS_COL_END</source>
        <translation>End</translation>
    </message>
    <message>
        <source>IDS_COL_LASTS</source>
        <translation>Lasts</translation>
    </message>
    <message>
        <source>IDS_ALL_DAY</source>
        <translation>All day</translation>
    </message>
    <message>
        <source>IDS_COL_PLACE</source>
        <translation>Place</translation>
    </message>
    <message>
        <source>IDS_COL_REPEATS</source>
        <translation>Repeats</translation>
    </message>
    <message>
        <source>IDS_COL_DESCRIPTION</source>
        <translation>Description</translation>
    </message>
    <message>
        <source>IDS_COL_URL</source>
        <translation>Url</translation>
    </message>
    <message>
        <source>IDS_CONTACTS</source>
        <translation>Contacts</translation>
    </message>
    <message>
        <source>IDS_CALLS</source>
        <translation>Call History</translation>
    </message>
    <message>
        <source>IDS_NOTES</source>
        <translation>Notes</translation>
    </message>
    <message>
        <source>IDS_CALENDAR</source>
        <translation>Calendar</translation>
    </message>
    <message>
        <source>IDS_BOOKMARKS</source>
        <translation>Bookmarks</translation>
    </message>
    <message>
        <source>IDS_FILTER_CONTACTS</source>
        <translation>Filter names, numbers and addresses</translation>
    </message>
    <message>
        <source>IDS_FILTER_CALLS</source>
        <translation>Filter names and numbers</translation>
    </message>
    <message>
        <source>IDS_FILTER_NOTES</source>
        <translation>Filter titles and texts</translation>
    </message>
    <message>
        <source>IDS_FILTER_CALENDAR</source>
        <translation>Filter events</translation>
    </message>
    <message>
        <source>IDS_FILTER_BOOKMARKS</source>
        <translation>Filter titles and addresses</translation>
    </message>
    <message>
        <source>IDS_NO_CONTACTS</source>
        <translation>There are no contacts here.</translation>
    </message>
    <message>
        <source>IDS_NO_CALLS</source>
        <translation>There are no calls here.</translation>
    </message>
    <message>
        <source>IDS_NO_NOTES</source>
        <translation>There are no notes here.</translation>
    </message>
    <message>
        <source>IDS_NO_CALENDAR</source>
        <translation>There are no calendar events here.</translation>
    </message>
    <message>
        <source>IDS_NO_BOOKMARKS</source>
        <translation>There are no bookmarks here.</translation>
    </message>
    <message>
        <source>IDS_SAVING_CONTACTS</source>
        <translation>Backing up Contacts now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SAVING_CALLS</source>
        <translation>Backing up Call History...</translation>
    </message>
    <message>
        <source>IDS_SAVING_NOTES</source>
        <translation>Backing up Notes now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SAVING_CALENDAR</source>
        <translation>Backing up Calendar events now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_SAVING_BOOKMARKS</source>
        <translation>Backing up Bookmarks now. Please wait...</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_CONTACTS</source>
        <translation>Confirm to delete selected contacts?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_CALLS</source>
        <translation>Confirm to delete selected Call History?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_NOTES</source>
        <translation>Confirm to delete selected Notes?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_CALENDAR</source>
        <translation>Confirm to delete selected Calendar events?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_BOOKMARKS</source>
        <translation>Confirm to delete selected Bookmarks?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_ALL_CONTACTS</source>
        <translation>Confirm to delete all contacts?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_ALL_CALLS</source>
        <translation>Confirm to delete all Call History?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_ALL_NOTES</source>
        <translation>Confirm to delete all Notes?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_ALL_CALENDAR</source>
        <translation>Confirm to delete all Calendar events?</translation>
    </message>
    <message>
        <source>IDS_CONFIRM_DEL_ALL_BOOKMARKS</source>
        <translation>Confirm to delete all Bookmarks?</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_CONTACTS</source>
        <translation>Successfully deleted contacts.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_CALLS</source>
        <translation>Successfully deleted Call History.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_NOTES</source>
        <translation>Successfully deleted Notes.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_CALENDAR</source>
        <translation>Successfully deleted Calendar events.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_BOOKMARKS</source>
        <translation>Successfully deleted Bookmarks.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_ALL_CONTACTS</source>
        <translation>Successfully deleted all contacts.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_ALL_CALLS</source>
        <translation>Successfully deleted all Call History.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_ALL_NOTES</source>
        <translation>Successfully deleted all Notes.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_ALL_CALENDAR</source>
        <translation>Successfully deleted all Calendar events.</translation>
    </message>
    <message>
        <source>IDS_SUC_DEL_ALL_BOOKMARKS</source>
        <translation>Successfully deleted all Bookmarks.</translation>
    </message>
    <message>
        <source>IDS_DELETING</source>
        <translation>Deleting...</translation>
    </message>
    <message>
        <source>IDS_FILTER_VCARD_FILES</source>
        <translation>vCard Files(*.vcf)</translation>
    </message>
    <message>
        <source>IDS_FILTER_ICAL_FILES</source>
        <translation>iCalendar Files(*.ics)</translation>
    </message>
    <message>
        <source>IDS_CHOOSE_LOCAL_DB</source>
        <translation>Save into this local database. Pick one, or type a name for a new one.</translation>
    </message>
    <message>
        <source>IDS_IMPORT_CARDS</source>
        <translation>Import vCard file</translation>
    </message>
    <message>
        <source>IDS_IMPORT_CARDS_HINT</source>
        <translation>Bring the contacts of a .vcf file into a local database</translation>
    </message>
    <message>
        <source>IDS_IMPORTED_DATABASE_NAME</source>
        <translation>Imported contacts</translation>
    </message>
    <message>
        <source>IDS_EMPTY_LOCAL_CONTACTS_HINT</source>
        <translation>Open a backup and save its contacts into this local database, or import a vCard file.</translation>
    </message>
    <message>
        <source>IDS_DELETE</source>
        <translation>Delete</translation>
    </message>
    <message numerus="yes">
        <source>IDS_DELETE_RECORDS</source>
        <translation>
            <numerusform>Delete %Ln record</numerusform>
            <numerusform>Delete %Ln records</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_EXPORT_ALL</source>
        <translation>Export all</translation>
    </message>
    <message numerus="yes">
        <source>IDS_EXPORT_RECORDS</source>
        <translation>
            <numerusform>Export %Ln record</numerusform>
            <numerusform>Export %Ln records</numerusform>
        </translation>
    </message>
    <message>
        <source>IDS_LOADING_RECORDS</source>
        <translation>Reading...</translation>
    </message>
    <message>
        <source>IDS_RECORDS_FAILED</source>
        <translation>This could not be read.</translation>
    </message>
    <message>
        <source>IDS_EMPTY_LOCAL_HINT</source>
        <translation>Open a backup and save its data into this local database.</translation>
    </message>
    <message>
        <source>IDS_EMPTY_BACKUP_HINT</source>
        <translation>The backup holds none. Data that is kept in a cloud service alone is not part of a backup.</translation>
    </message>
    <message>
        <source>IDS_WHY_SELECT_RECORDS</source>
        <translation>Select what to delete first.</translation>
    </message>
    <message>
        <source>IDS_ACC_DETAIL</source>
        <translation>The selected record</translation>
    </message>
    <message>
        <source>IDS_ACC_MONTH</source>
        <translation>Month</translation>
    </message>
    <message>
        <source>IDS_NODE_CONTACTS_%1</source>
        <translation>Contacts(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_CALENDAR_%1</source>
        <translation>Calendar(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_NOTES_%1</source>
        <translation>Notes(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_CALLS_%1</source>
        <translation>Call History(%1)</translation>
    </message>
    <message>
        <source>IDS_NODE_BOOKMARKS_%1</source>
        <translation>Bookmarks(%1)</translation>
    </message>
    <message numerus="yes">
        <source>IDS_EVERYTHING_BRINGS_IN</source>
        <translation>
            <numerusform>(--everything brings it in)</numerusform>
            <numerusform>(--everything brings them in)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARDS_EMPTY</source>
        <translation>
            <numerusform>%n card is empty and is left out: %1</numerusform>
            <numerusform>%n cards are empty and are left out: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARDS_WITHOUT_END</source>
        <translation>
            <numerusform>%n card has no end and is left out: %1</numerusform>
            <numerusform>%n cards have no end and are left out: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARD_LINES</source>
        <translation>
            <numerusform>%n line of the cards could not be read: %1</numerusform>
            <numerusform>%n lines of the cards could not be read: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARD_PICTURES</source>
        <translation>
            <numerusform>%n picture of the cards is not whole and is left out: %1</numerusform>
            <numerusform>%n pictures of the cards are not whole and are left out: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARD_PICTURES_ELSEWHERE</source>
        <translation>
            <numerusform>%n picture of the cards lies on a server and was not fetched: %1</numerusform>
            <numerusform>%n pictures of the cards lie on a server and were not fetched: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARD_PROPERTIES</source>
        <translation>
            <numerusform>%n entry of the cards has no place in a contact and is left out: %1</numerusform>
            <numerusform>%n entries of the cards have no place in a contact and are left out: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CARD_VALUES_JOINED</source>
        <translation>
            <numerusform>%n repeated entry of the cards was joined with the first of its kind: %1</numerusform>
            <numerusform>%n repeated entries of the cards were joined with the first of their kind: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NAMES_OF_NUMBERS</source>
        <translation>
            <numerusform>%n address book could not be read whole, and numbers are without names: %1: %2</numerusform>
            <numerusform>%n address books could not be read whole, and numbers are without names: %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PICTURES_OF_NUMBERS</source>
        <translation>
            <numerusform>%n time the pictures of contacts could not be read: %1: %2</numerusform>
            <numerusform>%n times the pictures of contacts could not be read: %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NOTES_REFER_TO_SERVER</source>
        <translation>
            <numerusform>%n note refers to pictures on a server, which were not fetched: %1</numerusform>
            <numerusform>%n notes refer to pictures on a server, which were not fetched: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PICTURES_OF_CONTACTS_UNREADABLE</source>
        <translation>
            <numerusform>%n picture of a contact is neither JPEG nor PNG and is left out</numerusform>
            <numerusform>%n pictures of contacts are neither JPEG nor PNG and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CONTACT_ENTRIES_REPLACED</source>
        <translation>
            <numerusform>%n entry of a contact that was there (its note, picture, company, a label or the like) was replaced by another that came under its name</numerusform>
            <numerusform>%n entries of contacts that were there (notes, pictures, companies, labels and the like) were replaced by others that came under their names</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CALLS_KEPT</source>
        <translation>
            <numerusform>%n call of the same second, number and direction is there with other details, and those were kept</numerusform>
            <numerusform>%n calls of the same second, number and direction are there with other details, and those were kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NOTE_DATES_REPLACED</source>
        <translation>
            <numerusform>%n note of the same title and text was there with other dates, which were replaced</numerusform>
            <numerusform>%n notes of the same title and text were there with other dates, which were replaced</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EVENTS_KEPT</source>
        <translation>
            <numerusform>%n event of the same calendar, start and title is there with other details, and those were kept</numerusform>
            <numerusform>%n events of the same calendar, start and title are there with other details, and those were kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BOOKMARKS_KEPT</source>
        <translation>
            <numerusform>%n bookmark of the same folder and address is there under another title or spelling, and that was kept</numerusform>
            <numerusform>%n bookmarks of the same folder and address are there under another title or spelling, and that was kept</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_RECORDS_THERE_ALREADY</source>
        <translation>
            <numerusform>%n of them was there already.</numerusform>
            <numerusform>%n of them were there already.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EARLY_BIRTHDAYS</source>
        <translation>
            <numerusform>%n birthday on 2001-01-01 or before is left out</numerusform>
            <numerusform>%n birthdays on 2001-01-01 or before are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_VALUES_WITHOUT_LABEL</source>
        <translation>
            <numerusform>%n number, address or other value of a contact that has no label is left out</numerusform>
            <numerusform>%n numbers, addresses and other values of contacts that have no label are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_VALUES_OF_UNKNOWN_KIND</source>
        <translation>
            <numerusform>%n value of a contact is of an unknown kind and is left out</numerusform>
            <numerusform>%n values of contacts are of an unknown kind and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_VALUES_OF_NOBODY</source>
        <translation>
            <numerusform>%n value belongs to a contact that is not there and is left out</numerusform>
            <numerusform>%n values belong to contacts that are not there and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_COUNTRY_CODES</source>
        <translation>
            <numerusform>%n property of an address, its country code, is left out</numerusform>
            <numerusform>%n properties of addresses, their country codes, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PARTS_OF_VALUES</source>
        <translation>
            <numerusform>%n property of an address or of a name on another service has no place in a contact and is left out</numerusform>
            <numerusform>%n properties of addresses or of names on other services have no place in a contact and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_GROUP_MEMBERSHIPS</source>
        <translation>
            <numerusform>%n membership of a contact in a group is left out</numerusform>
            <numerusform>%n memberships of contacts in groups are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_SMALL_PICTURES</source>
        <translation>
            <numerusform>%n contact has only a small picture, which is left out</numerusform>
            <numerusform>%n contacts have only small pictures, which are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FURTHER_PICTURES</source>
        <translation>
            <numerusform>%n further picture of a contact is left out</numerusform>
            <numerusform>%n further pictures of contacts are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PICTURES_OF_NOBODY</source>
        <translation>
            <numerusform>%n picture belongs to a contact that is not there and is left out</numerusform>
            <numerusform>%n pictures belong to contacts that are not there and are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ROWS_DAMAGED</source>
        <translation>
            <numerusform>%n row of %1 cannot be read: %2</numerusform>
            <numerusform>%n rows of %1 cannot be read: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_FAILURE</source>
        <translation>
            <numerusform>%2</numerusform>
            <numerusform>%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CLASS_ABSENT</source>
        <translation>
            <numerusform>%2</numerusform>
            <numerusform>%2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_DATABASE_FAULTS</source>
        <translation>
            <numerusform>%n database, %1, is damaged: what it holds may be incomplete or wrong (%2)</numerusform>
            <numerusform>%n databases, %1, are damaged: what they hold may be incomplete or wrong (%2)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_DATABASE_DAMAGED</source>
        <translation>
            <numerusform>%1 cannot be read: %2</numerusform>
            <numerusform>%1 cannot be read: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NOT_COUNTED</source>
        <translation>
            <numerusform>%n kind of data cannot be counted: %1. %2</numerusform>
            <numerusform>%n kinds of data cannot be counted: %1. %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CONTENT_MISSING</source>
        <translation>
            <numerusform>%n file is listed by the backup, but its content is missing: %1</numerusform>
            <numerusform>%n files are listed by the backup, but their content is missing: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_SOUND_ABSENT</source>
        <translation>
            <numerusform>%n sound is not in the backup</numerusform>
            <numerusform>%n sounds are not in the backup</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_CALLS_IN_BOTH</source>
        <translation>
            <numerusform>%n call is in both call histories of the backup and listed once</numerusform>
            <numerusform>%n calls are in both call histories of the backup and listed once</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_RECORDINGS_IN_BOTH</source>
        <translation>
            <numerusform>%n recording is in several databases of the backup and listed once</numerusform>
            <numerusform>%n recordings are in several databases of the backup and listed once</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NOTES_IN_NEWER_STORE</source>
        <translation>
            <numerusform>%n note cannot be read: this backup keeps its notes in a newer store that this version does not read (%1)</numerusform>
            <numerusform>%n notes cannot be read: this backup keeps its notes in a newer store that this version does not read (%1)</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NEWER_NOTES_UNTOLD</source>
        <translation>
            <numerusform>This backup keeps its notes in a newer store that this version does not read (%1); how many they are cannot be told</numerusform>
            <numerusform>This backup keeps its notes in a newer store that this version does not read (%1); how many they are cannot be told</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_NOTES_WITHOUT_BODY</source>
        <translation>
            <numerusform>%n note without a body is left out</numerusform>
            <numerusform>%n notes without a body are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_SOUNDS_IN_NO_LIST</source>
        <translation>
            <numerusform>%n sound file stands in no list and can be had by extracting it alone: %1</numerusform>
            <numerusform>%n sound files stand in no list and can be had by extracting them alone: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ALARMS</source>
        <translation>
            <numerusform>%n property of an event, its alarm, is left out</numerusform>
            <numerusform>%n properties of events, their alarms, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ATTENDEES</source>
        <translation>
            <numerusform>%n property of an event, an attendee, is left out</numerusform>
            <numerusform>%n properties of events, their attendees, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EXCLUDED_DATES</source>
        <translation>
            <numerusform>%n property of a repeated event, a day on which it does not take place, is left out</numerusform>
            <numerusform>%n properties of repeated events, the days on which they do not take place, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_REPETITION_LIMITS</source>
        <translation>
            <numerusform>%n property of an event, the end or the chosen days of its repetition, is left out: it seems to repeat without end, as its start falls</numerusform>
            <numerusform>%n properties of events, the ends or the chosen days of their repetition, are left out: they seem to repeat without end, as their start falls</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_IM_SERVICES</source>
        <translation>
            <numerusform>%n property of a contact, a service for messages that is not among those known, is left out</numerusform>
            <numerusform>%n properties of contacts, services for messages that are not among those known, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_PHONETIC_NAMES</source>
        <translation>
            <numerusform>%n property of a contact, a phonetic or former name, is left out</numerusform>
            <numerusform>%n properties of contacts, their phonetic or former names, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_GROUPS_IN_GROUPS</source>
        <translation>
            <numerusform>%n property of a group, a member that is a group or no contact that is there, is left out</numerusform>
            <numerusform>%n properties of groups, members that are groups or no contacts that are there, are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_TIMES_NOT_WRITTEN</source>
        <translation>
            <numerusform>%n event is written with its days, without the time of day</numerusform>
            <numerusform>%n events are written with their days, without the times of day</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_ADDRESSES_NOT_WRITTEN</source>
        <translation>
            <numerusform>%n event has a web address, which this format leaves out</numerusform>
            <numerusform>%n events have web addresses, which this format leaves out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_TASKS</source>
        <translation>
            <numerusform>%n task of the calendar is left out</numerusform>
            <numerusform>%n tasks of the calendar are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BIRTHDAYS_OF_CONTACTS</source>
        <translation>
            <numerusform>%n birthday that the calendar made from a contact is left out</numerusform>
            <numerusform>%n birthdays that the calendar made from contacts are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EVENTS_WITHOUT_CALENDAR</source>
        <translation>
            <numerusform>%n event whose calendar is missing is left out</numerusform>
            <numerusform>%n events whose calendar is missing are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_EVENTS_SHOWN_AS_FREE</source>
        <translation>
            <numerusform>%n event whose time is shown as free is left out</numerusform>
            <numerusform>%n events whose time is shown as free are left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BOOKMARKS_HIDDEN</source>
        <translation>
            <numerusform>%n bookmark or folder is hidden on the device and left out</numerusform>
            <numerusform>%n bookmarks or folders are hidden on the device and left out</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BOOKMARKS_WITHOUT_FOLDER</source>
        <translation>
            <numerusform>%n bookmark or folder is left out because its folder is hidden, missing or came later</numerusform>
            <numerusform>%n bookmarks or folders are left out because their folder is hidden, missing or came later</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_DATES_DAMAGED</source>
        <translation>
            <numerusform>%n date of %1 is not a date</numerusform>
            <numerusform>%n dates of %1 are not dates</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_BAD_PICTURES</source>
        <translation>
            <numerusform>%n picture is damaged, or larger than any camera takes, and is not shown: %1</numerusform>
            <numerusform>%n pictures are damaged, or larger than any camera takes, and are not shown: %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_UNKNOWN_ROWS_DAMAGED</source>
        <translation>
            <numerusform>Rows of %1 cannot be read, nobody can tell how many: %2</numerusform>
            <numerusform>Rows of %1 cannot be read, nobody can tell how many: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_TABLE_UNREADABLE</source>
        <translation>
            <numerusform>%n table of %1 cannot be read: %2</numerusform>
            <numerusform>%n tables of %1 cannot be read: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_COLUMNS_MISSING</source>
        <translation>
            <numerusform>%n column is missing in %1: %2</numerusform>
            <numerusform>%n columns are missing in %1: %2</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>IDS_ISSUE_SYSTEM_ITEMS</source>
        <translation>
            <numerusform>%n system item is left out</numerusform>
            <numerusform>%n system items are left out</numerusform>
        </translation>
    </message>
</context>
</TS>
