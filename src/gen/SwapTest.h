// The decision whether an edge of a triangulation is to be flipped.
#pragma once

#include <cmath>

#include "gfx/Vec2.h"

/// Two triangles share the edge p-q, and o and d are their other corners. Returns -1 when the edge
/// should be flipped, else 1: it should when the angles at o and d add up to more than 180 degrees,
/// that is when the sine of their sum is negative; two angles on the same side of 90 degrees need
/// no sum. Comes out the same with o and d, or p and q, the other way round. Written without
/// branches, for no processor can foresee them.
inline int SwapTest(Vec2f o, Vec2f p, Vec2f q, Vec2f d) {
    // Cosines and sines are multiplied by the lengths of the angle's legs, here and below.
    const Vec2f oToP = p - o;
    const Vec2f oToQ = q - o;
    const Vec2f dToP = p - d;
    const Vec2f dToQ = q - d;
    const float cosO = oToQ.y * oToP.y + oToQ.x * oToP.x;
    const float cosD = dToQ.y * dToP.y + dToQ.x * dToP.x;
    const float sinO = std::fabs(oToQ.y * oToP.x - oToQ.x * oToP.y);
    const float sinD = std::fabs(dToQ.y * dToP.x - dToQ.x * dToP.y);
    const bool bothObtuse = (cosO < 0.0f) & (cosD < 0.0f);
    const bool bothAcute = (cosO > 0.0f) & (cosD > 0.0f);
    const bool sumBeyond180 = sinD * cosO + sinO * cosD < 0.0f;
    return bothObtuse | (sumBeyond180 & !bothAcute) ? -1 : 1;
}
