#pragma once

#include <cmath>

/// The terms that the benchmarks evaluate, each beside the same calculation as muParser writes it
/// and compiled in C++.
struct BenchTerm {
  const char16_t* text;
  const char* muparser;
  double (*compiled)(double x, double y);
};

inline constexpr BenchTerm kBenchTerms[] = {
    {u"x+1", "x+1", [](double x, double) { return x + 1; }},
    {u"2x", "2*x", [](double x, double) { return 2 * x; }},
    {u"x*y", "x*y", [](double x, double y) { return x * y; }},
    {u"x^2", "x^2", [](double x, double) { return std::pow(x, 2); }},
    {u"|x-y|", "abs(x-y)", [](double x, double y) { return std::fabs(x - y); }},
    {u"1/(x+2)", "1/(x+2)", [](double x, double) { return 1 / (x + 2); }},
    {u"SIN(x)", "sin(x)", [](double x, double) { return std::sin(x); }},
    {u"x^2+2*x-1", "x^2+2*x-1", [](double x, double) { return std::pow(x, 2) + 2 * x - 1; }},
    {u"2*SIN(x)^2+|y-1|", "2*sin(x)^2+abs(y-1)",
     [](double x, double y) { return 2 * std::pow(std::sin(x), 2) + std::fabs(y - 1); }},
    {u"EXP(0-x^2/2)", "exp(0-x^2/2)",
     [](double x, double) { return std::exp(0 - std::pow(x, 2) / 2); }},
    {u"SQR(x^2+y^2)", "sqrt(x^2+y^2)",
     [](double x, double y) { return std::sqrt(std::pow(x, 2) + std::pow(y, 2)); }},
    {u"(x+1)*(x+2)*(x+3)*(x+4)/(y+5)", "(x+1)*(x+2)*(x+3)*(x+4)/(y+5)",
     [](double x, double y) { return (x + 1) * (x + 2) * (x + 3) * (x + 4) / (y + 5); }},
    {u"LOG(x+1)*COS(y)+ATN(x/2)", "ln(x+1)*cos(y)+atan(x/2)",
     [](double x, double y) { return std::log(x + 1) * std::cos(y) + std::atan(x / 2); }},
    {u"((((x+1)*x+2)*x+3)*x+4)*x+5", "((((x+1)*x+2)*x+3)*x+4)*x+5",
     [](double x, double) { return ((((x + 1) * x + 2) * x + 3) * x + 4) * x + 5; }},
    {u"x+2x+3x+4x+5x+6x+7x+8x+9x+10x", "x+2*x+3*x+4*x+5*x+6*x+7*x+8*x+9*x+10*x",
     [](double x, double) {
       return x + 2 * x + 3 * x + 4 * x + 5 * x + 6 * x + 7 * x + 8 * x + 9 * x + 10 * x;
     }},
    {u"(x-1)*(x-2)+(x-3)*(x-4)+(x-5)*(x-6)+(x-7)*(x-8)+(y-1)*(y-2)+(y-3)*(y-4)+(y-5)*(y-6)+(y-7)*("
     u"y-8)"
     u"+SIN(x)*COS(y)+2*x*y-x/3+y/7",
     "(x-1)*(x-2)+(x-3)*(x-4)+(x-5)*(x-6)+(x-7)*(x-8)+(y-1)*(y-2)+(y-3)*(y-4)+(y-5)*(y-6)+(y-7)*(y-"
     "8)+sin(x)*cos(y)+2*x*y-x/3+y/7",
     [](double x, double y) {
       return (x - 1) * (x - 2) + (x - 3) * (x - 4) + (x - 5) * (x - 6) + (x - 7) * (x - 8) +
              (y - 1) * (y - 2) + (y - 3) * (y - 4) + (y - 5) * (y - 6) + (y - 7) * (y - 8) +
              std::sin(x) * std::cos(y) + 2 * x * y - x / 3 + y / 7;
     }},
};
