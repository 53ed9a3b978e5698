#pragma once

// The numbers under which resources.dll keeps what the user sees. Read by the resource compiler and by the code.

#define IDI_PROGRAM 128
#define IDD_MAIN 129
#define IDD_SCAN 479
#define IDD_CONFIRM 220
#define IDD_RESTART 221
#define IDD_PLAIN_SCREEN 222       // of a page that has none of its own yet
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
#define IDS_PAGE_SCHEDULE 196
#define IDS_NO_SCHEDULE 197
#define IDS_SCHEDULE_FULL 198
#define IDS_NAMELESS 199           // a result without name and path
