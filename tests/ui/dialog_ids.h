#pragma once

// The dialogs of dialogs.rc.
#define IDD_TEST 100
#define IDD_TEST_PAGE 101

#define IDC_TEST_EDIT 1000
#define IDC_TEST_OWNER_DRAWN 1001
#define IDC_TEST_LIST 1002
