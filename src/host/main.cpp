#include "host/commands.h"

int main(int argc, char** argv) {
    return kestal::runProgram(argc, argv);
}
