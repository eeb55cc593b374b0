// Time per call of Transform and Multiply, the two operations a frame runs
// most, for a general matrix and for one flagged as the identity (the front
// view's common case, which both skip).

#include "view/Geometry.h"

#include <chrono>
#include <cstdio>

namespace {

const int Calls = 1000000;

// The results feed this sum so that the calls cannot be optimised away.
volatile float TheSink = 0;

template <typename Body> double NanosecondsPerCall(Body body) {
    auto start = std::chrono::steady_clock::now();
    body();
    auto stop = std::chrono::steady_clock::now();
    return std::chrono::duration<double, std::nano>(stop - start).count() / Calls;
}

double TimeTransform(const MMatrix& m) {
    return NanosecondsPerCall([&m] {
        MPoint3 p{1.5f, -2.25f, 3.125f};
        float sum = 0;
        for (int i = 0; i < Calls; i++) {
            p.x = float(i);
            sum += Transform(m, p).x;
        }
        TheSink = TheSink + sum;
    });
}

double TimeMultiply(const MMatrix& a, const MMatrix& b) {
    return NanosecondsPerCall([&a, &b] {
        MMatrix left = a;
        float sum = 0;
        for (int i = 0; i < Calls; i++) {
            left.M[3][0] = float(i);
            sum += Multiply(left, b).M[3][0];
        }
        TheSink = TheSink + sum;
    });
}

} // namespace

int main() {
    MMatrix general = YawPitchRoll(0.3f, -0.7f, 1.1f);
    general.M[3][0] = 10, general.M[3][1] = -20, general.M[3][2] = 30;
    general.Identity = false;
    MMatrix identity;

    std::printf("Transform, general matrix:  %7.2f ns per call\n", TimeTransform(general));
    std::printf("Transform, identity flag:   %7.2f ns per call\n", TimeTransform(identity));
    std::printf("Multiply, general matrices: %7.2f ns per call\n", TimeMultiply(general, general));
    std::printf("Multiply, identity flag:    %7.2f ns per call\n", TimeMultiply(general, identity));
    return 0;
}
