#include "gfx/Font.h"

Font::~Font() {
    if (handle != nullptr) {
        TTF_CloseFont(handle);
    }
}
