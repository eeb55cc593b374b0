#include "shell/WindowRect.h"

WRect DefaultWindowRect(int32_t screenWidth, int32_t screenHeight) {
    int32_t width = int32_t(screenWidth * 0.8);
    int32_t height = int32_t(screenHeight * 0.8);
    WRect rect;
    rect.left = (screenWidth - width) / 2;
    rect.top = (screenHeight - height) / 2;
    rect.right = rect.left + width;
    rect.bottom = rect.top + height;
    return rect;
}
