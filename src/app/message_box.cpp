#include "app/message_box.h"

#include "app/resources.h"
#include "resources/ids.h"

int AppMessageBox(HWND owner, const char* text, UINT style) {
    return ::MessageBoxA(owner, text, ResourceText(IDS_PRODUCT).c_str(), style);
}

int AppMessageBox(HWND owner, UINT textId, UINT style) {
    return AppMessageBox(owner, ResourceText(textId).c_str(), style);
}
