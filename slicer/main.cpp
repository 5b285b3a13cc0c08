#include <exception>
#include <iostream>

#include "Application.h"
#include "Escape.h"

int main(int argc, char** argv) {
  try {
    return torvan::slicer::runApplication(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "torvan-slice: " << torvan::slicer::cleanText(error.what()) << '\n';
    return 2;
  }
}
