#include "app/program.h"

int main(int argc, char** argv) {
  return spectrane::Main(argc, argv);
}
