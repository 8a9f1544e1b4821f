// Mathematics.

#pragma once

#include <macos_declarations.h>

MACOS_C_BEGIN

typedef float float_t;
typedef double double_t;
#define HUGE_VAL __builtin_huge_val()
#define HUGE_VALF __builtin_huge_valf()
#define HUGE_VALL __builtin_huge_vall()
#define INFINITY HUGE_VALF
#define NAN __builtin_nanf("")
#define FP_NAN 1
#define FP_INFINITE 2
#define FP_ZERO 3
#define FP_NORMAL 4
#define FP_SUBNORMAL 5
#define FP_ILOGB0 (-2147483647 - 1)
#define FP_ILOGBNAN (-2147483647 - 1)
#define fpclassify(x) __builtin_fpclassify(FP_NAN, FP_INFINITE, FP_NORMAL, FP_SUBNORMAL, FP_ZERO, x)
#define isfinite(x) __builtin_isfinite(x)
#define isinf(x) __builtin_isinf(x)
#define isnan(x) __builtin_isnan(x)
#define isnormal(x) __builtin_isnormal(x)
#define signbit(x) __builtin_signbit(x)
#define isgreater(x, y) __builtin_isgreater(x, y)
#define isgreaterequal(x, y) __builtin_isgreaterequal(x, y)
#define isless(x, y) __builtin_isless(x, y)
#define islessequal(x, y) __builtin_islessequal(x, y)
#define islessgreater(x, y) __builtin_islessgreater(x, y)
#define isunordered(x, y) __builtin_isunordered(x, y)
// A function of one argument and one of two, for each floating-point type.
#define MACOS_MATH_OF_1(n)                                                                                   \
    double n(double);                                                                                        \
    float n##f(float);                                                                                       \
    long double n##l(long double)
#define MACOS_MATH_OF_2(n)                                                                                   \
    double n(double, double);                                                                                \
    float n##f(float, float);                                                                                \
    long double n##l(long double, long double)

MACOS_MATH_OF_1(acos);
MACOS_MATH_OF_1(asin);
MACOS_MATH_OF_1(atan);
MACOS_MATH_OF_1(cos);
MACOS_MATH_OF_1(sin);
MACOS_MATH_OF_1(tan);
MACOS_MATH_OF_1(acosh);
MACOS_MATH_OF_1(asinh);
MACOS_MATH_OF_1(atanh);
MACOS_MATH_OF_1(cosh);
MACOS_MATH_OF_1(sinh);
MACOS_MATH_OF_1(tanh);
MACOS_MATH_OF_1(exp);
MACOS_MATH_OF_1(exp2);
MACOS_MATH_OF_1(expm1);
MACOS_MATH_OF_1(log);
MACOS_MATH_OF_1(log10);
MACOS_MATH_OF_1(log2);
MACOS_MATH_OF_1(log1p);
MACOS_MATH_OF_1(logb);
MACOS_MATH_OF_1(cbrt);
MACOS_MATH_OF_1(sqrt);
MACOS_MATH_OF_1(fabs);
MACOS_MATH_OF_1(erf);
MACOS_MATH_OF_1(erfc);
MACOS_MATH_OF_1(lgamma);
MACOS_MATH_OF_1(tgamma);
MACOS_MATH_OF_1(ceil);
MACOS_MATH_OF_1(floor);
MACOS_MATH_OF_1(nearbyint);
MACOS_MATH_OF_1(rint);
MACOS_MATH_OF_1(round);
MACOS_MATH_OF_1(trunc);
MACOS_MATH_OF_2(atan2);
MACOS_MATH_OF_2(pow);
MACOS_MATH_OF_2(hypot);
MACOS_MATH_OF_2(fmod);
MACOS_MATH_OF_2(remainder);
MACOS_MATH_OF_2(copysign);
MACOS_MATH_OF_2(nextafter);
MACOS_MATH_OF_2(fdim);
MACOS_MATH_OF_2(fmax);
MACOS_MATH_OF_2(fmin);
double frexp(double, int*);
double ldexp(double, int);
double modf(double, double*);
double scalbn(double, int);
double scalbln(double, long);
int ilogb(double);
long lrint(double);
long lround(double);
long long llrint(double);
long long llround(double);
double remquo(double, double, int*);
double nan(const char*);
double nexttoward(double, long double);
double fma(double, double, double);
float frexpf(float, int*);
float ldexpf(float, int);
float modff(float, float*);
float scalbnf(float, int);
float scalblnf(float, long);
int ilogbf(float);
long lrintf(float);
long lroundf(float);
long long llrintf(float);
long long llroundf(float);
float remquof(float, float, int*);
float nanf(const char*);
float nexttowardf(float, long double);
float fmaf(float, float, float);
long double frexpl(long double, int*);
long double ldexpl(long double, int);
long double modfl(long double, long double*);
long double scalbnl(long double, int);
long double scalblnl(long double, long);
int ilogbl(long double);
long lrintl(long double);
long lroundl(long double);
long long llrintl(long double);
long long llroundl(long double);
long double remquol(long double, long double, int*);
long double nanl(const char*);
long double nexttowardl(long double, long double);
long double fmal(long double, long double, long double);

MACOS_C_END
