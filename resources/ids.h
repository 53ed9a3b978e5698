#pragma once

// The numbers under which resources.dll keeps what the user sees. Read by the resource compiler and by the code.

#define IDI_PROGRAM 128
#define IDD_SCHEDULE_OPTIONS 107
#define IDD_MAIN 129
#define IDD_SCAN 479
#define IDD_CONFIRM 220
#define IDD_RESTART 221
#define IDD_ABOUT 340
#define IDD_SHREDDER 480
#define IDD_SETTINGS 483
#define IDD_SCHEDULE 549

// The first page. The three unused texts are never shown.
#define IDC_SCAN_TREE_PLACE 1015   // where the tree is made
#define IDC_SCAN_START 1021
#define IDC_SCAN_PROGRESS 1022
#define IDC_SCAN_STOP 1023
#define IDC_SCAN_CLEAN 1027
#define IDC_SCAN_FINISH 1028
#define IDC_SCAN_UNUSED_1 1029
#define IDC_SCAN_HINT_1 1030
#define IDC_SCAN_HINT_2 1031
#define IDC_SCAN_TREE 1033         // made at run time
#define IDC_SCAN_REPORT 1035
#define IDC_SCAN_NEW 1043          // its height, less 5, is the room of the animation
#define IDC_SCAN_TREE_LABEL 1053
#define IDC_SCAN_UNUSED_2 1054
#define IDC_SCAN_UNUSED_3 1055

// The confirmation by a word
#define IDC_CONFIRM_WORD 1034
#define IDC_CONFIRM_MESSAGE 1040

// The shredder
#define IDC_SHRED_BIN_NAME 1005    // not on show
#define IDC_SHRED_ADD 1006
#define IDC_SHRED_REMOVE 1007
#define IDC_SHRED_THREE 1011
#define IDC_SHRED_ONCE 1012
#define IDC_SHRED_SEVEN 1013
#define IDC_SHRED_PROGRESS 1014
#define IDC_SHRED_LIST 1024
#define IDC_SHRED_START 1025
#define IDC_SHRED_MODE_PLACE 1037  // where the frames are made
#define IDC_SHRED_LIST_PLACE 1038
#define IDC_SHRED_ANIMATION 1052   // where the animation is drawn
#define IDC_SHRED_STOP 1059
#define IDC_SHRED_LIST_LABEL 1060
#define IDC_SHRED_LIST_GROUP 7001
#define IDC_SHRED_MODE_GROUP 7002

// The about page
#define IDC_ABOUT_COMPANY 1043
#define IDC_ABOUT_UPDATE 1045
#define IDC_ABOUT_SUPPORT 1046
#define IDC_ABOUT_DEFINITIONS 1047
#define IDC_ABOUT_VERSION 1048
#define IDC_ABOUT_LAST_CHECK 1052  // not on show, like the next two
#define IDC_ABOUT_UPDATE_SETTINGS 1053
#define IDC_ABOUT_AUTO_CHECK 1069
#define IDC_ABOUT_ASK_BEFORE 1070
#define IDC_ABOUT_HELP 1071
#define IDC_ABOUT_VERSIONS_PLACE 1074  // where the frames are made
#define IDC_ABOUT_LINKS_PLACE 1075
#define IDC_ABOUT_VERSIONS_GROUP 7101
#define IDC_ABOUT_LINKS_GROUP 7102

// The settings
#define IDC_SETTINGS_TREE_PLACE 1016   // where the tree is made
#define IDC_SETTINGS_TREE 1033         // made at run time
#define IDC_SETTINGS_RESET 1041
#define IDC_SETTINGS_CLEANMODE 1056
#define IDC_SETTINGS_AUTOCLEAN 1094
#define IDC_SETTINGS_LOGON 1095
#define IDC_SETTINGS_CLEANMODE_LABEL 1200

// The schedule
#define IDC_SCHEDULE_DELETE 1043
#define IDC_SCHEDULE_EDIT 1045
#define IDC_SCHEDULE_LIST 1077
#define IDC_SCHEDULE_ADD 1080
#define IDC_SCHEDULE_HINT 1201

// One time of the schedule. The days follow one another.
#define IDC_SCHEDULE_SUNDAY 1081
#define IDC_SCHEDULE_MONDAY 1082
#define IDC_SCHEDULE_TUESDAY 1083
#define IDC_SCHEDULE_WEDNESDAY 1084
#define IDC_SCHEDULE_THURSDAY 1085
#define IDC_SCHEDULE_FRIDAY 1086
#define IDC_SCHEDULE_SATURDAY 1087
#define IDC_SCHEDULE_HOUR 1088
#define IDC_SCHEDULE_MINUTE 1089

#define IDS_PRODUCT 128            // display name: caption, window title, mutex, name of the scheduled job
#define IDS_ITEMS_FOUND 129        // %d
#define IDS_NO_DEFINITIONS 130
#define IDS_CONFIRM_DESTROY 131
#define IDS_ADD_FILES_TITLE 132
#define IDS_CONFIRM_RESTRICTED 134
#define IDS_MENU_ADD_FILES 135
#define IDS_MENU_ADD_BIN 136       // %s: the recycle bin's display name
#define IDS_MENU_REMOVE 137
#define IDS_MENU_REMOVE_ALL 138
#define IDS_CONFIRM_WORD 139       // what the user types to confirm
#define IDS_PAGE_ABOUT 140
#define IDS_PAGE_SCAN 141
#define IDS_PAGE_SHREDDER 142
#define IDS_PAGE_SETTINGS 143
#define IDS_HELP_LINK 144
#define IDS_ITEMS_SELECTED 145     // %d
#define IDS_OVERWRITE_NONE 146
#define IDS_OVERWRITE_ONE 147
#define IDS_OVERWRITE_THREE 148
#define IDS_OVERWRITE_SEVEN 149
#define IDS_COUNT 151              // %d: what a row of the scan's tree holds
#define IDS_COUNT_ONE 152
#define IDS_PRODUCT_FOLDER 156     // folder name in registry paths and under application data
#define IDS_SHRED_FAILED 157
#define IDS_COUNT_OF 159           // %d, %d: checked and all rows of the settings' tree
#define IDS_REPORT_SCANNING 164
#define IDS_DO_NOT_ASK_AGAIN 171
#define IDS_NO_ADMINISTRATOR 172
#define IDS_REPORT_FINISHING 173   // while what waited for the restart is finished
#define IDS_REPORT_CLEANING 174
#define IDS_REPORT_SCANNED 175
#define IDS_REPORT_FOUND 177       // %d
#define IDS_REPORT_NEXT_STEP 178
#define IDS_REPORT_NEXT_BUTTON 179
#define IDS_REPORT_CLEANED 180
#define IDS_REPORT_REMOVED 181     // %d
#define IDS_REPORT_FAILED 182      // %d
#define IDS_LINK_SHOW 190
#define IDS_LINK_HIDE 191
#define IDS_INTRO_1 192
#define IDS_INTRO_2 193
#define IDS_CONFIRM_RESET 194
#define IDS_DEFINITIONS_TREE 195   // name of the settings' tree, for who cannot see it
#define IDS_PAGE_SCHEDULE 196
#define IDS_NO_SCHEDULE 197
#define IDS_SCHEDULE_FULL 198
#define IDS_NAMELESS 199           // a result without name and path
// For screen readers: what a press does, and names of pictures.
#define IDS_ACTION_CHECK 210
#define IDS_ACTION_UNCHECK 211
#define IDS_ACTION_SWITCH 212      // to a page
#define IDS_ACTION_PRESS 213
#define IDS_ACTION_JUMP 214        // where a link leads
#define IDS_NAME_MINIMISE 215
#define IDS_NAME_MAXIMISE 216
#define IDS_NAME_RESTORE 217
#define IDS_NAME_CLOSE 218
