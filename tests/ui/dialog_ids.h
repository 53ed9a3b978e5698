#pragma once

// The dialogs of dialogs.rc.
#define IDD_TEST 100
#define IDD_TEST_PAGE 101
