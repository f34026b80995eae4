// The colours that are drawn in, each in one place.
#pragma once

#include <SDL_pixels.h>

inline constexpr SDL_Color kBlack{0, 0, 0, 255};
inline constexpr SDL_Color kBlue{0, 0, 255, 255};
inline constexpr SDL_Color kGreen{0, 255, 0, 255};
inline constexpr SDL_Color kGrey{128, 128, 128, 255};
inline constexpr SDL_Color kLightGrey{200, 200, 200, 255};
inline constexpr SDL_Color kOrange{255, 128, 0, 255};
inline constexpr SDL_Color kRed{255, 0, 0, 255};
inline constexpr SDL_Color kTranslucentWhite{255, 255, 255, 128};
inline constexpr SDL_Color kWhite{255, 255, 255, 255};
inline constexpr SDL_Color kYellow{255, 255, 0, 255};
