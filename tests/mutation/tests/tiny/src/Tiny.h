#pragma once

#include <string>

inline constexpr int most = 10;

int limited(int n);
bool isOdd(int n);
std::string sign(int n);
int unreached(int n);
int lastDigit(int n);
int half(int n);
