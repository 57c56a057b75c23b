#include "Tiny.h"

// At the limit itself both are the same: this mutant is in the list of equivalent ones.
int limited(int n)
{
    if (n > most) {
        return most;
    }
    return n;
}

bool isOdd(int n)
{
    return n % 2 != 0;
}

// Reached by a test, which looks at no number below zero.
std::string sign(int n)
{
    std::string text = "+";
    if (n < -1) {
        text = "-";
    }
    return text;
}

int unreached(int n)
{
    return n - 1;
}

// Never ends when the subtraction is dropped.
int lastDigit(int n)
{
    while (n >= 10) {
        n -= 10;
    }
    return n;
}

// Without the first return the compiler refuses.
int half(int n)
{
    if (n % 2 == 0) {
        return n / 2;
    } else {
        return 0;
    }
}
