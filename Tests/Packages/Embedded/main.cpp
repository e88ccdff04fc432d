#include <iostream>
#include <quen/Foundation/Value.h>

int main() {
    const quen::Array list{"linked", 2};
    std::cout << list.front().stringValue() << ' ' << list.back().stringValue() << '\n';
}
