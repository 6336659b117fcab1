// Makes the files of examples/ anew: one folder is named, where they go.
#include <exception>
#include <filesystem>
#include <iostream>

#include "examplefiles/examples.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "Usage: spectrane_examplefiles FOLDER\n";
    return 2;
  }
  try {
    std::filesystem::create_directories(argv[1]);
    spectrane::WriteExamples(argv[1]);
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << '\n';
    return 1;
  }
  return 0;
}
