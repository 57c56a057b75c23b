#include "Tiny.h"

int main()
{
    return lastDigit(123) == 3 && lastDigit(20) == 0 ? 0 : 1;
}
