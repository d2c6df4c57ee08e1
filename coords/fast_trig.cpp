#include "coords/fast_trig.h"

#include <limits>

namespace velkoro::fast {
namespace {

constexpr two twice(double x)
{
    return two{x, x};
}

} // namespace

const trig_table table = {
    .sine = {twice(-0.16666666666666666), twice(0.008333333333333316),
             twice(-0.00019841269841254974), twice(2.755731921916323e-06),
             twice(-2.505210761699557e-08), twice(1.605897731242445e-10),
             twice(-7.643970295533013e-13), twice(2.7314447512062803e-15)},
    .arc = {twice(-0.3333333333333333), twice(0.1999999999999552), twice(-0.14285714284666456),
            twice(0.1111111101524943), twice(-0.09090904577842225), twice(0.07692183184282383),
            twice(-0.0666451135520762), twice(0.05858148112085185), twice(-0.050854455478168435),
            twice(0.03923153724516447), twice(-0.019176738872388188)},
    .slope = twice(0.41421356237309503),
    .half_pi = twice(half_pi),
    .half_pi_low = twice(half_pi_low),
    .quarter_pi = twice(half_pi / 2),
    .one = twice(1.0),
    .least = twice(1e-300),
    .sign = {std::numeric_limits<long long>::min(), std::numeric_limits<long long>::min()},
    .size = {std::numeric_limits<long long>::max(), std::numeric_limits<long long>::max()},
};

} // namespace velkoro::fast
