#include <exception>
#include <iostream>

#include "Application.h"

int main(int argc, char** argv) {
  try {
    return torvan::slicer::runApplication(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "torvan-slice: " << error.what() << '\n';
    return 2;
  }
}
