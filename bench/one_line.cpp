// The yardstick of startup_bench: a program that prints one line.
#include <iostream>

int main() {
  std::cout << "\"ab\"" << std::endl;
  return 0;
}
